#include <gtest/gtest.h>

#include <bit>
#include <set>

#include "formats/format_table.h"
#include "pocketpc/shell.h"
#include "resource.h"
#include "support/picture.h"
#include "support/program_test.h"
#include "ui/display_scale.h"
#include "ui/window_text.h"

namespace velm::test {
namespace {

class DialogFrameTest : public ProgramTest {
protected:
    void SetUp() override { Start("Length = meters|m, feet|ft|3.28084"); }

    /// Every control lies within the width of the dialog and none over another, and each has an access key of its own.
    static void ExpectOrder(HWND dialog) {
        std::vector<RECT> places;
        std::set<char16_t> keys;
        for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr;
             control = GetWindow(control, GW_HWNDNEXT)) {
            if (GetDlgCtrlID(control) == 0 || !IsWindowVisible(control)) {
                continue;
            }
            const RECT place = PlaceOf(control);
            EXPECT_TRUE(place.left >= 0 && place.left < place.right && place.top < place.bottom &&
                        place.right <= ClientOf(dialog).right)
                << GetDlgCtrlID(control) << " from " << place.left << " to " << place.right;
            for (const RECT& other : places) {
                RECT common{};
                EXPECT_FALSE(IntersectRect(&common, &place, &other)) << GetDlgCtrlID(control) << " lies over another";
            }
            places.push_back(place);
            const CVelmString text = WindowText(control);
            const std::size_t mark = text.find(u'&');
            EXPECT_TRUE(mark == CVelmString::npos || keys.insert(ToLowerAscii(text)[mark + 1]).second) << ToUtf8(text);
        }
    }
};

TEST_F(DialogFrameTest, EveryDialogFollowsTheSizeOfTheProgramsWindow) {
    for (const std::string command : {"OPEN_FILE", "NEW_CONVERSION_FILE", "PROPERTIES", "ADD_UNIT", "CONVERSIONS",
                                      "OPTIONS", "SHOW_UNITS", "FIND", "ABOUT"}) {
        SCOPED_TRACE(Do("open " + command));
        const HWND dialog = program.TopDialog();
        if (command == "CONVERSIONS") {
            Do("choose CONVERSION_LIST 0");
        }
        for (const SIZE& size : {SIZE{Scaled(160), Scaled(160)}, SIZE{1000, 700}, SIZE{Scaled(240), Scaled(294)}}) {
            SCOPED_TRACE(size.cx);
            program.Resize(static_cast<int>(size.cx), static_cast<int>(size.cy));
            const RECT place = PlaceOf(dialog);
            const RECT client = ClientOf(program.Frame());
            EXPECT_TRUE(EqualRect(&place, &client));
            ExpectOrder(dialog);
        }
        const std::set<std::string> edits = {"NEW_CONVERSION_FILE", "PROPERTIES", "ADD_UNIT", "OPTIONS", "FIND"};
        EXPECT_EQ(SHGetSipPreference(dialog), edits.contains(command) ? SIP_UP : SIP_DOWN) << "up while text is edited";
        if (command == "PROPERTIES") {
            Do("focus CATEGORY");
            EXPECT_EQ(SHGetSipPreference(dialog), SIP_UP) << "a category is typed or chosen";
        }
        Do("press Escape");
        EXPECT_FALSE(IsWindow(dialog));
    }
}

TEST_F(DialogFrameTest, PaintsItsCaptionAboveABlackLine) {
    Do("open OPTIONS");
    Picture picture;
    EXPECT_TRUE(WaitUntil([&] {
        picture = Picture::OfWindow(program.TopDialog());
        return picture.IsAll({0, Scaled(24), picture.Width(), Scaled(24) + 1}, RGB(0, 0, 0));
    }));
    const RECT caption{0, 0, picture.Width(), Scaled(24)};
    EXPECT_GT(picture.Count(caption, GetSysColor(COLOR_ACTIVECAPTION)), 50) << "the caption's text";
    EXPECT_EQ(picture.Count(caption, RGB(0, 0, 0)), 0);
}

TEST_F(DialogFrameTest, ScrollsToWhatHasTheFocusWhereThereIsNoRoom) {
    Do("tap button0; menu Customize...");
    const HWND dialog = Dialog();
    program.Resize(Scaled(160), Scaled(160));
    const LONG top = Scaled(25);
    const HWND first = program.Focus();
    EXPECT_EQ(first, GetDlgItem(dialog, IDC_FORMAT_DECIMAL));
    std::set<HWND> visited;
    while (visited.insert(program.Focus()).second) {
        const RECT place = PlaceOf(program.Focus());
        EXPECT_TRUE(place.top >= top && place.bottom <= Scaled(160 - 26)) << GetDlgCtrlID(program.Focus());
        program.Key(VK_TAB);
    }
    EXPECT_EQ(visited.size(), 16U) << "every box comes into view";
    for (const FormatKind& format : Formats()) {
        const HWND box = GetDlgItem(dialog, IDC_FIRST_FORMAT + std::countr_zero(format.code));
        EXPECT_TRUE(visited.contains(box)) << format.word << " can be allowed";
    }
    EXPECT_EQ(program.Focus(), first);
    program.Wheel(-WHEEL_DELTA);
    program.Settle();
    EXPECT_LT(PlaceOf(first).top, top) << "the wheel scrolls";
    program.Resize(Scaled(240), Scaled(320));
    EXPECT_EQ(PlaceOf(first).top, top) << "with room for all nothing is scrolled away";
}

}  // namespace
}  // namespace velm::test
