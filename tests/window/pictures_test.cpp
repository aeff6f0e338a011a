#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>

#include "app/wide_text.h"
#include "resource.h"
#include "support/dialog_driver.h"
#include "support/files.h"
#include "support/picture.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

void WriteWord(std::ostream& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out.put(static_cast<char>(value >> (8 * i)));
    }
}

Picture OfScreen() {
    const HDC screen = GetDC(nullptr);
    Picture picture = Picture::OfDc(screen, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    ReleaseDC(nullptr, screen);
    return picture;
}

/// Writes a bitmap file of 24 bits a pixel.
void WriteBitmap(const Picture& picture, const std::filesystem::path& path) {
    const auto width = static_cast<std::uint32_t>(picture.Width());
    const auto height = static_cast<std::uint32_t>(picture.Height());
    const std::uint32_t padding = (4 - width * 3 % 4) % 4;
    const std::uint32_t pixels = (width * 3 + padding) * height;
    std::ofstream out(path, std::ios::binary);
    out << "BM";
    for (const std::uint32_t word : {54U + pixels, 0U, 54U, 40U, width, height}) {
        WriteWord(out, word, 4);
    }
    WriteWord(out, 1, 2);
    WriteWord(out, 24, 2);
    for (const std::uint32_t word : {0U, pixels, 0U, 0U, 0U, 0U}) {
        WriteWord(out, word, 4);
    }
    for (int y = picture.Height() - 1; y >= 0; --y) {
        for (int x = 0; x < picture.Width(); ++x) {
            const COLORREF color = picture.At(x, y);
            WriteWord(out, GetBValue(color), 1);
            WriteWord(out, GetGValue(color), 1);
            WriteWord(out, GetRValue(color), 1);
        }
        WriteWord(out, 0, static_cast<int>(padding));
    }
    EXPECT_TRUE(out.flush()) << path;
}

/// Takes the pictures of the user's guide: tools/screenshots.sh runs it, on the screen of a handheld, with the folder
/// for the pictures in VELMORA_PICTURES and the data files that users get in VELMORA_DATA.
class Pictures : public testing::Test {
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
        program.StoreRecentFiles({u"Length.cnv", u"TipCalc.cal"});
        ASSERT_TRUE(program.Start());
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

    void TakeDialog(WORD command, const std::string& name) {
        const DialogDriver dialog(program, command);
        Take(name);
        EXPECT_TRUE(dialog.Cancel());
    }

    HWND Over(HWND below) {
        HWND window = nullptr;
        EXPECT_TRUE(program.Eventually([&](CVelmFrame&) {
            window = program.WaitForDialog();
            return window != below;
        }));
        return window;
    }

    RunningProgram program;
    std::filesystem::path folder_;
};

TEST_F(Pictures, DISABLED_OfEveryDialog) {
    program.Ask([](CVelmFrame& frame) {
        CVelmItem& item = *frame.Document()->currentItem;
        item.value = 100;
        item.state = STATE_VALID;
        SendMessageW(frame.Handle(), WM_COMMAND, ID_CALCULATE, 0);
        frame.Panel().AttachItem(&item);
    });
    Take("main-window");
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
        for (const WORD command : std::array<WORD, 2>{ID_ADD_STANDARD, ID_ADD_ADVANCED}) {
            conversions.Command(command);
            const DialogDriver add(program, Over(conversions.Window()));
            add.Choose(IDC_UNIT1, 0);
            add.Choose(IDC_UNIT2, 1);
            Take(command == ID_ADD_STANDARD ? "add-conversion" : "add-formulas");
            EXPECT_TRUE(add.Cancel());
        }
        EXPECT_TRUE(conversions.Cancel());
    }
    {
        const RECT button = program.Ask([](CVelmFrame& frame) { return frame.List().Row(0).Button().Rectangle(); });
        program.Tap(program.List(), static_cast<int>(button.left) + 3, static_cast<int>(button.top) + 3);
        const auto menu = program.WaitForMenu();
        ASSERT_TRUE(menu);
        Take("format-menu");
        ASSERT_TRUE(menu->Choose("Customize..."));
        const DialogDriver formats(program, program.WaitForDialog());
        Take("formats");
        EXPECT_TRUE(formats.Cancel());
    }
    {
        const DialogDriver open(program, ID_OPEN_FILE);
        open.Choose(IDC_CATEGORY, static_cast<int>(open.Entries(IDC_CATEGORY).size()) - 1);
        for (int row = 0; row < open.RowCount(IDC_LIST); ++row) {
            if (open.RowText(IDC_LIST, row) == "Shoe sizes") {
                open.TapRow(IDC_LIST, row);
            }
        }
        const DialogDriver viewer(program, Over(open.Window()));
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
