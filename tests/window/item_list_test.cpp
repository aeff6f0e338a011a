#include <gtest/gtest.h>

#include <array>

#include "app/display_scale.h"
#include "listview/bitmap.h"
#include "listview/label.h"
#include "resource.h"
#include "support/picture.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

constexpr COLORREF WHITE = RGB(255, 255, 255);

class ItemListTest : public ProgramTest {
protected:
    /// On a file of so many units, "unit 0" (identifier "u0") and on, each one twice as much as the one before.
    void Start(int units) {
        SaveConversionFile(program, u"Many", {});
        ASSERT_TRUE(program.Start());
        for (int i = 0; i < units; ++i) {
            auto item = CreateItem(ITEM_VALUE);
            item->name = u"unit " + FromUtf8(std::to_string(i));
            item->identifier = u"u" + FromUtf8(std::to_string(i));
            Document().AddItem(std::move(item));
        }
        for (std::size_t i = 1; i < Document().ItemCount(); ++i) {
            auto conversion = std::make_unique<CVelmConversion>(Conversions());
            conversion->unit1 = Document().GetItem(i - 1);
            conversion->unit2 = Document().GetItem(i);
            conversion->factor = 2.0;
            Conversions().AddConversion(std::move(conversion));
        }
        program.Ask([](CVelmFrame& frame) { frame.SelectFile(frame.Document()); });
    }

    /// Where format button, name and value of the second row lie, and what the name reads.
    std::string SecondRow() {
        return program.Ask([](CVelmFrame& frame) {
            const CVelmItemRow& row = frame.List().Row(1);
            return Words(row.Button().Rectangle()) + "; " + Words(row.NameLabel().area) + "; " +
                   Words(row.ValueLabel().area) + "; " + ToUtf8(row.NameText());
        });
    }
};

TEST_F(ItemListTest, LaysRowsOutInOneLineOrTwo) {
    Start(9);
    ResizeList(240, 100);
    const LONG width = ClientOf(program.List()).right;
    const auto place = [](int left, int top, LONG across, int down) {
        const LONG x = Scaled(left);
        const LONG y = Scaled(top);
        return Words(RECT{x, y, x + across, y + Scaled(down)}) + "; ";
    };
    EXPECT_EQ(ListState(), "0/4/0");
    const std::string button = Words(RECT{Scaled(1), Scaled(21) + 1, Scaled(21), Scaled(41) + 1}) + "; ";
    EXPECT_EQ(SecondRow(), button + place(21, 24, width - Scaled(180), 16) +
                               Words(RECT{width - Scaled(160), Scaled(24), width, Scaled(40)}) + "; u1");
    program.Command(ID_ROW_SIZE);
    program.Settle();
    EXPECT_EQ(ListState(), "0/2/0");
    EXPECT_EQ(SecondRow(), place(4, 55, Scaled(20), 20) + place(4, 40, width - Scaled(12), 16) +
                               place(24, 58, width - Scaled(30), 16) + "unit 1");
    for (const auto& [height, state] : {std::pair{76, "0/2/0"}, {75, "0/3/0"}, {10, "0/1/0"}}) {
        ResizeList(320, height);
        EXPECT_EQ(ListState(), state) << "a list this low has one-line rows whatever the setting: " << height;
    }
    EXPECT_TRUE(SecondRow().ends_with("unit 1")) << "a wide label has the full name";
}

TEST_F(ItemListTest, RemovingARowMovesOnlyTheRowsBelow) {
    Start(5);
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
        list.SelectRow(2);
        list.RemoveRow(0);
        list.RemoveRow(0);
        EXPECT_EQ(list.RowCount(), 1);
        EXPECT_EQ(list.AddItem(*frame.Document()->GetItem(0)), 1);
        EXPECT_EQ(list.Row(1).Rectangle().top, Scaled(21));
    });
    EXPECT_TRUE(ListState().starts_with("0/"));
}

TEST_F(ItemListTest, HoldingOrRightClickingOpensTheRowMenu) {
    Start(4);
    const RECT row = program.Ask([](CVelmFrame& frame) { return frame.List().Row(2).Rectangle(); });
    const int x = static_cast<int>(row.right) / 2;
    const int y = static_cast<int>(row.top) + 5;
    for (const auto& [right, down] : {std::pair{5, 0}, {0, -5}}) {
        program.PenDown(program.List(), x, y);
        program.PenMove(program.List(), x + right, y + down);  // which ends the gesture: the answer comes at once
        program.Settle();
        EXPECT_TRUE(ThreadWindows(program.Thread(), L"#32768").empty());
        program.PenUp(program.List(), x, y);
    }
    program.PenDown(program.List(), x, y);  // and held in place, if with a trembling hand
    program.PenMove(program.List(), x + 4, y - 4);
    auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->Words(), "Edit, Remove from List") << "there is no value to copy";
    EXPECT_TRUE(program.Choose("Remove from List"));
    EXPECT_EQ(Rows(), "unit 0=, unit 1=, unit 3=");
    program.PenUp(program.List(), x, y);
    Give(0, 2.5);
    program.RightClick(program.List(), x, y);
    menu = program.WaitForMenu();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->Words(), "Copy Value, -, Edit, Remove from List");
    menu->Close();
    EXPECT_EQ(ListState().back(), '2');
    TapRow(0);
    EXPECT_EQ(program.Focus(), program.Ask([](CVelmFrame& frame) { return frame.Panel().Editor().Control(); }))
        << "what is typed next is the row's value";
    EXPECT_TRUE(program.Close());
    EXPECT_EQ(LoadFile(program, u"Many.cnv")->items[2]->shown, 0);
}

TEST_F(ItemListTest, DrawsRowsApart) {
    SaveConversionFile(program, u"Broken", {{u"a"}, {u"b", 2.0}, {u"zero", 0.0}});
    ASSERT_TRUE(program.Start());
    Give(2, 1);
    EXPECT_EQ(Rows(), "a=Error, b=, zero=1") << "a factor of 0 does not go backwards";
    Select(0);
    ResizeList(240, 10 * 21);
    const COLORREF fill = MixColor(140, BaseColor());
    const Picture picture = Picture::OfWindow(program.List());
    const int right = picture.Width() - 2 * DisplayScale();
    const int row = Scaled(21);
    EXPECT_EQ(picture.At(right, row / 2), fill);
    EXPECT_EQ(picture.At(right, row - 1), BaseColor()) << "a frame around the selected row";
    EXPECT_EQ(picture.At(right, 2 * row - 2), fill);
    EXPECT_EQ(picture.At(right, 2 * row - 1), WHITE) << "a line of background below an unselected row";
    EXPECT_TRUE(picture.IsAll({0, 3 * row, picture.Width(), picture.Height()}, WHITE));
    const RECT button = program.Ask([](CVelmFrame& frame) { return frame.List().Row(1).Button().Rectangle(); });
    const int middle = static_cast<int>(button.top + button.bottom) / 2;
    program.PenDown(program.List(), static_cast<int>(button.left) + Scaled(5), middle);
    program.Settle();
    const Picture pressed = Picture::OfWindow(program.List());
    const int inside = static_cast<int>(button.left) + Scaled(2);
    EXPECT_EQ(pressed.At(inside, middle), WHITE) << "a pressed button has a wide edge";
    EXPECT_NE(pressed.At(inside - 1, middle), WHITE);
    program.PenUp(program.List(), 0, 0);
}

TEST_F(ItemListTest, ShortensTextsThatDoNotFit) {
    const CVelmFont font = CreateProgramFont(14, false);
    const CVelmMemoryDc dc(CreateCompatibleDC(nullptr));
    const CVelmSelect select(dc.get(), font.get());
    const CVelmString name = u"a rather long name of a unit";
    EXPECT_EQ(ShortenText(dc.get(), name, 1000), name);
    const CVelmString shortened = ShortenText(dc.get(), name, Scaled(80));
    EXPECT_EQ(shortened.back(), u'~');
    EXPECT_TRUE(name.starts_with(shortened.substr(0, shortened.size() - 1)));
    SIZE size{};
    GetTextExtentPoint32W(dc.get(), reinterpret_cast<const wchar_t*>(shortened.c_str()),
                          static_cast<int>(shortened.size()), &size);
    EXPECT_LE(size.cx, Scaled(83));
    EXPECT_GT(size.cx, Scaled(70)) << "no shorter than it must be";
    EXPECT_LT(ShortenText(dc.get(), CVelmString(60000, u'x'), Scaled(80)).size(), 20U);
    EXPECT_EQ(ShortenText(dc.get(), name, 0).find(u'~'), CVelmString::npos) << "one character has no room for a sign";
}

}  // namespace
}  // namespace velm::test
