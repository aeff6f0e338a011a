#include "app/clipboard.h"
#include "app/main_frame.h"

#include <gtest/gtest.h>

#include "app/display_scale.h"
#include "app/wide_text.h"
#include "pocketpc/command_bar.h"
#include "resource.h"
#include "support/files.h"
#include "support/picture.h"
#include "support/running_program.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

std::string Text(const RECT& place) {
    return std::to_string(place.left) + "," + std::to_string(place.top) + " to " + std::to_string(place.right) + "," +
           std::to_string(place.bottom);
}

/// Left, top, right and bottom in pixels of an ordinary screen, counted from the right or bottom edge of the area
/// above the command bar where they are negative.
std::string Place(SIZE area, int left, int top, int right, int bottom) {
    const auto from = [](int value, LONG end) { return value < 0 ? end + Scaled(value) : Scaled(value); };
    return Text({from(left, area.cx), from(top, area.cy), right == 0 ? area.cx : from(right, area.cx),
                 bottom == 0 ? area.cy : from(bottom, area.cy)});
}

TEST(Frame, OpensWithAHandheldsClientArea) {
    RunningProgram program;
    ASSERT_TRUE(program.Start());
    RECT client{};
    GetClientRect(program.Frame(), &client);
    EXPECT_EQ(client.right, Scaled(240));
    EXPECT_EQ(client.bottom, Scaled(320));
    EXPECT_EQ(WindowText(program.Frame()), u"Velmora");
    EXPECT_TRUE(GetWindowLongPtrW(program.Frame(), GWL_STYLE) & WS_MAXIMIZEBOX);
}

TEST(Frame, LaysOutItsPartsAtEverySize) {
    RunningProgram program;
    SaveCalculationFile(program, u"Outputs", {{u"answer", u"a", u"42"}});
    SaveConversionFile(program, u"Inputs", {{u"meters"}, {u"feet", 3.28}});
    ASSERT_TRUE(program.Start());
    for (const SIZE& size :
         {SIZE{Scaled(160), Scaled(160)}, SIZE{Scaled(240), Scaled(320)}, SIZE{481, 333}, SIZE{800, 600}}) {
        for (const bool input : {true, false}) {
            program.Resize(static_cast<int>(size.cx), static_cast<int>(size.cy));
            program.Ask([input](CVelmFrame& frame) {
                frame.SelectFile(frame.Catalog().GetDocument(input ? u"Inputs.cnv" : u"Outputs.cal", false));
            });
            program.Settle();
            const SIZE area{size.cx, size.cy - Scaled(26)};
            const std::string where = std::to_string(size.cx) + " x " + std::to_string(size.cy);
            EXPECT_EQ(IsWindowVisible(program.Panel()) != FALSE, input) << where;
            EXPECT_EQ(Text(PlaceOf(program.Panel())), Place(area, 0, -42, 0, 0)) << where;
            EXPECT_EQ(Text(PlaceOf(program.List())), Place(area, 0, 24, 0, input ? -42 : 0)) << where;
            EXPECT_EQ(Text(PlaceOf(program.CommandBar())), Text({0, area.cy, size.cx, size.cy})) << where;
            program.Ask([&](CVelmFrame& frame) {
                EXPECT_EQ(Text(frame.TitleButton().Rectangle()), Place(area, 2, 2, -24, 22)) << where;
                EXPECT_EQ(Text(frame.ShowUnitsButton().Rectangle()), Place(area, -22, 2, -2, 22)) << where;
            });
        }
    }
}

TEST(Frame, CannotBeMadeSmallerThanItsLeastSize) {
    RunningProgram program;
    ASSERT_TRUE(program.Start());
    MINMAXINFO limits{};
    SendMessageW(program.Frame(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    RECT frame{};
    RECT client{};
    GetWindowRect(program.Frame(), &frame);
    GetClientRect(program.Frame(), &client);
    EXPECT_EQ(limits.ptMinTrackSize.x - (Width(frame) - Width(client)), Scaled(160));
    EXPECT_EQ(limits.ptMinTrackSize.y - (Height(frame) - Height(client)), Scaled(160));
}

TEST(Frame, PaintsAWhiteHeaderWithItsTwoButtons) {
    RunningProgram program;
    ASSERT_TRUE(program.Start());
    const Picture picture = Picture::OfWindow(program.Frame());
    const int width = picture.Width();
    EXPECT_TRUE(picture.IsAll({0, 0, width, Scaled(2)}, RGB(255, 255, 255)));
    EXPECT_TRUE(picture.IsAll({0, Scaled(22), width, Scaled(24)}, RGB(255, 255, 255)));
    EXPECT_TRUE(picture.IsAll({width - Scaled(24), 0, width - Scaled(22), Scaled(24)}, RGB(255, 255, 255)));
    EXPECT_FALSE(picture.IsAll({Scaled(4), Scaled(4), Scaled(22), Scaled(20)}, RGB(255, 255, 255))) << "no file icon";
    EXPECT_FALSE(picture.IsAll({width - Scaled(20), Scaled(4), width - Scaled(4), Scaled(20)}, RGB(255, 255, 255)))
        << "no image on the button that shows units";
}

TEST(Frame, KeepsTheFocusInItsList) {
    RunningProgram program;
    SaveConversionFile(program, u"Length", {{u"meters"}});
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(program.Focus(), program.List());
    program.Ask([](CVelmFrame& frame) { SetFocus(frame.Handle()); });
    EXPECT_EQ(program.Focus(), program.List());
}

std::vector<HWND> Toolbars(const RunningProgram& program) {
    return {CommandBar_GetTitles(program.CommandBar()), CommandBar_GetTools(program.CommandBar())};
}

TEST(CommandBar, HasTwoMenusAndSixTools) {
    RunningProgram program;
    ASSERT_TRUE(program.Start());
    const std::vector<HWND> bars = Toolbars(program);
    const auto commands = [&program](HWND bar) {
        return program.Ask([bar](CVelmFrame&) {
            std::vector<int> ids;
            for (int i = 0; i < SendMessageW(bar, TB_BUTTONCOUNT, 0, 0); ++i) {
                TBBUTTON button{};
                SendMessageW(bar, TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&button));
                ids.push_back((button.fsStyle & BTNS_SEP) != 0 ? 0 : button.idCommand);
            }
            return ids;
        });
    };
    EXPECT_EQ(commands(bars[0]), (std::vector<int>{ID_FILE_MENU, ID_EDIT_MENU}));
    EXPECT_EQ(commands(bars[1]), (std::vector<int>{ID_COPY, ID_PASTE, 0, ID_EDIT_UNIT, ID_CONVERSIONS, ID_ROW_SIZE, 0,
                                                   ID_OPEN_CALCULATOR}));
    const auto images = reinterpret_cast<HIMAGELIST>(SendMessageW(bars[1], TB_GETIMAGELIST, 0, 0));
    int width = 0;
    int height = 0;
    ImageList_GetIconSize(images, &width, &height);
    EXPECT_EQ(width, Scaled(16));
    EXPECT_EQ(height, Scaled(16));
    EXPECT_EQ(ImageList_GetImageCount(images), 6);

    // All of it is on the bar of a handheld's width.
    RECT last{};
    SendMessageW(bars[1], TB_GETITEMRECT, 7, reinterpret_cast<LPARAM>(&last));
    EXPECT_LE(last.right + PlaceOf(bars[1]).left, Scaled(240));
}

TEST(CommandBar, TellsWhatEachButtonDoes) {
    RunningProgram program;
    ASSERT_TRUE(program.Start());
    const std::vector<HWND> bars = Toolbars(program);
    const auto toolTip = [&program](WORD command) {
        return program.Ask([&program, command](CVelmFrame&) {
            NMTTDISPINFOW asked{};
            asked.hdr.code = TTN_GETDISPINFOW;
            asked.hdr.idFrom = command;
            asked.lpszText = asked.szText;
            SendMessageW(program.CommandBar(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&asked));
            return ToUtf8(FromWide(asked.lpszText));
        });
    };
    EXPECT_EQ(toolTip(ID_FILE_MENU), "File");
    EXPECT_EQ(toolTip(ID_EDIT_MENU), "Edit");
    EXPECT_EQ(toolTip(ID_COPY), "Copy");
    EXPECT_EQ(toolTip(ID_PASTE), "Paste");
    EXPECT_EQ(toolTip(ID_EDIT_UNIT), "Edit Unit Properties");
    EXPECT_EQ(toolTip(ID_CONVERSIONS), "Edit Conversions");
    EXPECT_EQ(toolTip(ID_ROW_SIZE), "Expand/Compact List");
    EXPECT_EQ(toolTip(ID_OPEN_CALCULATOR), "Open Calculator");
    for (const HWND bar : bars) {
        EXPECT_NE(SendMessageW(bar, TB_GETTOOLTIPS, 0, 0), 0);
    }
}

TEST(CommandBar, OpensItsMenusByPenAndByKey) {
    RunningProgram program;
    ASSERT_TRUE(program.Start());
    const std::vector<std::string> file = {"About", "-", "New", "Open", "Properties", "-", "Exit"};
    const std::vector<std::string> edit = {
        "Add Unit", "Edit Unit", "Delete Unit", "Conversions", "-", "Download Exchange Rates", "Options"};
    program.Tap(Toolbars(program)[0], Scaled(10), Scaled(10));
    const auto tapped = program.WaitForMenu();
    ASSERT_TRUE(tapped);
    EXPECT_EQ(tapped->Texts(), file);
    EXPECT_FALSE(tapped->Find("Properties")->enabled) << "no file is open";
    EXPECT_TRUE(tapped->Find("Exit")->enabled);
    RECT menu{};
    RECT bar{};
    GetWindowRect(tapped->Window(), &menu);
    GetWindowRect(program.CommandBar(), &bar);
    EXPECT_LE(menu.bottom, bar.bottom) << "the menu opens upwards";
    tapped->Close();

    for (const auto& [key, entries] : {std::pair{WORD{'E'}, edit}, std::pair{WORD{'F'}, file}}) {
        program.Settle();
        program.Key(key, VK_MENU);
        const auto opened = program.WaitForMenu();
        ASSERT_TRUE(opened);
        EXPECT_EQ(opened->Texts(), entries);
        opened->Close();
    }
}

TEST(CommandBar, ExitEndsTheProgram) {
    RunningProgram program;
    ASSERT_TRUE(program.Start());
    program.Key('F', VK_MENU);
    const auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu);
    ASSERT_TRUE(menu->Choose("Exit"));
    EXPECT_TRUE(WaitUntil([&program] { return !IsWindow(program.Frame()); }));
}

TEST(Commands, AreDisabledWhereTheyCannotBeRun) {
    RunningProgram program;
    SaveCalculationFile(program, u"Tip", {{u"bill", u"bill"}, {u"tip", u"tip", u"bill*0.25"}});
    ASSERT_TRUE(program.Start());
    program.Ask([](CVelmFrame& frame) {
        SetClipboardText(frame.Handle(), u"5");
        EXPECT_FALSE(IsCommandEnabled(frame, ID_CONVERSIONS)) << "a calculation file has none";
        EXPECT_FALSE(IsCommandEnabled(frame, ID_COPY)) << "no value yet";
        EXPECT_TRUE(IsCommandEnabled(frame, ID_PASTE));
        EXPECT_FALSE(IsCommandEnabled(frame, 0x1234)) << "no command at all";

        frame.Document()->GetItem(0)->value = 10;
        frame.Document()->GetItem(0)->state = STATE_VALID;
        EXPECT_TRUE(IsCommandEnabled(frame, ID_COPY));

        frame.List().SelectRow(1);
        EXPECT_FALSE(IsCommandEnabled(frame, ID_PASTE)) << "an output takes no value";
        frame.List().SelectRow(0);
        OpenClipboard(frame.Handle());
        EmptyClipboard();
        CloseClipboard();
        EXPECT_FALSE(IsCommandEnabled(frame, ID_PASTE)) << "nothing to paste";
    });
    // The toolbar follows by itself.
    const HWND tools = Toolbars(program)[1];
    EXPECT_TRUE(
        program.Eventually([tools](CVelmFrame&) { return SendMessageW(tools, TB_ISBUTTONENABLED, ID_COPY, 0) != 0; }));
    EXPECT_TRUE(program.Eventually(
        [tools](CVelmFrame&) { return SendMessageW(tools, TB_ISBUTTONENABLED, ID_CONVERSIONS, 0) == 0; }));
}

TEST(Commands, CalculateComputesTheDocument) {
    RunningProgram program;
    SaveCalculationFile(program, u"Tip", {{u"bill", u"bill"}, {u"tip", u"tip", u"bill*0.25"}});
    ASSERT_TRUE(program.Start());
    program.Ask([](CVelmFrame& frame) {
        frame.Document()->GetItem(0)->value = 10;
        frame.Document()->GetItem(0)->state = STATE_VALID;
    });
    program.Command(ID_CALCULATE);
    EXPECT_TRUE(program.Eventually([](CVelmFrame& frame) { return frame.Document()->GetItem(1)->value == 2.5; }));
}

}  // namespace
}  // namespace velm::test
