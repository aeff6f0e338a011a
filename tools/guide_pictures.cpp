#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>

#include "platform/wide_text_win32.h"
#include "support/picture.h"
#include "support/program_test.h"
#include "support/table.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

Picture OfScreen() {
    const HDC screen = GetDC(nullptr);
    Picture picture = Picture::OfDc(screen, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    ReleaseDC(nullptr, screen);
    return picture;
}

/// Writes a bitmap file of 32 bits a pixel.
void WriteBitmap(const Picture& picture, const std::filesystem::path& path) {
    std::vector<std::uint32_t> pixels;
    for (int y = picture.Height() - 1; y >= 0; --y) {
        for (int x = 0; x < picture.Width(); ++x) {
            const COLORREF color = picture.At(x, y);
            pixels.push_back(RGB(GetBValue(color), GetGValue(color), GetRValue(color)));
        }
    }
    const auto bytes = static_cast<DWORD>(pixels.size() * sizeof(pixels[0]));
    BITMAPFILEHEADER file{0x4D42, 0, 0, 0, sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER)};
    file.bfSize = file.bfOffBits + bytes;
    const BITMAPINFOHEADER info{sizeof(info), picture.Width(), picture.Height(), 1, 32, BI_RGB, bytes, 0, 0, 0, 0};
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof(file));
    out.write(reinterpret_cast<const char*>(&info), sizeof(info));
    out.write(reinterpret_cast<const char*>(pixels.data()), bytes);
    EXPECT_TRUE(out.flush()) << path;
}

/// Takes the pictures of the user's guide: tools/screenshots.sh runs it, on the screen of a handheld, with the folder
/// for the pictures in VELMORA_PICTURES and the data files that users get in VELMORA_DATA.
class Pictures : public ProgramTest {
protected:
    void SetUp() override {
        const char* const data = std::getenv("VELMORA_DATA");
        const char* const folder = std::getenv("VELMORA_PICTURES");
        ASSERT_TRUE(data != nullptr && folder != nullptr);
        folder_ = folder;
        for (const auto& entry : std::filesystem::directory_iterator(data)) {
            std::filesystem::copy(entry, std::filesystem::path(program.DataFolder()) / entry.path().filename());
        }
        CopyFileW(Wide(FromUtf8(VELMORA_HTMLVIEW)), Wide(program.ProgramFolder() + u"htmlview.dll"), FALSE);
    }

    void Take(const std::string& name) {
        program.Settle();
        Picture before = OfScreen();
        const auto standsStill = [&before] {
            Sleep(200);
            return std::exchange(before, OfScreen()) == before;
        };
        WaitUntil(standsStill);
        WriteBitmap(before, folder_ / (name + ".bmp"));
    }

    std::filesystem::path folder_;
};

TEST_F(Pictures, DISABLED_OfEveryDialog) {
    for (const Texts& row : ReadTable(VELMORA_GUIDE)) {
        Do(row.at(0));
        Take(row.at(1));
    }
}

}  // namespace
}  // namespace velm::test
