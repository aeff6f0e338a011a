#include "app/press_button.h"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <map>
#include <string>

#include "app/display_scale.h"
#include "app/drawn_button.h"
#include "listview/bitmap.h"
#include "support/picture.h"
#include "support/test_window.h"

namespace velm::test {
namespace {

constexpr RECT PLACE = {10, 10, 50, 30};

/// A window with two buttons side by side, the second of them with a long press.
class PressButton : public testing::Test {
protected:
    PressButton() {
        plain_.Init(PLACE, window_.Handle(), 7, false, 42);
        holding_.Init({60, 10, 100, 30}, window_.Handle(), 8, true, 43);
        window_.handler = [this](UINT message, WPARAM wParam, LPARAM lParam) {
            const std::array<CVelmPressButton*, 2> buttons = {&plain_, &holding_};
            return router_.Route(buttons, message, wParam, lParam);
        };
        Pump();
    }

    void Send(UINT message, int x, int y) { SendMessageW(window_.Handle(), message, 0, MAKELPARAM(x, y)); }

    TestWindow window_;
    CVelmPressButton plain_;
    CVelmPressButton holding_;
    CVelmButtonRouter router_;
};

TEST_F(PressButton, PostsOneCommandWhenReleasedOverItself) {
    const std::map<char, std::function<void()>> acts = {
        {'d', [&] { Send(WM_LBUTTONDOWN, 15, 15); }},
        {'m', [&] { Send(WM_MOUSEMOVE, 49, 10); }},
        {'o', [&] { Send(WM_MOUSEMOVE, 50, 10); }},
        {'u', [&] { Send(WM_LBUTTONUP, 10, 29); }},
        {'U', [&] { Send(WM_LBUTTONUP, 10, 30); }},
        {'D', [&] { Send(WM_LBUTTONDOWN, 9, 15); }},
        {'x', [&] { plain_.Enable(false); }},
        {'e', [&] { plain_.Enable(true); }},
        {'c', [] { ReleaseCapture(); }},
    };
    struct Case {
        std::string acts;   ///< down, move within, move out, up within, Up outside, Down outside, x and e: disable and
                            ///< enable, capture lost
        std::string looks;  ///< after each act: normal, pressed, disabled (x); in capitals where it is drawn anew
        std::size_t commands;
    };
    for (const Case& row : {Case{"du", "PN", 1}, Case{"dmu", "PpN", 1}, Case{"doU", "PNN", 0}, Case{"domu", "PNPN", 1},
                            Case{"dU", "PN", 0}, Case{"mu", "nn", 0}, Case{"D", "n", 0}, Case{"xdu", "Xxx", 0},
                            Case{"dxu", "PXx", 0}, Case{"xedu", "XNPN", 1}, Case{"dcu", "PNn", 0}}) {
        window_.commands.clear();
        plain_.Enable(true);
        std::string looks;
        for (const char act : row.acts) {
            ValidateRect(window_.Handle(), nullptr);
            acts.at(act)();
            const char look = "np-x"[plain_.State()];
            RECT drawn{};
            const bool anew = GetUpdateRect(window_.Handle(), &drawn, FALSE) != FALSE;
            EXPECT_TRUE(!anew || EqualRect(&drawn, &PLACE)) << row.acts;
            looks += static_cast<char>(anew ? std::toupper(look) : look);
            EXPECT_EQ(GetCapture() == window_.Handle(), plain_.IsTracking()) << row.acts;
        }
        Pump();
        EXPECT_EQ(looks, row.looks) << row.acts;
        EXPECT_EQ(window_.commands, std::vector<ReceivedCommand>(row.commands, {7, 0, 42})) << row.acts;
    }
}

TEST_F(PressButton, HeldReportsALongPressAndNoClick) {
    const auto start = std::chrono::steady_clock::now();
    Send(WM_LBUTTONDOWN, 70, 15);
    ASSERT_TRUE(PumpUntil([this] { return !window_.commands.empty(); }));
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    EXPECT_FALSE(holding_.IsTracking());
    EXPECT_EQ(router_.Pressed(), nullptr);
    Send(WM_LBUTTONUP, 70, 15);
    Send(WM_LBUTTONDOWN, 70, 15);
    Send(WM_LBUTTONUP, 70, 15);
    EXPECT_FALSE(KillTimer(window_.Handle(), BUTTON_TIMER)) << "released in time it is no long press";
    Pump();
    EXPECT_EQ(window_.commands, (std::vector<ReceivedCommand>{{8, BUTTON_LONG_PRESS, 43}, {8, 0, 43}}));
}

TEST_F(PressButton, DrawsItsStateInItsRectangleAndNowhereElse) {
    CVelmDrawnButton button;
    button.Init(PLACE, window_.Handle(), 1);
    const auto draw = [&] {
        const HDC dc = GetDC(window_.Handle());
        FillColor(dc, {0, 0, 200, 100}, RGB(1, 2, 3));
        button.Draw(dc);
        const Picture picture = Picture::OfDc(dc, 200, 100);
        ReleaseDC(window_.Handle(), dc);
        return picture;
    };
    const RECT inside{13, 13, 47, 27};
    const Picture normal = draw();
    EXPECT_TRUE(normal.IsAll(inside, RGB(255, 255, 255)));
    EXPECT_EQ(normal.Count({0, 0, 200, 100}, RGB(1, 2, 3)), 200 * 100 - 40 * 20);
    button.PenDown(15, 15);
    EXPECT_TRUE(draw().IsAll(inside, MixColor(110, BaseColor())));
    button.PenUp(0, 0);
    EXPECT_EQ(draw(), normal);
    button.SetText(u"abc");
    EXPECT_NE(draw(), normal);
}

}  // namespace
}  // namespace velm::test
