#include "tallyra/calculator_window.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <random>
#include <string>

#include "platform/file.h"
#include "platform/services.h"
#include "platform/wide_text_win32.h"
#include "support/temporary_folder.h"
#include "ui/window_text.h"

namespace velm::test {
namespace {

class CalculatorWindow : public testing::Test {
protected:
    void SetUp() override { Open(); }
    void TearDown() override { Close(); }

    void Open() {
        window = std::make_unique<CVelmCalculatorWindow>(SystemServices(), folder.PathOf(u"tape"),
                                                         WithSeparator(FromUtf8(VELMORA_DATA_FOLDER)), CVelmString());
        ASSERT_TRUE(window->CreateFrame(SW_SHOWNORMAL));
        Pump();
    }

    void Close() {
        SendMessageW(window->Handle(), WM_CLOSE, 0, 0);
        Pump();
    }

    /// Handles the queued messages, like the program's message loop.
    void Pump() const {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (!window->PreTranslate(message)) {
                DispatchMessageW(&message);
            }
        }
    }

    void TapAt(int x, int y) const {
        PostMessageW(window->Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        PostMessageW(window->Handle(), WM_LBUTTONUP, 0, MAKELPARAM(x, y));
        Pump();
    }

    const CVelmDrawnButton& Button(CVelmStringView caption) const {
        for (const CVelmPressButton* const button : window->Buttons()) {
            const auto* const drawn = static_cast<const CVelmDrawnButton*>(button);
            if (drawn->Text() == caption) {
                return *drawn;
            }
        }
        ADD_FAILURE() << "there is no button " << ToUtf8(caption);
        return static_cast<const CVelmDrawnButton&>(*window->Buttons().front());
    }

    void Tap(CVelmStringView caption) const {
        const RECT area = Button(caption).Rectangle();
        TapAt(static_cast<int>(area.left + area.right) / 2, static_cast<int>(area.top + area.bottom) / 2);
    }

    void Key(WORD key) const {
        PostMessageW(GetFocus(), WM_KEYDOWN, key, 1);
        Pump();
    }

    /// Replaces the selection by typing and presses Enter.
    std::string Compute(CVelmStringView text) const {
        for (const char16_t unit : text) {
            PostMessageW(Control(L"Edit"), WM_CHAR, unit, 1);
        }
        Key(VK_RETURN);
        return Message();
    }

    /// The window has one control of each class.
    HWND Control(const wchar_t* windowClass) const {
        return FindWindowExW(window->Handle(), nullptr, windowClass, nullptr);
    }
    std::string Message() const { return ToUtf8(WindowText(Control(L"Static"))); }
    std::string Expression() const { return ToUtf8(WindowText(Control(L"Edit"))); }

    std::string TapeLine(WPARAM line) const {
        std::array<wchar_t, 2 * CVelmTape::MAX_TEXT_LENGTH + 10> text{};
        SendMessageW(Control(L"ListBox"), LB_GETTEXT, line, reinterpret_cast<LPARAM>(text.data()));
        return ToUtf8(FromWide(text.data()));
    }
    LRESULT TapeLength() const { return SendMessageW(Control(L"ListBox"), LB_GETCOUNT, 0, 0); }

    bool Hand(ULONG_PTR code, double value, DWORD size = sizeof(double)) const {
        std::array<double, 2> values{value, value};
        COPYDATASTRUCT data{code, size, values.data()};
        return SendMessageW(window->Handle(), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data)) != 0;
    }

    TemporaryFolder folder;
    std::unique_ptr<CVelmCalculatorWindow> window;
};

TEST_F(CalculatorWindow, TakesAValueOfCodeOneAndEightBytesAlone) {
    EXPECT_TRUE(Hand(1, -26.2));
    EXPECT_EQ(Expression(), "-26.2");
    EXPECT_FALSE(Hand(2, 5));
    EXPECT_FALSE(Hand(1, 5, 7));
    EXPECT_FALSE(Hand(1, 5, 16));
    EXPECT_FALSE(Hand(1, std::numeric_limits<double>::infinity()));
    EXPECT_EQ(Expression(), "-26.2");
    Key(VK_RETURN);
    EXPECT_EQ(Message(), "-26.2");
}

TEST_F(CalculatorWindow, ComputesByPenInEveryBaseAndAngleMode) {
    for (const char16_t* caption : {u"4", u"2", u"*", u"sqrt", u"3", u"6", u")", u"Del", u")", u"="}) {
        Tap(caption);
    }
    EXPECT_EQ(Message(), "252");
    EXPECT_EQ(TapeLine(0), "42*sqrt(36) = 252");
    for (const auto& [base, shown] :
         {std::pair{u"Hex", "00FC"}, {u"Oct", "0374"}, {u"Bin", "1111 1100"}, {u"Dec", "252"}}) {
        Tap(base);
        EXPECT_EQ(Message(), shown);
        EXPECT_TRUE(Button(base).IsSelected());
    }
    for (const auto& [mode, quarter] : {std::pair{u"Rad", u"sin(pi/2)"}, {u"Deg", u"sin(90)"}, {u"Gra", u"sin(100)"}}) {
        EXPECT_EQ(Compute(quarter), "1") << ToUtf8(mode);
        Tap(mode);
    }
    EXPECT_EQ(Button(u"Rad").Text(), u"Rad") << "the modes go round";
    Tap(u"C");
    EXPECT_EQ(Expression() + Message(), "");
}

TEST_F(CalculatorWindow, SaysInWordsWhatIsWrongAndSelectsIt) {
    EXPECT_EQ(Compute(u"2+1/0"), "Division by zero");
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(Control(L"Edit"), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(std::make_pair(start, end), std::make_pair(DWORD{3}, DWORD{4}));
    EXPECT_EQ(TapeLength(), 0);
    Key(VK_ESCAPE);
    EXPECT_EQ(Expression(), "");
}

TEST_F(CalculatorWindow, AnswersQuestionsAndKeepsThemOnTheTape) {
    EXPECT_EQ(Compute(u"26.2 mi in km"), "42.1648128 km");
    EXPECT_EQ(TapeLine(0), "26.2 mi in km = 42.1648128 km");
    Tap(u"Hex");
    EXPECT_EQ(Message(), "42.1648128 km") << "a unit has no base";
    Tap(u"Dec");
    EXPECT_EQ(Compute(u"tip 64.50 18% 3 people").substr(0, 26), "Tip: 11.61; Total: 76.11; ");
    EXPECT_EQ(TapeLine(1), "tip 64.50 18% 3 people = Tip: 11.61");
    EXPECT_EQ(TapeLine(4), "    Each pays, rounded up: 26.00");
    Close();
    Open();
    EXPECT_EQ(TapeLine(4), "    Each pays, rounded up: 26.00");
    Key(VK_TAB);
    SendMessageW(Control(L"ListBox"), LB_SETCURSEL, 4, 0);
    Key(VK_RETURN);
    EXPECT_EQ(Expression(), "tip 64.50 18% 3 people") << "a further line of an answer takes up its question";
    EXPECT_EQ(Compute(u"26.2 mi in kg"), "26.2 mi is a length, kg a mass: length times weight of length would fit");
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(Control(L"Edit"), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(std::make_pair(start, end), std::make_pair(DWORD{11}, DWORD{13}));
}

TEST_F(CalculatorWindow, KeepsItsTapeFromRunToRunAndFiveHundredLinesOfIt) {
    Close();
    std::string lines;
    for (int i = 1; i <= 500; ++i) {
        lines += std::to_string(i) + "\t" + std::to_string(i) + "\n";
    }
    folder.WriteText(u"tape", lines);
    Open();
    Compute(u"6*7");
    EXPECT_EQ(TapeLine(0), "2 = 2") << "the oldest line goes at once";
    Close();
    Open();
    EXPECT_EQ(TapeLength(), 500);
    EXPECT_EQ(TapeLine(0), "2 = 2");
    EXPECT_EQ(TapeLine(499), "6*7 = 42");
    Key(VK_TAB);
    SendMessageW(Control(L"ListBox"), LB_SETCURSEL, 499, 0);
    Key(VK_RETURN);
    EXPECT_EQ(Expression(), "6*7") << "Enter on a line of the tape takes it up again";
}

/// A minute of taps, keys and values; VELMORA_SEED and VELMORA_MONKEY_SECONDS repeat a run or make a longer one.
TEST_F(CalculatorWindow, StandsAMonkeyForAMinute) {
    const char* const givenSeed = std::getenv("VELMORA_SEED");
    const char* const seconds = std::getenv("VELMORA_MONKEY_SECONDS");
    const DWORD seed = givenSeed != nullptr ? std::stoul(givenSeed) : GetTickCount();
    const DWORD end = GetTickCount() + 1000 * (seconds != nullptr ? std::stoul(seconds) : 60);
    std::printf("VELMORA_SEED=%lu\n", seed);
    std::mt19937 random(seed);
    const auto below = [&random](auto count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    constexpr CVelmStringView LETTERS = u"0123456789.+-*/\\^!%()[]{},=&|<>~ \u00b2\u00b3abcdefghilnopqrstuvx#?\u20ac";
    constexpr std::array<WORD, 9> KEYS = {VK_RETURN, VK_ESCAPE, VK_TAB,   VK_UP,    VK_DOWN,
                                          VK_HOME,   VK_END,    VK_PRIOR, VK_DELETE};
    long actions = 0;
    for (; GetTickCount() < end; ++actions) {
        RECT area{};
        GetClientRect(window->Handle(), &area);
        const int kind = below(100);
        if (kind < 60) {
            TapAt(below(area.right), below(area.bottom));
        } else if (kind < 85) {
            PostMessageW(Control(L"Edit"), WM_CHAR, LETTERS[static_cast<std::size_t>(below(LETTERS.size()))], 1);
        } else if (kind < 97) {
            Key(KEYS[static_cast<std::size_t>(below(KEYS.size()))]);
        } else if (kind < 99) {
            Hand(static_cast<ULONG_PTR>(below(3)), std::ldexp(1.0 + below(1000), below(2000) - 1000));
        } else {
            SetWindowPos(window->Handle(), nullptr, 0, 0, 100 + below(700), 100 + below(700), SWP_NOMOVE);
        }
    }
    EXPECT_GT(actions, 100);
    EXPECT_LE(TapeLength(), 500);
    SetFocus(Control(L"Edit"));
    Key(VK_ESCAPE);
    Tap(u"Dec");
    EXPECT_EQ(Compute(u"2+3"), "5");
}

}  // namespace
}  // namespace velm::test
