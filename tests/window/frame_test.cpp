#include <gtest/gtest.h>

#include "app/display_scale.h"
#include "app/window_text.h"
#include "platform/wide_text_win32.h"
#include "pocketpc/command_bar.h"
#include "resource.h"
#include "support/picture.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

constexpr COLORREF WHITE = RGB(255, 255, 255);

/// Left, top, right and bottom in pixels of an ordinary screen, counted from the right or bottom edge of the area
/// above the command bar where they are negative, or 0 at the right or bottom.
std::string Place(SIZE area, int left, int top, int right, int bottom) {
    const auto from = [](int value, LONG end) { return value < 0 ? end + Scaled(value) : Scaled(value); };
    return Words(RECT{from(left, area.cx), from(top, area.cy), right == 0 ? area.cx : from(right, area.cx),
                      bottom == 0 ? area.cy : from(bottom, area.cy)});
}

class FrameTest : public ProgramTest {
protected:
    HWND Titles() { return CommandBar_GetTitles(program.CommandBar()); }
    HWND Tools() { return CommandBar_GetTools(program.CommandBar()); }
};
using Handheld = FrameTest;

TEST_F(Handheld, FrameFillsTheScreenWithoutACaption) {
    ASSERT_EQ(GetSystemMetrics(SM_CXSCREEN), 240) << "the test is started without its screen";
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(Words(PlaceOf(program.Frame())), "0,0 to 240,320");
    EXPECT_EQ(Words(ClientOf(program.Frame())), "0,0 to 240,320");
}

TEST_F(FrameTest, OpensAsLargeAsAHandheldAndGoesDownToItsLeastSize) {
    const std::string dotsPerInch = std::getenv("VELMORA_DPI");
    ASSERT_EQ(DisplayScale(), dotsPerInch == "192" ? 2 : 1);
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(Words(ClientOf(program.Frame())), Words(RECT{0, 0, Scaled(240), Scaled(320)}));
    EXPECT_EQ(WindowText(program.Frame()), u"Velmora");
    EXPECT_TRUE(GetWindowLongPtrW(program.Frame(), GWL_STYLE) & WS_MAXIMIZEBOX);
    MINMAXINFO limits{};
    SendMessageW(program.Frame(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    const RECT frame = PlaceOf(program.Frame());
    EXPECT_EQ(limits.ptMinTrackSize.x, Width(frame) - Scaled(240 - 160));
    EXPECT_EQ(limits.ptMinTrackSize.y, Height(frame) - Scaled(320 - 160));
    const Picture picture = Picture::OfWindow(program.Frame());
    const int width = picture.Width();
    for (const RECT& blank : {RECT{0, 0, width, Scaled(2)}, RECT{0, Scaled(22), width, Scaled(24)},
                              RECT{width - Scaled(24), 0, width - Scaled(22), Scaled(24)}}) {
        EXPECT_TRUE(picture.IsAll(blank, WHITE)) << Words(blank);
    }
    for (const int icon : {Scaled(4), width - Scaled(20)}) {
        EXPECT_FALSE(picture.IsAll({icon, Scaled(4), icon + Scaled(16), Scaled(20)}, WHITE)) << "no icon at " << icon;
    }
}

TEST_F(FrameTest, LaysOutItsPartsAtEverySize) {
    SaveCalculationFile(program, u"Outputs", {{u"answer", u"a", u"42"}});
    SaveConversionFile(program, u"Inputs", {{u"meters"}, {u"feet", 3.28}});
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(program.Focus(), program.List());
    program.Ask([](CVelmFrame& frame) { SetFocus(frame.Handle()); });
    EXPECT_EQ(program.Focus(), program.List()) << "the frame passes the focus on";
    for (const SIZE& size : {SIZE{Scaled(160), Scaled(160)}, SIZE{481, 333}, SIZE{800, 600}}) {
        for (const bool input : {true, false}) {
            SCOPED_TRACE(std::to_string(size.cx) + (input ? " wide, with the panel" : " wide"));
            program.Resize(static_cast<int>(size.cx), static_cast<int>(size.cy));
            program.Ask([input](CVelmFrame& frame) {
                frame.SelectFile(frame.Catalog().GetDocument(input ? u"Inputs.cnv" : u"Outputs.cal", false));
            });
            program.Settle();
            const SIZE area{size.cx, size.cy - Scaled(26)};
            EXPECT_EQ(IsWindowVisible(program.Panel()) != FALSE, input);
            EXPECT_EQ(Words(PlaceOf(program.Panel())), Place(area, 0, -42, 0, 0));
            EXPECT_EQ(Words(PlaceOf(program.List())), Place(area, 0, 24, 0, input ? -42 : 0));
            EXPECT_EQ(Words(PlaceOf(program.CommandBar())), Words(RECT{0, area.cy, size.cx, size.cy}));
            program.Ask([&](CVelmFrame& frame) {
                EXPECT_EQ(Words(frame.TitleButton().Rectangle()), Place(area, 2, 2, -24, 22));
                EXPECT_EQ(Words(frame.ShowUnitsButton().Rectangle()), Place(area, -22, 2, -2, 22));
            });
        }
    }
}

TEST_F(FrameTest, CommandBarHasTwoMenusAndSixTools) {
    ASSERT_TRUE(program.Start());
    // Each button as its tooltip tells it.
    const auto buttons = [this](HWND bar) {
        return program.Ask([this, bar](CVelmFrame&) {
            Texts texts;
            for (int i = 0; i < SendMessageW(bar, TB_BUTTONCOUNT, 0, 0); ++i) {
                TBBUTTON button{};
                SendMessageW(bar, TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&button));
                NMTTDISPINFOW asked{};
                asked.hdr.code = TTN_GETDISPINFOW;
                asked.hdr.idFrom = static_cast<UINT_PTR>(button.idCommand);
                asked.lpszText = asked.szText;
                SendMessageW(program.CommandBar(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&asked));
                texts.push_back((button.fsStyle & BTNS_SEP) != 0 ? "-" : ToUtf8(FromWide(asked.lpszText)));
            }
            EXPECT_NE(SendMessageW(bar, TB_GETTOOLTIPS, 0, 0), 0);
            return texts;
        });
    };
    EXPECT_EQ(buttons(Titles()), (Texts{"File", "Edit"}));
    EXPECT_EQ(buttons(Tools()), (Texts{"Copy", "Paste", "-", "Edit Unit Properties", "Edit Conversions",
                                       "Expand/Compact List", "-", "Open Calculator"}));
    const auto images = reinterpret_cast<HIMAGELIST>(SendMessageW(Tools(), TB_GETIMAGELIST, 0, 0));
    int width = 0;
    int height = 0;
    ImageList_GetIconSize(images, &width, &height);
    EXPECT_EQ(width, Scaled(16));
    EXPECT_EQ(height, Scaled(16));
    EXPECT_EQ(ImageList_GetImageCount(images), 6);
    RECT last{};
    SendMessageW(Tools(), TB_GETITEMRECT, 7, reinterpret_cast<LPARAM>(&last));
    EXPECT_LE(last.right + PlaceOf(Tools()).left, Scaled(240)) << "all of it is on the bar of a handheld";
}

TEST_F(FrameTest, CommandBarOpensItsMenusByPenAndByKey) {
    ASSERT_TRUE(program.Start());
    const std::string file = "About, -, New, Open, (Properties), -, Exit";
    const std::string edit =
        "(Add Unit), (Edit Unit), (Delete Unit), (Conversions), -, Download Exchange Rates, Options";
    for (const auto& [key, words] : {std::pair{'\0', file}, {'E', edit}, {'F', file}}) {
        if (key == '\0') {
            program.Tap(Titles(), Scaled(10), Scaled(10));
        } else {
            program.Key(static_cast<WORD>(key), VK_MENU);
        }
        const auto menu = program.WaitForMenu();
        ASSERT_TRUE(menu) << key;
        EXPECT_EQ(menu->Words(), words);
        RECT area{};
        RECT bar{};
        GetWindowRect(menu->Window(), &area);
        GetWindowRect(program.CommandBar(), &bar);
        EXPECT_LE(area.bottom, bar.bottom) << "the menu opens upwards";
        menu->Close();
        program.Settle();
    }
}

}  // namespace
}  // namespace velm::test
