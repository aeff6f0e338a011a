#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/display_scale.h"
#include "listview/bitmap.h"
#include "listview/label.h"
#include "resource.h"
#include "support/files.h"
#include "support/picture.h"
#include "support/running_program.h"

namespace velm::test {
namespace {

/// A running program with one conversion file of so many units, "unit 0" (identifier "u0") and on.
class ItemListTest : public testing::Test {
protected:
    void Start(int units) {
        std::vector<CVelmString> names;
        std::vector<CVelmString> identifiers;
        for (int i = 0; i < units; ++i) {
            const std::string number = std::to_string(i);
            names.push_back(u"unit " + FromUtf8(number));
            identifiers.push_back(u"u" + FromUtf8(number));
        }
        std::vector<UnitFactor> list;
        for (std::size_t i = 0; i < names.size(); ++i) {
            list.push_back({names[i], 1.0 + static_cast<double>(i), identifiers[i]});
        }
        SaveConversionFile(program, u"Many", list);
        ASSERT_TRUE(program.Start());
    }

    /// Gives the list room for that many pixels of an ordinary screen, panel and header not counted.
    void ResizeList(int width, int height) {
        program.Resize(Scaled(width), Scaled(400));
        program.Ask([&](CVelmFrame& frame) {
            MoveWindow(frame.List().Handle(), 0, Scaled(24), Scaled(width), Scaled(height), TRUE);
        });
        program.Settle();
    }

    /// What the list says of itself: "top/visible/selected".
    std::string State() {
        return program.Ask([](CVelmFrame& frame) {
            const CVelmItemList& list = frame.List();
            return std::to_string(list.Top()) + "/" + std::to_string(list.VisibleRows()) + "/" +
                   std::to_string(list.Selected());
        });
    }

    void Select(int row) {
        program.Ask([row](CVelmFrame& frame) { frame.List().SelectRow(row); });
    }

    SCROLLINFO ScrollBar() {
        SCROLLINFO info{};
        info.cbSize = sizeof(info);
        info.fMask = SIF_ALL;
        GetScrollInfo(program.List(), SB_VERT, &info);
        return info;
    }

    /// Enters a value into the first item and recalculates.
    void Enter(double value) {
        program.Ask([value](CVelmFrame& frame) {
            frame.Document()->items.front()->value = value;
            frame.Document()->items.front()->state = STATE_VALID;
            SendMessageW(frame.Handle(), WM_COMMAND, ID_CALCULATE, 0);
        });
    }

    std::string ValueText(int row) {
        return program.Ask([row](CVelmFrame& frame) { return ToUtf8(frame.List().Row(row).ValueText()); });
    }

    POINT MiddleOf(int row) {
        const RECT area = program.Ask([row](CVelmFrame& frame) { return frame.List().Row(row).Rectangle(); });
        return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
    }

    void TapButton(int row) {
        const RECT area = program.Ask([row](CVelmFrame& frame) { return frame.List().Row(row).Button().Rectangle(); });
        program.Tap(program.List(), static_cast<int>(area.left) + 3, static_cast<int>(area.top) + 3);
    }

    RunningProgram program;
};

#define EXPECT_RECT(actual, expected)              \
    EXPECT_TRUE(EqualRect(&(actual), &(expected))) \
        << (actual).left << " " << (actual).top << " " << (actual).right << " " << (actual).bottom

TEST_F(ItemListTest, LaysRowsOutInOneLineOrTwo) {
    Start(9);
    ResizeList(240, 100);
    const int width = program.Ask([](CVelmFrame& frame) {
        RECT area{};
        GetClientRect(frame.List().Handle(), &area);
        return static_cast<int>(area.right);
    });
    EXPECT_EQ(State(), "0/4/0");
    program.Ask([width](CVelmFrame& frame) {
        const CVelmItemRow& row = frame.List().Row(1);
        EXPECT_EQ(frame.List().RowHeight(), Scaled(21));
        const LONG top = Scaled(21);
        const RECT button{Scaled(1), top + 1, Scaled(21), top + 1 + Scaled(20)};
        EXPECT_RECT(row.Button().Rectangle(), button);
        const RECT name{Scaled(21), top + Scaled(3), Scaled(21) + width - Scaled(180), top + Scaled(19)};
        EXPECT_RECT(row.NameLabel().area, name);
        const RECT value{width - Scaled(160), top + Scaled(3), width, top + Scaled(19)};
        EXPECT_RECT(row.ValueLabel().area, value);
        EXPECT_EQ(ToUtf8(row.NameText()), "u1") << "a narrow label has the short name";
    });
    program.Command(ID_ROW_SIZE);
    program.Settle();
    EXPECT_EQ(State(), "0/2/0");
    program.Ask([width](CVelmFrame& frame) {
        const CVelmItemRow& row = frame.List().Row(1);
        const LONG top = Scaled(38);
        const RECT button{Scaled(4), top + Scaled(17), Scaled(24), top + Scaled(37)};
        EXPECT_RECT(row.Button().Rectangle(), button);
        const RECT name{Scaled(4), top + Scaled(2), Scaled(4) + width - Scaled(12), top + Scaled(18)};
        EXPECT_RECT(row.NameLabel().area, name);
        const RECT value{Scaled(24), top + Scaled(20), Scaled(24) + width - Scaled(30), top + Scaled(36)};
        EXPECT_RECT(row.ValueLabel().area, value);
        EXPECT_EQ(ToUtf8(row.NameText()), "unit 1");
    });
    ResizeList(240, 75);
    EXPECT_EQ(State(), "0/3/0") << "a list this low has one-line rows whatever the setting";
    ResizeList(240, 10);
    EXPECT_EQ(State(), "0/1/0") << "and one visible row whatever its height";
    ResizeList(320, 75);
    program.Ask([](CVelmFrame& frame) { EXPECT_EQ(ToUtf8(frame.List().Row(1).NameText()), "unit 1"); });
    EXPECT_TRUE(program.Close());
    EXPECT_NE(program.StoredSettings().twoLineRows, 0U);
}

TEST_F(ItemListTest, ScrollsByRowsAndStopsAtTheEnds) {
    Start(10);
    ResizeList(240, 3 * 21);
    const auto scroll = [this](WORD request) {
        SendMessageW(program.List(), WM_VSCROLL, request, 0);
        return State();
    };
    EXPECT_EQ(ScrollBar().nMax, 9);
    EXPECT_EQ(ScrollBar().nPage, 3U);
    EXPECT_EQ(scroll(SB_LINEDOWN), "1/3/0");
    EXPECT_EQ(scroll(SB_PAGEDOWN), "4/3/0");
    EXPECT_EQ(scroll(SB_PAGEDOWN), "7/3/0");
    EXPECT_EQ(scroll(SB_PAGEDOWN), "7/3/0");
    EXPECT_EQ(ScrollBar().nPos, 7);
    EXPECT_EQ(scroll(SB_LINEUP), "6/3/0");
    EXPECT_EQ(scroll(SB_PAGEUP), "3/3/0");
    EXPECT_EQ(scroll(SB_TOP), "0/3/0");
    EXPECT_EQ(scroll(SB_LINEUP), "0/3/0");
    EXPECT_EQ(scroll(SB_BOTTOM), "7/3/0");
    program.Wheel(2 * WHEEL_DELTA);
    program.Settle();
    EXPECT_EQ(State(), "5/3/0") << "away from the user is up";
    program.Wheel(-WHEEL_DELTA / 2);
    program.Wheel(-WHEEL_DELTA / 2);
    program.Settle();
    EXPECT_EQ(State(), "6/3/0") << "fine wheels add up";
    ResizeList(240, 5 * 21);
    EXPECT_EQ(State(), "5/5/0") << "more room shows more rows, not an empty end";
}

TEST_F(ItemListTest, KeysGoRoundAtTheEnds) {
    Start(5);
    ResizeList(240, 3 * 21);
    const auto press = [this](WORD key) {
        program.Key(key);
        program.Settle();
        return State();
    };
    Select(4);
    EXPECT_EQ(State(), "2/3/4");
    EXPECT_EQ(press(VK_DOWN), "0/3/0");
    EXPECT_EQ(press(VK_UP), "2/3/4");
    Select(3);
    EXPECT_EQ(press(VK_NEXT), "1/3/1");
    EXPECT_EQ(press(VK_PRIOR), "1/3/3");
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return ToUtf8(frame.Document()->currentItem->name); }), "unit 3");
    ResizeList(240, 12 * 21);
    Select(0);
    EXPECT_EQ(press(VK_PRIOR), "0/12/3") << "a page longer than the list goes round too";
}

TEST_F(ItemListTest, AnEmptyListIgnoresKeys) {
    Start(0);
    program.Key(VK_DOWN);
    program.Key(VK_NEXT);
    program.Settle();
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.List().Selected(); }), -1);
    EXPECT_EQ(ScrollBar().nMin, 0);
    EXPECT_EQ(ScrollBar().nMax, 0);
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
        list.SelectRow(0);
        EXPECT_EQ(list.Selected(), 0);
    });
    EXPECT_EQ(ScrollBar().nMax, 0);
}

TEST_F(ItemListTest, ShowsValuesAndErrors) {
    SaveConversionFile(program, u"Broken", {{u"a"}, {u"b", 2.0}, {u"zero", 0.0}});
    Start(3);
    program.Ask([](CVelmFrame& frame) {
        frame.SelectFile(frame.Catalog().GetDocument(u"Broken.cnv", false));
        EXPECT_EQ(frame.List().Row(1).ValueText(), u"");
    });
    Enter(1234.5);
    EXPECT_EQ(ValueText(0), "1,234.5");
    EXPECT_EQ(ValueText(1), "2,469");
    program.Ask([](CVelmFrame& frame) {
        frame.List().SelectRow(2);
        frame.Document()->currentItem->value = 1;
        frame.Document()->currentItem->state = STATE_VALID;
        SendMessageW(frame.Handle(), WM_COMMAND, ID_CALCULATE, 0);
    });
    EXPECT_EQ(ValueText(0), "Error") << "a factor of 0 does not go backwards";
}

TEST_F(ItemListTest, FormatMenuOffersWhatTheItemAllows) {
    Start(3);
    program.Ask([](CVelmFrame& frame) {
        frame.Document()->items[1]->format.SetAllowedFormats(FMT_DECIMAL | FMT_HEX | FMT_OCTAL | FMT_BINARY |
                                                             FMT_COMPOUND | FMT_DATE | FMT_DATETIME | FMT_CURRENCY);
    });
    Enter(10);
    const std::vector<std::pair<std::string, std::string>> formats = {
        {"Currency", "20.00"},   {"Hexadecimal", "0014"}, {"Octal", "0024"},
        {"Binary", "0001 0100"}, {"Compound", "20 "},     {"Default (decimal)", "20"},
    };
    for (const auto& [entry, text] : formats) {
        TapButton(1);
        const auto menu = program.WaitForMenu();
        ASSERT_TRUE(menu);
        ASSERT_TRUE(menu->Choose(entry)) << entry;
        EXPECT_TRUE(program.Eventually([&](CVelmFrame& frame) {
            return ToUtf8(frame.List().Row(1).ValueText()) == text;
        })) << entry
            << " shows " << ValueText(1);
    }
    TapButton(1);
    auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->Texts(),
              (std::vector<std::string>{"Default (decimal)", "Currency", "Hexadecimal", "Octal", "Binary", "Date",
                                        "Date Time", "Compound", "-", "Customize..."}));
    EXPECT_TRUE(menu->Find("Default (decimal)")->checked);
    EXPECT_FALSE(menu->Find("Compound")->checked);
    EXPECT_TRUE(menu->Choose("Date Time"));
    TapButton(2);
    menu = program.WaitForMenu();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->Texts(), (std::vector<std::string>{"Default (decimal)", "-", "Customize..."}));
    menu->Close();
    EXPECT_TRUE(program.Close());
    EXPECT_EQ(LoadFile(program, u"Many.cnv")->items[1]->format.displayFormat, FMT_DATETIME) << "the choice is kept";
}

TEST_F(ItemListTest, HoldingOrRightClickingOpensTheRowMenu) {
    Start(4);
    const POINT row = MiddleOf(2);
    program.PenDown(program.List(), static_cast<int>(row.x), static_cast<int>(row.y));
    auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu) << "a pen held in place";
    EXPECT_EQ(menu->Texts(), (std::vector<std::string>{"Edit", "Remove from List"})) << "there is no value to copy";
    EXPECT_TRUE(menu->Choose("Remove from List"));
    EXPECT_TRUE(program.Eventually([](CVelmFrame& frame) { return frame.List().RowCount() == 3; }));

    Enter(2.5);
    program.RightClick(program.List(), static_cast<int>(row.x), static_cast<int>(row.y));
    menu = program.WaitForMenu();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->Texts(), (std::vector<std::string>{"Copy Value", "-", "Edit", "Remove from List"}));
    menu->Close();
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.List().Selected(); }), 2);

    program.Tap(program.List(), static_cast<int>(row.x), Scaled(5));
    EXPECT_TRUE(program.Eventually([](CVelmFrame& frame) { return frame.List().Selected() == 0; }));
    EXPECT_TRUE(program.Close());
    EXPECT_EQ(LoadFile(program, u"Many.cnv")->items[2]->shown, 0);
}

TEST_F(ItemListTest, CopiesTheValueAsShown) {
    Start(2);
    Enter(1234567.25);
    program.Command(ID_COPY);
    program.Settle();
    ASSERT_TRUE(OpenClipboard(nullptr));
    const HANDLE data = GetClipboardData(CF_UNICODETEXT);
    const auto* const text = data != nullptr ? static_cast<const wchar_t*>(GlobalLock(data)) : nullptr;
    const std::wstring copied = text != nullptr ? text : L"";
    GlobalUnlock(data);
    CloseClipboard();
    EXPECT_EQ(copied, L"1,234,567.25");
}

TEST_F(ItemListTest, DrawsRowsApart) {
    Start(3);
    ResizeList(240, 10 * 21);
    const COLORREF fill = MixColor(140, BaseColor());
    const Picture picture = Picture::OfWindow(program.List());
    const int right = picture.Width() - 2 * DisplayScale();
    const int row = Scaled(21);
    EXPECT_EQ(picture.At(right, row + row / 2), fill);
    EXPECT_EQ(picture.At(right, 2 * row - 2), fill);
    EXPECT_EQ(picture.At(right, 2 * row - 1), RGB(255, 255, 255)) << "a line of background below an unselected row";
    EXPECT_NE(picture.At(right, row - 1), RGB(255, 255, 255)) << "none below the selected row";
    EXPECT_TRUE(picture.IsAll({0, 3 * row, picture.Width(), picture.Height()}, RGB(255, 255, 255)));
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
    EXPECT_GT(size.cx, Scaled(60)) << "no shorter than it must be";
    EXPECT_LT(ShortenText(dc.get(), CVelmString(60000, u'x'), Scaled(80)).size(), 20U);
    EXPECT_EQ(ShortenText(dc.get(), name, 0).find(u'~'), CVelmString::npos) << "one character has no room for a sign";
}

}  // namespace
}  // namespace velm::test
