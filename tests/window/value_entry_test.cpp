#include <gtest/gtest.h>

#include <algorithm>

#include "app/display_scale.h"
#include "datetime/date_time.h"
#include "support/picture.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

class ValueEntryTest : public ProgramTest {
protected:
    HWND Box() {
        return program.Ask([](CVelmFrame& frame) { return frame.Panel().Editor().Box().Handle(); });
    }

    int RedPixels() {
        const Picture picture = Picture::OfWindow(Box());
        return picture.Count({0, 0, picture.Width(), picture.Height()}, RGB(255, 0, 0));
    }
};

TEST_F(ValueEntryTest, TypingShowsEveryOtherUnitSomeTimeAfterTheLastKey) {
    StartDistances();
    TapRow(0);
    // A busy machine makes single times longer, never shorter.
    auto shortest = milliseconds::max();
    for (int tries = 0; tries < 10 && shortest > milliseconds(700); ++tries) {
        Item(0).state = STATE_NONE;
        Clock::time_point lastKey;
        for (const char* const key : {"\b", "2", "6", ".", "2"}) {
            lastKey = Clock::now();
            program.Type(key);
            while (Clock::now() < lastKey + milliseconds(200)) {  // the pace of a user, which is under test here
                const bool committed = Item(0).state == STATE_VALID;
                ASSERT_FALSE(committed && Clock::now() < lastKey + milliseconds(300)) << "during typing";
            }
        }
        EXPECT_TRUE(WaitUntil([this] { return Item(0).state == STATE_VALID; }));
        const auto waited = std::chrono::duration_cast<milliseconds>(Clock::now() - lastKey);
        EXPECT_GE(waited, milliseconds(300));
        shortest = std::min(shortest, waited);
        EXPECT_BECOMES(Rows(), "miles=26.2, kilometers=42.1648128, yards=46,112") << "without a further touch";
        program.Ask([this](CVelmFrame&) { SendMessageW(Box(), EM_SETSEL, 0, -1); });
    }
    EXPECT_LE(shortest, milliseconds(700));
}

TEST_F(ValueEntryTest, TextThatDoesNotParseTurnsRed) {
    StartDistances();
    Do("row 0; type 5+");
    EXPECT_EQ(RedPixels(), 0) << "not while it is being typed";
    for (const auto& [acts, red] : std::vector<std::pair<std::string, bool>>{
             {"wait", true}, {"type 5; wait", false}, {"enter 5+; wait", true}, {"row 1", false}}) {
        Do(acts);
        EXPECT_BECOMES(RedPixels() > 0, red) << acts;
    }
}

TEST_F(ValueEntryTest, NothingIsDrawnWhileNothingIsEdited) {
    StartDistances();
    Give(0, 1.0 / 3.0);
    Do("row 0");
    for (int tick = 0; tick < 10; ++tick) {
        SendMessageW(program.Panel(), WM_TIMER, 1, 0);
        ASSERT_FALSE(GetUpdateRect(program.Panel(), nullptr, FALSE)) << "the panel is drawn again";
        ASSERT_FALSE(GetUpdateRect(program.List(), nullptr, FALSE)) << "the list is drawn again";
    }
}

TEST_F(ValueEntryTest, AllTabsFitIntoANarrowPanel) {
    StartDistances();
    Do("allow 0 decimal hex octal binary datetime compound");
    program.Resize(Scaled(160), Scaled(200));
    const RECT last = program.Ask([](CVelmFrame& frame) { return frame.Panel().TabButton(5).Rectangle(); });
    EXPECT_NEAR(last.right, Scaled(160 - 2), 1);
}

TEST_F(ValueEntryTest, PicksDatesAndTimes) {
    StartDistances();
    Allow(0, FMT_DECIMAL | FMT_DATETIME, FMT_DATETIME);
    Give(0, DateTime::FromFields(2004, 3, 5, 14, 30, 15).value);
    Play({
        {"wait", "2004-03-05 14:30:15 = 2004-03-05 14:30:15"},
        {"pick 2020-02-29; wait", "2020-02-29 14:30:15 = 2020-02-29 14:30:15", "the time is the time picker's"},
        {"pick 23:59:58; wait", "2020-02-29 23:59:58 = 2020-02-29 23:59:58", "the date is the date picker's"},
    });
    program.Ask([](CVelmFrame& frame) {
        const CVelmValueEditor& editor = frame.Panel().Editor();
        EXPECT_EQ(PlaceOf(editor.TimePicker()).left - PlaceOf(editor.DatePicker()).left, Scaled(98));
        EXPECT_EQ(PlaceOf(editor.DatePicker()).right - PlaceOf(editor.DatePicker()).left, Scaled(94));
    });
    const auto focus = [this] {
        return program.Ask([](CVelmFrame& frame) -> std::string {
            const CVelmValueEditor& editor = frame.Panel().Editor();
            const HWND focused = GetFocus();
            return focused == editor.DatePicker() ? "date" : (focused == editor.TimePicker() ? "time" : "other");
        });
    };
    Play({{"focus panel", "date"},
          {"press Tab", "time"},
          {"press Shift+Tab", "date"},
          {"press Tab; press Tab", "other"}},
         focus);
    Allow(0, FMT_DECIMAL | FMT_DATE, FMT_DATE);
    Play({
        {"wait", "2020-02-29 = 2020-02-29 23:59:58", "a date alone leaves the time of day alone"},
        {"pick 2004-03-06; wait", "2004-03-06 = 2004-03-06 23:59:58", "another date too"},
    });
    Give(0, DateTime::FromFields(2004, 3, 6).value - 1e-9);
    EXPECT_EQ(Entry().substr(0, 10), "2004-03-06") << "a breath before midnight counts as midnight";
}

TEST_F(ValueEntryTest, AValueThatATabCannotShowIsNotChangedByLookingAtIt) {
    StartDistances();
    const auto look = [this](const std::string& tab, double value) {
        Give(0, value);
        Do("tab " + tab);
        const std::string seen = Entry();
        Do("wait; accept");
        EXPECT_EQ(Item(0).value, value) << tab;
        EXPECT_EQ(Entry().find("error"), std::string::npos);
        Do("tab numeric/calc; wait");
        EXPECT_EQ(Item(0).value, value) << "after " << tab;
        return seen.starts_with("= ") ? "" : seen.substr(0, seen.find(" = "));
    };
    Allow(0, FMT_DECIMAL | FMT_DATE, FMT_DECIMAL);
    for (const double value : {DateTime::FromFields(-44, 3, 15).value, DateTime::FromFields(1752, 12, 31).value,
                               DateTime::FromFields(12000, 1, 1).value, 1e300, -1e300}) {
        EXPECT_EQ(look("date", value), "no date") << value;
    }
    EXPECT_EQ(look("date", DateTime::FromFields(1753, 1, 2).value), "1753-01-02");
    EXPECT_EQ(look("date", DateTime::FromFields(9999, 1, 2).value), "9999-01-02");
    SetParts(0, "1 ft, 12 in");
    Do("tab numeric/calc");
    EXPECT_EQ(look("compound", 2.5e15), "") << "parts have no exponents";
    EXPECT_EQ(look("compound", -1e300), "");
    look("compound", 1.0 / 3.0);
    look("compound", 5.0 + 1e-9);
}

TEST_F(ValueEntryTest, EveryCompoundPartHasItsPlace) {
    StartDistances();
    SetParts(0, "1 weeks of work, 7 d, 24 h, 60 a rather long label");
    for (const int width : {160, 240, 480}) {
        SCOPED_TRACE(width);
        program.Resize(Scaled(width), Scaled(320));
        program.Ask([&](CVelmFrame& frame) {
            const CVelmCompoundEditor& editor = frame.Panel().Editor().Compound();
            LONG end = Scaled(8);
            for (int i = 0; i < COMPOUND_PARTS; ++i) {
                const RECT place = PlaceOf(editor.Part(i).Handle());
                EXPECT_TRUE(i == 0 ? place.left == end : place.left > end) << "part " << i;
                EXPECT_GE(place.right - place.left, Scaled(12));
                end = place.right;
            }
            EXPECT_LT(end, ClientOf(editor.Handle()).right);
        });
    }
}

}  // namespace
}  // namespace velm::test
