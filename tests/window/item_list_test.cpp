#include <gtest/gtest.h>

#include "platform/wide_text_win32.h"
#include "support/picture.h"
#include "support/program_test.h"
#include "ui/bitmap.h"
#include "ui/display_scale.h"
#include "ui/label.h"

namespace velm::test {
namespace {

using ItemListTest = ProgramTest;

TEST_F(ItemListTest, RemovingARowMovesOnlyTheRowsBelow) {
    Start("Five = a, b, c, d, e");
    ResizeList(240, 10 * 21);
    Select(3);
    program.Ask([](CVelmFrame& frame) {
        CVelmItemList& list = frame.List();
        list.RemoveRow(1);
        EXPECT_EQ(list.Selected(), 3) << "the index stays";
        EXPECT_TRUE(list.Row(2).IsSelected()) << "and so does the highlight, on its row";
        EXPECT_EQ(list.Row(3).Rectangle().top, 3 * Scaled(21));
        list.RemoveRow(3);
        EXPECT_EQ(list.Selected(), -1);
        EXPECT_EQ(frame.Document()->currentItem, nullptr);
        EXPECT_EQ(list.AddItem(*frame.Document()->GetItem(0)), 3);
        EXPECT_EQ(list.Row(3).Rectangle().top, 3 * Scaled(21));
    });
}

TEST_F(ItemListTest, DrawsRowsApart) {
    constexpr COLORREF WHITE = RGB(255, 255, 255);
    Start("Two = a, b");
    ResizeList(240, 10 * 21);
    const COLORREF fill = MixColor(140, BaseColor());
    const Picture picture = Picture::OfWindow(program.List());
    const int right = picture.Width() - 2 * DisplayScale();
    const int row = Scaled(21);
    EXPECT_EQ(picture.At(right, row / 2), fill);
    EXPECT_EQ(picture.At(right, row - 1), BaseColor()) << "a frame around the selected row";
    EXPECT_EQ(picture.At(right, 2 * row - 2), fill);
    EXPECT_EQ(picture.At(right, 2 * row - 1), WHITE) << "a line of background below an unselected row";
    EXPECT_TRUE(picture.IsAll({0, 2 * row, picture.Width(), picture.Height()}, WHITE));
    const RECT button = PlaceOfPart("button1");
    const int middle = static_cast<int>(button.top + button.bottom) / 2;
    program.PenDown(program.List(), static_cast<int>(button.left) + Scaled(5), middle);
    program.Settle();
    const Picture pressed = Picture::OfWindow(program.List());
    const int inside = static_cast<int>(button.left) + Scaled(2);
    EXPECT_EQ(pressed.At(inside, middle), WHITE) << "a pressed button has a wide edge";
    EXPECT_NE(pressed.At(inside - 1, middle), WHITE);
    program.PenUp(program.List(), 0, 0);
}

TEST(Label, ShortensTextsThatDoNotFit) {
    const CVelmFont font = CreateProgramFont(14, false);
    const CVelmMemoryDc dc(CreateCompatibleDC(nullptr));
    const CVelmSelect select(dc.get(), font.get());
    const CVelmString name = u"a rather long name of a unit";
    EXPECT_EQ(ShortenText(dc.get(), name, 1000), name);
    const CVelmString shortened = ShortenText(dc.get(), name, Scaled(80));
    EXPECT_EQ(shortened.back(), u'~');
    EXPECT_TRUE(name.starts_with(shortened.substr(0, shortened.size() - 1)));
    SIZE size{};
    GetTextExtentPoint32W(dc.get(), Wide(shortened), static_cast<int>(shortened.size()), &size);
    EXPECT_LE(size.cx, Scaled(83));
    EXPECT_GT(size.cx, Scaled(70)) << "no shorter than it must be";
    EXPECT_LT(ShortenText(dc.get(), CVelmString(60000, u'x'), Scaled(80)).size(), 20U);
    EXPECT_EQ(ShortenText(dc.get(), name, 0).find(u'~'), CVelmString::npos) << "one character has no room for a sign";
}

}  // namespace
}  // namespace velm::test
