#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>

#include "platform/wide_text_win32.h"
#include "resource.h"
#include "support/picture.h"
#include "support/program_test.h"

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
        WriteBytes(program, u"Shoe sizes.htm",
                   "<h1>Shoe sizes</h1><p>A <b>size</b> says how long the foot is, each country in its own "
                   "way.</p><table border=1><tr><th>Europe</th><th>UK</th></tr><tr><td>42</td><td>8</td></tr>"
                   "<tr><td>43</td><td>9</td></tr></table><ul><li>Half sizes are usual in the UK.</li></ul>");
        CopyFileW(Wide(FromUtf8(VELMORA_HTMLVIEW)), Wide(program.ProgramFolder() + u"htmlview.dll"), FALSE);
        Do("recent Length.cnv, TipCalc.cal; start");
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

    void TakeDialog(int command, const std::string& name) {
        const DialogDriver dialog(program, command);
        Take(name);
        EXPECT_TRUE(dialog.Cancel());
    }

    std::filesystem::path folder_;
};

TEST_F(Pictures, DISABLED_OfEveryDialog) {
    Give(8, 26.2);
    Take("main-window");
    program.Command(ID_ROW_SIZE);
    Take("two-line-rows");
    program.Command(ID_ROW_SIZE);
    const auto show = [this](CVelmStringView file, int top) {
        program.Ask([file, top](CVelmFrame& frame) {
            frame.SelectFile(frame.Catalog().GetDocument(file, false));
            frame.List().ScrollTo(top);
        });
    };
    show(u"Currency.cnv", 12);
    Take("long-list");
    show(u"", 0);
    Take("empty-list");
    show(u"Length.cnv", 0);
    Give(0, 100);
    TakeDialog(ID_OPEN_FILE, "open-file");
    TakeDialog(ID_NEW_CONVERSION_FILE, "new-file");
    TakeDialog(ID_PROPERTIES, "file-properties");
    TakeDialog(ID_EDIT_UNIT, "unit-properties");
    TakeDialog(ID_SHOW_UNITS, "show-units");
    TakeDialog(ID_ABOUT, "about");
    {
        const DialogDriver conversions(program, ID_CONVERSIONS);
        conversions.Choose(IDC_CONVERSION_LIST, 0);
        Take("conversions");
        for (const int command : {ID_ADD_STANDARD, ID_ADD_ADVANCED}) {
            const DialogDriver add = conversions.Over(command);
            add.Choose(IDC_UNIT1, 0);
            add.Choose(IDC_UNIT2, 1);
            Take(command == ID_ADD_STANDARD ? "add-conversion" : "add-formulas");
            EXPECT_TRUE(add.Cancel());
        }
        EXPECT_TRUE(conversions.Cancel());
    }
    {
        Do("tap button0");
        Take("format-menu");
        ASSERT_TRUE(program.Choose("Customize..."));
        const DialogDriver formats(program, program.WaitForDialog());
        Take("formats");
        EXPECT_TRUE(formats.Cancel());
    }
    {
        const DialogDriver open(program, ID_OPEN_FILE);
        open.Choose(IDC_CATEGORY, static_cast<int>(open.Entries(IDC_CATEGORY).size()) - 1);
        const Texts pages = open.Entries(IDC_LIST);
        open.Choose(IDC_LIST, static_cast<int>(std::find(pages.begin(), pages.end(), "Shoe sizes") - pages.begin()));
        const DialogDriver viewer = open.Over(IDOK);
        Take("reference");
        EXPECT_TRUE(viewer.Ok());
        EXPECT_TRUE(open.Cancel());
    }
    program.Ask([](CVelmFrame& frame) { frame.SelectFile(frame.Catalog().GetDocument(u"TipCalc.cal", false)); });
    TakeDialog(ID_ADD_UNIT, "new-unit");
    program.Ask([](CVelmFrame& frame) {
        SetField(frame.Program().settings.dataFolder, u"\\Program Files\\Velmora\\Conversions\\");
    });
    TakeDialog(ID_OPTIONS, "settings");
}

}  // namespace
}  // namespace velm::test
