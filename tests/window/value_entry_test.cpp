#include "app/value_panel.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

#include "app/display_scale.h"
#include "datetime/date_time.h"
#include "support/picture.h"
#include "support/value_entry.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr COLORREF RED = RGB(255, 0, 0);

TEST_F(ValueEntryTest, TypingIntoMilesShowsEveryOtherUnit) {
    StartDistances();
    TapRow(0);
    program.Type("26.2");
    EXPECT_TRUE(Shows(1, "42.1648128")) << "without a further touch; it shows " << Shown(1);
    EXPECT_EQ(Shown(0), "26.2");
    EXPECT_EQ(Shown(2), "46,112");
    EXPECT_EQ(Sign(), "accepted");

    TapRow(1);
    EXPECT_EQ(Typed(), "42.1648128") << "the next row comes up with its value";
    program.Type("1+");
    WaitForCommit();
    EXPECT_EQ(Shown(1), "42.1648128") << "what does not parse is not stored";
    program.Type("1");
    EXPECT_TRUE(Shows(1, "2")) << "a formula is";
}

TEST_F(ValueEntryTest, TakesTheValueSomeTimeAfterTheLastKeyAndNotBefore) {
    StartDistances();
    TapRow(0);
    Clock::time_point lastKey;
    for (const char key : std::string("123456789")) {
        program.Type(std::string_view(&key, 1));
        lastKey = Clock::now();
        EXPECT_FALSE(HasValue(0)) << "during typing";
        std::this_thread::sleep_for(milliseconds(150));  // the pace of a user, which is under test here
    }
    EXPECT_TRUE(WaitUntil([this] { return HasValue(0); }));
    const auto waited = std::chrono::duration_cast<milliseconds>(Clock::now() - lastKey).count();
    EXPECT_GE(waited, 300);
    EXPECT_LE(waited, 700);
    EXPECT_EQ(ValueOf(0), 123456789);
}

TEST_F(ValueEntryTest, TypingWithTheFocusOnTheListGoesIntoTheEditor) {
    StartDistances();
    program.Key(VK_DOWN);
    program.Settle();
    EXPECT_EQ(program.Focus(), program.List()) << "keys walk the list";
    program.Type("5");
    EXPECT_TRUE(Shows(1, "5"));
    program.Key(VK_TAB);
    program.Settle();
    EXPECT_EQ(program.Focus(), program.List());
    program.Type("7");
    EXPECT_TRUE(Shows(1, "7")) << "in the place of the old value";
    program.Key(VK_UP);
    program.Settle();
    EXPECT_EQ(program.Focus(), program.Ask([](CVelmFrame& frame) { return frame.Panel().Editor().Box().Handle(); }))
        << "an editor that has the focus keeps it";
}

TEST_F(ValueEntryTest, AcceptingShowsTheNormalForm) {
    StartDistances();
    TapRow(0);
    program.Type("2*3+0.50");
    TapAccept();
    EXPECT_EQ(ValueOf(0), 6.5) << "at once";
    EXPECT_EQ(Typed(), "6.5");
    Enter("(");
    TapAccept();
    EXPECT_EQ(Sign(), "error");
    EXPECT_EQ(Typed(), "6.5") << "the value that the item still has";
    Enter("");
    TapAccept();
    EXPECT_EQ(Sign(), "accepted") << "nothing typed is no error";
    EXPECT_EQ(Typed(), "6.5");
    Enter("8");
    program.Key(VK_RETURN);
    program.Settle();
    EXPECT_EQ(ValueOf(0), 8) << "Enter accepts";
}

TEST_F(ValueEntryTest, RestoringCommitsTheStoredText) {
    StartDistances();
    TapRow(0);
    program.Ask([](CVelmFrame& frame) { frame.Document()->items[0]->valueText = u"2*8"; });
    Enter("3");
    WaitForCommit();
    EXPECT_EQ(ValueOf(0), 3);
    TapRestore();
    EXPECT_EQ(Typed(), "16");
    EXPECT_TRUE(Shows(0, "16"));
    program.Ask([](CVelmFrame& frame) { frame.Document()->items[0]->valueText = u"nonsense("; });
    Enter("4");
    TapRestore();
    EXPECT_EQ(Typed(), "4") << "a text that does not parse restores nothing";
}

TEST_F(ValueEntryTest, TextThatDoesNotParseTurnsRed) {
    StartDistances();
    TapRow(0);
    const HWND box = program.Ask([](CVelmFrame& frame) { return frame.Panel().Editor().Box().Handle(); });
    const auto redPixels = [&] {
        const Picture picture = Picture::OfWindow(box);
        return picture.Count({0, 0, picture.Width(), picture.Height()}, RED);
    };
    program.Type("5+");
    program.Settle();
    EXPECT_EQ(redPixels(), 0) << "not while it is being typed";
    WaitForCommit();
    EXPECT_TRUE(WaitUntil([&] { return redPixels() > 0; }));
    EXPECT_EQ(Sign(), "error");
    EXPECT_FALSE(HasValue(0));
    program.Type("5");
    WaitForCommit();
    EXPECT_TRUE(WaitUntil([&] { return redPixels() == 0; }));
    EXPECT_EQ(Sign(), "accepted");
    EXPECT_EQ(ValueOf(0), 10);
    Enter("5+");
    WaitForCommit();
    TapRow(1);
    EXPECT_EQ(redPixels(), 0) << "the next item's value parses";
    EXPECT_EQ(Sign(), "accepted");
}

TEST_F(ValueEntryTest, AnotherItemDropsEditsThatAreDue) {
    StartDistances();
    Give(0, 1);
    TapRow(0);
    program.Type("55");
    TapRow(1);
    EXPECT_FALSE(program.Ask([](CVelmFrame& frame) { return frame.Panel().HasPendingEdits(); }));
    EXPECT_EQ(ValueOf(0), 1);
    EXPECT_EQ(ValueOf(1), 1.609344) << "what was typed for miles does not land on kilometers";
    program.Type("2");
    EXPECT_TRUE(Shows(1, "2")) << "the next commit is of what was typed for kilometers alone";
    EXPECT_EQ(ValueOf(0), 2 / 1.609344);
}

TEST_F(ValueEntryTest, DoesNothingWhileNothingIsEdited) {
    StartDistances();
    Give(0, 1.0 / 3.0);
    TapRow(0);
    program.Settle();
    EXPECT_EQ(Typed(), "0.33333333333");
    const auto isClean = [this] {
        return GetUpdateRect(program.Panel(), nullptr, FALSE) == FALSE &&
               GetUpdateRect(program.List(), nullptr, FALSE) == FALSE;
    };
    const Clock::time_point end = Clock::now() + milliseconds(600);
    while (Clock::now() < end) {
        ASSERT_TRUE(isClean()) << "something is drawn again";
        std::this_thread::sleep_for(milliseconds(5));
    }
    TapAccept();
    EXPECT_EQ(ValueOf(0), 1.0 / 3.0) << "what is shown with fewer digits is not cut down to them";
}

TEST_F(ValueEntryTest, OffersATabForEachFormat) {
    StartDistances();
    const std::uint32_t all =
        FMT_DECIMAL | FMT_HEX | FMT_OCTAL | FMT_BINARY | FMT_COMPOUND | FMT_DATE | FMT_DATETIME | FMT_CURRENCY;
    Allow(0, all, FMT_BINARY);
    EXPECT_EQ(Tabs(), "numeric/calc | hexadecimal | octal | [binary] | date time | compound");
    Allow(0, FMT_DATE | FMT_CURRENCY, FMT_DATE);
    EXPECT_EQ(Tabs(), "numeric/calc | [date]");
    Allow(0, FMT_DATE | FMT_CURRENCY, FMT_OCTAL);
    EXPECT_EQ(Tabs(), "[numeric/calc] | date") << "an input format that is not there";
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.Panel().TabFormat(0); }), FMT_CURRENCY);
    Allow(0, FMT_DECIMAL | FMT_CURRENCY, FMT_CURRENCY);
    EXPECT_EQ(Tabs(), "[numeric/calc]");
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.Panel().TabFormat(0); }), FMT_DECIMAL);
    Allow(0, all, FMT_DECIMAL);
    program.Resize(Scaled(160), Scaled(200));
    program.Ask([](CVelmFrame& frame) {
        const CVelmValuePanel& panel = frame.Panel();
        EXPECT_LE(panel.TabButton(panel.TabCount() - 1).Rectangle().right, Scaled(160)) << "all tabs fit";
    });
}

TEST_F(ValueEntryTest, ReadsAndWritesNumberBases) {
    StartDistances();
    Allow(0, FMT_DECIMAL | FMT_HEX | FMT_OCTAL | FMT_BINARY, FMT_HEX);
    const auto enter = [this](std::string_view text) {
        Enter(text);
        TapAccept();
        return ValueOf(0);
    };
    EXPECT_EQ(enter("ff"), 255);
    EXPECT_EQ(Typed(), "00FF");
    EXPECT_EQ(Shown(0), "00FF");
    EXPECT_EQ(enter("1f"), 31);
    EXPECT_EQ(Typed(), "001F");
    EXPECT_EQ(enter("001F"), 31) << "padded forms parse again";
    EXPECT_EQ(enter("12345"), 0x12345);
    EXPECT_EQ(Typed(), "000012345");
    EXPECT_EQ(enter("000012345"), 0x12345);
    EXPECT_EQ(enter("0FFFFFFFF"), 4294967295.0);
    EXPECT_EQ(enter("fg"), 4294967295.0);
    EXPECT_EQ(Sign(), "error");
    TapTab(FMT_OCTAL);
    EXPECT_EQ(enter("17"), 15);
    EXPECT_EQ(Typed(), "0017");
    EXPECT_EQ(enter("18"), 15) << "no octal digit";
    TapTab(FMT_BINARY);
    EXPECT_EQ(Typed(), "1111");
    EXPECT_EQ(enter("101"), 5);
    EXPECT_EQ(Typed(), "0101");
    TapTab(FMT_DECIMAL);
    EXPECT_EQ(Typed(), "5");
    EXPECT_EQ(enter("-1"), -1);
    TapTab(FMT_HEX);
    EXPECT_EQ(Typed(), "0FFFFFFFF");
    WaitForCommit();
    EXPECT_EQ(ValueOf(0), -1) << "a value is not changed by looking at it in another base";
    EXPECT_EQ(enter("1.8"), -1) << "no fractions in hexadecimal";
    TapTab(FMT_DECIMAL);
    enter("2.5");
    TapTab(FMT_HEX);
    EXPECT_EQ(Typed(), "");
    WaitForCommit();
    EXPECT_EQ(ValueOf(0), 2.5);
    EXPECT_EQ(Sign(), "accepted");
}

TEST_F(ValueEntryTest, TheTabIsRemembered) {
    StartDistances();
    Allow(1, FMT_DECIMAL | FMT_HEX, FMT_DECIMAL);
    TapTab(FMT_HEX);
    program.Settle();
    EXPECT_EQ(LoadFile(program, u"Distances.cnv")->items[1]->format.inputFormat, FMT_HEX) << "in the file, at once";
    TapRow(0);
    TapRow(1);
    EXPECT_EQ(Tabs(), "numeric/calc | [hexadecimal]");
}

TEST_F(ValueEntryTest, ATabCommitsTheStoredTextOfAnItemWithoutValue) {
    StartDistances();
    program.Ask([](CVelmFrame& frame) { frame.Document()->items[0]->valueText = u"15"; });
    Allow(0, FMT_DECIMAL | FMT_HEX, FMT_DECIMAL);
    EXPECT_EQ(Typed(), "") << "an item with no value comes up empty";
    TapTab(FMT_HEX);
    EXPECT_EQ(Typed(), "000F");
    WaitForCommit();
    EXPECT_EQ(ValueOf(0), 15);
    TapRow(2);
    TapRow(0);
    EXPECT_EQ(Typed(), "000F");
    program.Ask([](CVelmFrame& frame) { frame.Document()->items[0]->state = STATE_NONE; });
    program.Ask([](CVelmFrame& frame) { frame.Document()->items[0]->valueText = u""; });
    TapTab(FMT_DECIMAL);
    EXPECT_EQ(Typed(), "");
    WaitForCommit();
    EXPECT_FALSE(HasValue(0)) << "no value is no value, not a marker";
}

class DateEntryTest : public ValueEntryTest {
protected:
    SYSTEMTIME Read(HWND picker) {
        SYSTEMTIME time{};
        const LRESULT status = program.Ask([&](CVelmFrame&) { return DateTime_GetSystemtime(picker, &time); });
        return status == GDT_VALID ? time : SYSTEMTIME{};
    }
    HWND DatePicker() {
        return program.Ask([](CVelmFrame& frame) { return frame.Panel().Editor().DatePicker(); });
    }
    HWND TimePicker() {
        return program.Ask([](CVelmFrame& frame) { return frame.Panel().Editor().TimePicker(); });
    }

    /// Chooses a date or time in a picker, as its calendar or arrows do.
    void Choose(HWND picker, SYSTEMTIME time) {
        program.Ask([&](CVelmFrame& frame) {
            DateTime_SetSystemtime(picker, GDT_VALID, &time);
            NMDATETIMECHANGE change{};
            change.nmhdr = {picker, 0, static_cast<UINT>(DTN_DATETIMECHANGE)};
            change.st = time;
            SendMessageW(frame.Panel().Handle(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&change));
        });
    }
};

TEST_F(DateEntryTest, PicksDatesAndTimes) {
    StartDistances();
    Allow(0, FMT_DECIMAL | FMT_DATETIME | FMT_DATE, FMT_DATETIME);
    EXPECT_EQ(Tabs(), "numeric/calc | [date time]");
    Give(0, DateTime::FromFields(2004, 3, 5, 14, 30, 15).value);
    EXPECT_EQ(Read(DatePicker()).wYear, 2004);
    EXPECT_EQ(Read(DatePicker()).wMonth, 3);
    EXPECT_EQ(Read(DatePicker()).wDay, 5);
    EXPECT_EQ(Read(TimePicker()).wHour, 14);
    EXPECT_EQ(Read(TimePicker()).wSecond, 15);
    EXPECT_TRUE(IsWindowVisible(DatePicker()) && IsWindowVisible(TimePicker()));
    EXPECT_EQ(PlaceOf(TimePicker()).left - PlaceOf(DatePicker()).left, Scaled(98));
    EXPECT_EQ(PlaceOf(DatePicker()).right - PlaceOf(DatePicker()).left, Scaled(94));

    Choose(DatePicker(), {2020, 2, 0, 29, 1, 2, 3, 0});
    WaitForCommit();
    EXPECT_EQ(ValueOf(0), DateTime::FromFields(2020, 2, 29, 14, 30, 15).value) << "the time is the time picker's";
    Choose(TimePicker(), {2001, 1, 0, 1, 23, 59, 58, 0});
    WaitForCommit();
    EXPECT_EQ(ValueOf(0), DateTime::FromFields(2020, 2, 29, 23, 59, 58).value) << "the date is the date picker's";
    program.Ask([](CVelmFrame& frame) { SetFocus(frame.Panel().Handle()); });
    program.Key(VK_TAB);
    program.Settle();
    EXPECT_EQ(program.Focus(), TimePicker()) << "Tab goes from picker to picker before it leaves the panel";
}

TEST_F(DateEntryTest, ADateThatAPickerCannotShowIsNotChangedByLookingAtIt) {
    StartDistances();
    Allow(0, FMT_DECIMAL | FMT_DATE, FMT_DECIMAL);
    for (const int year : {1753, 9999}) {
        Give(0, DateTime::FromFields(year, 1, 2).value);
        TapTab(FMT_DATE);
        EXPECT_EQ(Read(DatePicker()).wYear, year);
        TapTab(FMT_DECIMAL);
    }
    for (const double value : {DateTime::FromFields(-44, 3, 15).value, DateTime::FromFields(1752, 12, 31).value,
                               DateTime::FromFields(12000, 1, 1).value, 1e300, -1e300}) {
        Give(0, value);
        TapTab(FMT_DATE);
        EXPECT_EQ(Read(DatePicker()).wYear, 0) << value << " is shown as no date";
        WaitForCommit();
        EXPECT_EQ(ValueOf(0), value);
        TapAccept();
        EXPECT_EQ(ValueOf(0), value);
        EXPECT_EQ(Sign(), "accepted");
        TapTab(FMT_DECIMAL);
        WaitForCommit();
        EXPECT_EQ(ValueOf(0), value);
    }
}

TEST_F(DateEntryTest, ADateTabLeavesTheTimeOfDayAlone) {
    StartDistances();
    Allow(0, FMT_DECIMAL | FMT_DATE, FMT_DECIMAL);
    const double afternoon = DateTime::FromFields(2004, 3, 5, 18).value;
    Give(0, afternoon);
    TapTab(FMT_DATE);
    EXPECT_FALSE(IsWindowVisible(TimePicker()));
    WaitForCommit();
    EXPECT_EQ(ValueOf(0), afternoon);
    SYSTEMTIME nextDay = Read(DatePicker());
    ++nextDay.wDay;
    Choose(DatePicker(), nextDay);
    WaitForCommit();
    EXPECT_EQ(ValueOf(0), afternoon + 1.0) << "also of another date";
    Give(0, DateTime::FromFields(2004, 3, 6).value - 1e-9);
    TapTab(FMT_DECIMAL);
    TapTab(FMT_DATE);
    EXPECT_EQ(Read(DatePicker()).wDay, 6) << "a breath before midnight counts as midnight";
}

TEST_F(ValueEntryTest, AnOutputHidesThePanel) {
    SaveCalculationFile(program, u"Sum",
                        {{u"first", u"first"}, {u"second", u"second"}, {u"sum", u"sum", u"first+second"}});
    ASSERT_TRUE(program.Start());
    TapRow(0);
    program.Type("2");
    WaitForCommit();
    TapRow(1);
    program.Type("3");
    EXPECT_TRUE(Shows(2, "5"));
    const int heightWithPanel = program.Ask([](CVelmFrame& frame) {
        RECT area{};
        GetClientRect(frame.List().Handle(), &area);
        return static_cast<int>(area.bottom);
    });
    TapRow(2);
    EXPECT_FALSE(IsWindowVisible(program.Panel()));
    EXPECT_EQ(program.Focus(), program.List()) << "keys still work";
    RECT area{};
    GetClientRect(program.List(), &area);
    EXPECT_EQ(area.bottom - heightWithPanel, Scaled(42));
    program.Key(VK_UP);
    program.Settle();
    EXPECT_TRUE(IsWindowVisible(program.Panel()));
}

TEST_F(ValueEntryTest, SwitchingFilesDropsWhatWasBeingTyped) {
    SaveConversionFile(program, u"Areas", {{u"ares"}, {u"acres", 0.0247}});
    StartDistances();
    Give(0, 7);
    TapRow(0);
    program.Type("9");
    program.Ask([](CVelmFrame& frame) { frame.SelectFile(frame.Catalog().GetDocument(u"Areas.cnv", false)); });
    TapRow(1);
    program.Type("247");
    WaitForCommit();
    EXPECT_NEAR(ValueOf(0), 10000, 1e-9);
    program.Ask([](CVelmFrame& frame) { frame.SelectFile(nullptr); });
    program.Type("9");
    program.Settle();
    EXPECT_FALSE(IsWindowVisible(program.Panel()));
}

}  // namespace
}  // namespace velm::test
