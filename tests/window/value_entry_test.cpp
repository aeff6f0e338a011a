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

    void SetParts(const std::vector<CVelmCompoundPart>& parts) {
        CVelmCompoundParts& kept = Item(0).format.compoundParts;
        kept = {};
        std::copy(parts.begin(), parts.end(), kept.begin());
        Allow(0, FMT_DECIMAL | FMT_COMPOUND, FMT_COMPOUND);
        Do("focus panel");
    }

    /// The part with the focus, of how many that are shown: "1 of 3".
    std::string Part() {
        return program.Ask([](CVelmFrame& frame) {
            const CVelmCompoundEditor& editor = frame.Panel().Editor().Compound();
            int visible = 0;
            for (int i = 0; i < COMPOUND_PARTS; ++i) {
                visible += IsWindowVisible(editor.Part(i).Handle()) ? 1 : 0;
            }
            return std::to_string(editor.FocusedPart() + 1) + " of " + std::to_string(visible);
        });
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

TEST_F(ValueEntryTest, TakesWhatIsTyped) {
    StartDistances();
    Item(0).valueText = u"2*8";
    Play({
        {"row 0; type 1/3", "1/3 = none"},
        {"wait", "1/3 = 0.333333333333333"},
        {"accept", "0.33333333333 = 0.333333333333333", "the normal form has fewer digits, the value all of them"},
        {"enter 2*3+0.50; accept", "6.5 = 6.5", "at once"},
        {"enter (; accept", "6.5 = 6.5 (error)", "the value that the item still has"},
        {"enter ; accept", "6.5 = 6.5", "nothing typed is no error"},
        {"enter 8; press Enter", "8 = 8"},
        {"restore; wait", "16 = 16", "the stored text"},
        {"enter 5+; wait", "5+ = 16 (error)"},
        {"row 1", "25.749504 = 25.749504", "what does not parse is dropped with the item"},
        {"type 55; row 2", "28160 = 28160", "and so is what was not committed yet"},
        {"type 3520; wait", "3520 = 3520"},
        {"row 1", "3.218688 = 3.218688"},
        {"focus list; press Down", "3520 = 3520", "keys walk the list"},
        {"type 7; wait; press Tab; type 8; wait", "8 = 8", "typed with the focus on the list"},
    });
    Item(2).valueText = u"nonsense(";
    Play({{"enter 4; restore", "4 = 8", "a text that does not parse restores nothing"}});
    program.Key(VK_UP);
    EXPECT_EQ(program.Focus(), Box()) << "an editor that has the focus keeps it";
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

TEST_F(ValueEntryTest, OffersATabForEachFormat) {
    StartDistances();
    const std::uint32_t all =
        FMT_DECIMAL | FMT_HEX | FMT_OCTAL | FMT_BINARY | FMT_COMPOUND | FMT_DATE | FMT_DATETIME | FMT_CURRENCY;
    struct Case {
        std::uint32_t formats;
        std::uint32_t input;
        std::string tabs;
        std::uint32_t first;
    };
    for (const Case& row : std::vector<Case>{
             {FMT_DATE | FMT_CURRENCY, FMT_DATE, "numeric/calc | [date]", FMT_CURRENCY},
             {FMT_DATE | FMT_CURRENCY, FMT_OCTAL, "[numeric/calc] | date", FMT_CURRENCY},
             {FMT_DECIMAL | FMT_CURRENCY, FMT_CURRENCY, "[numeric/calc]", FMT_DECIMAL},
             {all, FMT_BINARY, "numeric/calc | hexadecimal | octal | [binary] | date time | compound", FMT_DECIMAL},
         }) {
        Allow(0, row.formats, row.input);
        EXPECT_EQ(Tabs(), row.tabs);
        EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.Panel().TabFormat(0); }), row.first) << row.tabs;
    }
    program.Resize(Scaled(160), Scaled(200));
    const RECT last = program.Ask([](CVelmFrame& frame) { return frame.Panel().TabButton(5).Rectangle(); });
    EXPECT_LE(last.right, Scaled(160)) << "all tabs fit";
    EXPECT_GT(last.right, Scaled(150));
    Do("tab hexadecimal");
    EXPECT_EQ(LoadFile(program, u"Distances.cnv")->items[0]->format.inputFormat, FMT_HEX) << "in the file, at once";
    Do("row 1; row 0");
    EXPECT_NE(Tabs().find("[hexadecimal]"), std::string::npos) << Tabs();
}

TEST_F(ValueEntryTest, ReadsAndWritesNumberBases) {
    StartDistances();
    Item(0).valueText = u"15";
    Allow(0, FMT_DECIMAL | FMT_HEX | FMT_OCTAL | FMT_BINARY, FMT_DECIMAL);
    Play({
        {"wait", " = none", "an item with no value comes up empty"},
        {"tab hexadecimal", "000F = none"},
        {"wait", "000F = 15", "a tab commits the stored text"},
        {"enter ff; accept", "00FF = 255"},
        {"enter 1f; accept", "001F = 31"},
        {"enter 001F; accept", "001F = 31", "padded forms parse again"},
        {"enter 12345; accept", "000012345 = 74565"},
        {"enter 000012345; accept", "000012345 = 74565"},
        {"enter 0FFFFFFFF; accept", " = 4294967295", "more than the format shows"},
        {"enter fg; wait", "fg = 4294967295 (error)"},
        {"tab octal; enter 17; accept", "0017 = 15"},
        {"enter 18; wait", "18 = 15 (error)", "no octal digit"},
        {"tab binary; wait", "1111 = 15"},
        {"enter 101; accept", "0101 = 5"},
        {"tab numeric/calc; enter -1; accept", "-1 = -1"},
        {"tab hexadecimal; wait", "0FFFFFFFF = -1", "looking at it in another base does not change it"},
        {"enter 1.8; wait", "1.8 = -1 (error)", "no fractions in hexadecimal"},
        {"tab numeric/calc; enter 2.5; accept; tab hexadecimal; wait", " = 2.5"},
    });
    EXPECT_EQ(Rows().substr(0, 9), "miles=2.5");
    Item(0).state = STATE_NONE;
    Item(0).valueText.clear();
    Play({{"tab numeric/calc; wait", " = none", "no value is no value, not a marker"}});
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
        return seen.substr(0, seen.find(" = "));
    };
    Allow(0, FMT_DECIMAL | FMT_DATE, FMT_DECIMAL);
    for (const double value : {DateTime::FromFields(-44, 3, 15).value, DateTime::FromFields(1752, 12, 31).value,
                               DateTime::FromFields(12000, 1, 1).value, 1e300, -1e300}) {
        EXPECT_EQ(look("date", value), "no date") << value;
    }
    EXPECT_EQ(look("date", DateTime::FromFields(1753, 1, 2).value), "1753-01-02");
    EXPECT_EQ(look("date", DateTime::FromFields(9999, 1, 2).value), "9999-01-02");
    SetParts({{u"ft", 1.0}, {u"in", 12.0}});
    Do("tab numeric/calc");
    EXPECT_EQ(look("compound", 2.5e15), "") << "parts have no exponents";
    EXPECT_EQ(look("compound", -1e300), "");
    look("compound", 1.0 / 3.0);
    look("compound", 5.0 + 1e-9);
}

TEST_F(ValueEntryTest, TypesCompoundValues) {
    StartDistances();
    SetParts({{u"ft", 1.0}, {u"in", 12.0}});
    Play({
        {"type 5; press Tab; type 3; wait", "[5 3] = 5.25"},
        {"type -; wait", "-[5 3] = -5.25", "the sign key turns the whole value"},
        {"accept", "-[5 3] = -5.25"},
        {"give 1", "[1 0] = 1", "the sign goes with the value"},
        {"give -5.25", "-[5 3] = -5.25"},
        {"type -; wait", "[5 3] = 5.25"},
        {"focus panel; type .5; wait", "[.5 3] = 0.75", "what is selected gives way"},
        {"focus panel; type 1.2.5x e[,; wait", "[1.25 3] = 1.5", "digits and one point"},
        {"focus panel; type \b; press Tab; type 6; wait", "[0 6] = 0.5", "an empty part keeps its place"},
        {"type \b; wait", " = 0.5", "nothing typed is no error"},
        {"focus list; paste -1,234.5", "-[1234.5 0] = 0.5"},
        {"paste 5 ft; wait", "-[1234.5 0] = -1234.5", "a part takes plain numbers only"},
    });
    EXPECT_EQ(Rows().substr(0, 22), "miles=(1234 ft 6 in ),");

    SetParts({{u"h", 1.0 / 3600.0}, {u"min", 60.0}, {u"s", 60.0}});
    Item(0).state = STATE_NONE;
    Select(0);
    Do("focus panel");
    Play(
        {
            {"press Right", "2 of 3"},
            {"press Left", "1 of 3"},
            {"type 12; press Left", "1 of 3", "within the digits first"},
            {"press Right", "1 of 3"},
            {"press Right", "2 of 3"},
            {"type \b", "1 of 3", "Backspace in an empty part moves back"},
            {"press Enter", "2 of 3"},
            {"type 3; press Enter", "3 of 3"},
            {"type 5; press Enter", "3 of 3"},
        },
        [this] { return Part(); });
    EXPECT_EQ(Entry(), "[12 3 5] = 43385") << "Enter in the last part accepts";
    Play({{"press Shift+Tab", "2 of 3"}, {"press Tab; press Tab", "0 of 3"}}, [this] { return Part(); });
    EXPECT_EQ(program.Focus(), program.List()) << "Tab leaves the last part for the list";
}

TEST_F(ValueEntryTest, EveryCompoundPartHasItsPlace) {
    StartDistances();
    SetParts({{u"weeks of work", 1.0}, {u"d", 7.0}, {u"h", 24.0}, {u"a rather long label", 60.0}});
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

TEST_F(ValueEntryTest, AnOutputHidesThePanel) {
    SaveCalculationFile(program, u"Sum",
                        {{u"first", u"first"}, {u"second", u"second"}, {u"sum", u"sum", u"first+second"}});
    ASSERT_TRUE(program.Start());
    Do("row 0; type 2; wait; row 1; type 3; wait");
    EXPECT_EQ(Rows(), "first=2, second=3, sum=5");
    const LONG above = ClientOf(program.List()).bottom;
    Play({{"row 2", ""}});
    EXPECT_EQ(program.Focus(), program.List()) << "keys still work";
    EXPECT_EQ(ClientOf(program.List()).bottom - above, Scaled(42));
    Play({{"type 7", ""}, {"press Up", "3 = 3"}});
}

TEST_F(ValueEntryTest, SwitchingFilesDropsWhatWasBeingTyped) {
    SaveConversionFile(program, u"Areas", {{u"ares"}, {u"acres", 0.0247}});
    StartDistances();
    Give(0, 7);
    Do("row 0; type 9");
    program.Ask([](CVelmFrame& frame) { frame.SelectFile(frame.Catalog().GetDocument(u"Areas.cnv", false)); });
    Do("row 1; type 247; wait");
    EXPECT_EQ(Rows(), "ares=10,000, acres=247");
    program.Ask([](CVelmFrame& frame) { frame.SelectFile(nullptr); });
    Do("type 9");
    EXPECT_FALSE(IsWindowVisible(program.Panel()));
}

}  // namespace
}  // namespace velm::test
