#include <gtest/gtest.h>

#include <array>
#include <set>

#include "app/display_scale.h"
#include "app/wide_text.h"
#include "pocketpc/shell.h"
#include "resource.h"
#include "support/dialog_driver.h"
#include "support/files.h"
#include "support/picture.h"

namespace velm::test {
namespace {

/// Every dialog that a command of the menu opens.
constexpr std::array<WORD, 8> COMMANDS = {
    ID_OPEN_FILE, ID_NEW_CONVERSION_FILE, ID_PROPERTIES, ID_ADD_UNIT, ID_CONVERSIONS,
    ID_OPTIONS,   ID_SHOW_UNITS,          ID_ABOUT};

class DialogFrameTest : public testing::Test {
protected:
    DialogFrameTest() {
        SaveConversionFile(program, u"Length", {{u"meters"}, {u"feet", 3.28084}});
        EXPECT_TRUE(program.Start());
    }

    RECT ClientOf(HWND window) {
        RECT area{};
        GetClientRect(window, &area);
        MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&area), 2);
        return area;
    }

    std::vector<HWND> Controls(const DialogDriver& dialog) {
        std::vector<HWND> controls;
        for (HWND control = GetWindow(dialog.Window(), GW_CHILD); control != nullptr;
             control = GetWindow(control, GW_HWNDNEXT)) {
            if (GetDlgCtrlID(control) != 0 && IsWindowVisible(control)) {
                controls.push_back(control);
            }
        }
        return controls;
    }

    RunningProgram program;
};

TEST_F(DialogFrameTest, CoversTheProgramsWindowAndFollowsIt) {
    for (const WORD command : COMMANDS) {
        const DialogDriver dialog(program, command);
        for (const SIZE size : {SIZE{160, 160}, SIZE{240, 294}, SIZE{480, 320}}) {
            program.Resize(Scaled(size.cx), Scaled(size.cy));
            const RECT frame = ClientOf(program.Frame());
            const RECT cover = ClientOf(dialog.Window());
            EXPECT_TRUE(EqualRect(&frame, &cover)) << dialog.Caption();
            for (const HWND control : Controls(dialog)) {
                const RECT place = PlaceOf(control);
                EXPECT_GE(place.left, 0) << dialog.Caption() << " " << GetDlgCtrlID(control);
                EXPECT_LE(place.right, cover.right - cover.left) << dialog.Caption() << " " << GetDlgCtrlID(control);
                EXPECT_LT(place.left, place.right) << dialog.Caption() << " " << GetDlgCtrlID(control);
            }
        }
        const std::string caption = dialog.Caption();
        program.Key(VK_ESCAPE);
        EXPECT_TRUE(dialog.IsGone()) << caption;
        program.Settle();
    }
}

TEST_F(DialogFrameTest, PaintsItsCaptionAboveABlackLine) {
    const DialogDriver dialog(program, ID_OPTIONS);
    const Picture picture = program.Ask([&](CVelmFrame&) { return Picture::OfWindow(dialog.Window()); });
    const RECT line{0, Scaled(24), picture.Width(), Scaled(24) + 1};
    EXPECT_TRUE(picture.IsAll(line, RGB(0, 0, 0)));
    const RECT caption{0, 0, picture.Width(), Scaled(24)};
    EXPECT_GT(picture.Count(caption, GetSysColor(COLOR_ACTIVECAPTION)), 50) << "the caption's text";
    EXPECT_EQ(picture.Count(caption, RGB(0, 0, 0)), 0);
}

TEST_F(DialogFrameTest, EveryAccessKeyOfADialogIsItsOwn) {
    for (const WORD command : COMMANDS) {
        const DialogDriver dialog(program, command);
        std::set<wchar_t> keys;
        for (HWND control = GetWindow(dialog.Window(), GW_CHILD); control != nullptr;
             control = GetWindow(control, GW_HWNDNEXT)) {
            const CVelmString text = WindowText(control);
            const std::size_t mark = text.find(u'&');
            const bool formula =
                GetDlgCtrlID(control) == IDC_FORWARD_LABEL || GetDlgCtrlID(control) == IDC_REVERSE_LABEL;
            if (mark != CVelmString::npos && !formula) {
                EXPECT_TRUE(keys.insert(static_cast<wchar_t>(ToLowerAscii(text[mark + 1]))).second)
                    << dialog.Caption() << ": " << ToUtf8(text);
            }
        }
        EXPECT_TRUE(dialog.Cancel());
    }
}

TEST_F(DialogFrameTest, ScrollsToWhatHasTheFocusWhereThereIsNoRoom) {
    const RECT button = program.Ask([](CVelmFrame& frame) { return frame.List().Row(0).Button().Rectangle(); });
    program.Tap(program.List(), static_cast<int>(button.left) + 3, static_cast<int>(button.top) + 3);
    const auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu && menu->Choose("Customize..."));
    const DialogDriver dialog(program, program.WaitForDialog());
    program.Resize(Scaled(160), Scaled(160));
    const LONG top = Scaled(25);
    const LONG bottom = Scaled(160 - 26);
    const HWND first = program.Focus();
    EXPECT_EQ(first, dialog.Control(IDC_FORMAT_DECIMAL));
    std::set<HWND> visited;
    while (visited.insert(program.Focus()).second) {
        const RECT place = PlaceOf(program.Focus());
        EXPECT_GE(place.top, top) << GetDlgCtrlID(program.Focus());
        EXPECT_LE(place.bottom, bottom) << GetDlgCtrlID(program.Focus());
        program.Key(VK_TAB);
        program.Settle();
    }
    EXPECT_EQ(visited.size(), 16U) << "every box comes into view";
    EXPECT_EQ(program.Focus(), first);
    program.Wheel(-WHEEL_DELTA);
    program.Settle();
    EXPECT_LT(PlaceOf(first).top, top) << "the wheel scrolls";
    program.Resize(Scaled(240), Scaled(320));
    EXPECT_EQ(PlaceOf(first).top, top) << "with room for all nothing is scrolled away";
}

TEST_F(DialogFrameTest, AsksForTheInputPanelWhileTextIsEdited) {
    const DialogDriver list(program, ID_SHOW_UNITS);
    EXPECT_EQ(SHGetSipPreference(list.Window()), SIP_DOWN);
    EXPECT_TRUE(list.Cancel());
    const DialogDriver boxes(program, ID_OPTIONS);
    EXPECT_EQ(SHGetSipPreference(boxes.Window()), SIP_UP);
    EXPECT_TRUE(boxes.Cancel());
}

}  // namespace
}  // namespace velm::test
