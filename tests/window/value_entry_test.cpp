#include <gtest/gtest.h>

#include <algorithm>

#include "listview/value_panel.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

using ValueEntryTest = ProgramTest;

TEST_F(ValueEntryTest, TypingShowsEveryOtherUnitSomeTimeAfterTheLastKey) {
    StartDistances();
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
        Select(0);
    }
    EXPECT_LE(shortest, milliseconds(700));
}

TEST_F(ValueEntryTest, NothingIsDrawnWhileNothingIsEdited) {
    StartDistances();
    Give(0, 1.0 / 3.0);
    Do("row 0");
    for (int tick = 0; tick < 10; ++tick) {
        SendMessageW(program.Panel(), WM_TIMER, COMMIT_TIMER, 0);
        ASSERT_FALSE(GetUpdateRect(program.Panel(), nullptr, FALSE)) << "the panel is drawn again";
        ASSERT_FALSE(GetUpdateRect(program.List(), nullptr, FALSE)) << "the list is drawn again";
    }
}

}  // namespace
}  // namespace velm::test
