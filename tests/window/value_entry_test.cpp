#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

#include "listview/value_panel.h"
#include "support/program_test.h"
#include "support/table.h"

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

std::string received;

/// A calculator that notes the messages handed to it.
LRESULT CALLBACK CalculatorProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COPYDATA) {
        const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        received += Print("%lu %lu %g; ", static_cast<unsigned long>(data.dwData), data.cbData,
                          *static_cast<const double*>(data.lpData));
        return TRUE;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

TEST_F(ValueEntryTest, TheCalculatorIsGivenTheCurrentValue) {
    StartDistances();
    std::atomic<HWND> calculator = nullptr;
    std::thread thread([&calculator] {
        const HWND window = CreateWindowW(L"Static", L"Tallyra", WS_POPUP | WS_VISIBLE, 40, 40, 200, 100, nullptr,
                                          nullptr, nullptr, nullptr);
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(CalculatorProc));
        calculator = window;
        for (MSG message{}; GetMessageW(&message, nullptr, 0, 0) > 0;) {
            DispatchMessageW(&message);
        }
        DestroyWindow(window);
    });
    EXPECT_TRUE(WaitUntil([&] { return calculator.load(); }));
    Do("do OPEN_CALCULATOR");
    EXPECT_EQ(received, "") << "there is no value yet";
    Give(0, 26.2);
    Do("do OPEN_CALCULATOR");
    EXPECT_EQ(received, "1 8 26.2; ");
    PostMessageW(calculator, WM_QUIT, 0, 0);
    thread.join();
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
