#include "app/press_button.h"

#include <gtest/gtest.h>

#include <array>

#include "app/display_scale.h"
#include "app/drawn_button.h"
#include "listview/bitmap.h"
#include "support/picture.h"
#include "support/test_window.h"

namespace velm::test {
namespace {

using namespace std::chrono_literals;

constexpr LPARAM IN_BUTTON = MAKELPARAM(15, 15);
constexpr LPARAM OUTSIDE = MAKELPARAM(60, 60);
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

    void Send(UINT message, LPARAM place) { SendMessageW(window_.Handle(), message, 0, place); }

    std::vector<ReceivedCommand> Received() {
        Pump();
        return window_.commands;
    }

    TestWindow window_;
    CVelmPressButton plain_;
    CVelmPressButton holding_;
    CVelmButtonRouter router_;
};

TEST_F(PressButton, PostsOneCommandWhenReleasedOverItself) {
    Send(WM_LBUTTONDOWN, IN_BUTTON);
    EXPECT_EQ(plain_.State(), BUTTON_PRESSED);
    EXPECT_EQ(GetCapture(), window_.Handle());
    Send(WM_LBUTTONUP, IN_BUTTON);
    EXPECT_EQ(plain_.State(), BUTTON_NORMAL);
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(Received(), (std::vector<ReceivedCommand>{{7, 0, 42}}));
}

TEST_F(PressButton, LooksPressedOnlyWhileThePenIsOverIt) {
    Send(WM_LBUTTONDOWN, IN_BUTTON);
    Send(WM_MOUSEMOVE, OUTSIDE);
    EXPECT_EQ(plain_.State(), BUTTON_NORMAL);
    Send(WM_LBUTTONUP, OUTSIDE);
    EXPECT_TRUE(Received().empty()) << "slid off and released";

    Send(WM_LBUTTONDOWN, IN_BUTTON);
    Send(WM_MOUSEMOVE, OUTSIDE);
    Send(WM_MOUSEMOVE, IN_BUTTON);
    EXPECT_EQ(plain_.State(), BUTTON_PRESSED);
    Send(WM_LBUTTONUP, IN_BUTTON);
    EXPECT_EQ(Received().size(), 1U) << "slid off and back";

    Send(WM_MOUSEMOVE, IN_BUTTON);
    EXPECT_EQ(plain_.State(), BUTTON_NORMAL) << "a pen that is up presses nothing";
}

TEST_F(PressButton, EdgesBelongToItAtTheLeftAndTopOnly) {
    EXPECT_TRUE(plain_.HitTest(10, 10));
    EXPECT_TRUE(plain_.HitTest(49, 29));
    EXPECT_FALSE(plain_.HitTest(50, 29));
    EXPECT_FALSE(plain_.HitTest(49, 30));
    EXPECT_FALSE(plain_.HitTest(-10, 15));
}

TEST_F(PressButton, HeldReportsALongPressAndNoClick) {
    Send(WM_LBUTTONDOWN, MAKELPARAM(70, 15));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(PumpUntil([this] { return !window_.commands.empty(); }));
    EXPECT_GT(std::chrono::steady_clock::now() - start, 500ms);
    EXPECT_FALSE(holding_.IsTracking());
    EXPECT_EQ(router_.Pressed(), nullptr);
    Send(WM_LBUTTONUP, MAKELPARAM(70, 15));
    EXPECT_EQ(Received(), (std::vector<ReceivedCommand>{{8, BUTTON_LONG_PRESS, 43}}));
}

TEST_F(PressButton, ReleasedInTimeIsAClickWithoutALongPress) {
    Send(WM_LBUTTONDOWN, MAKELPARAM(70, 15));
    Send(WM_LBUTTONUP, MAKELPARAM(70, 15));
    PumpUntil([] { return false; }, 800ms);
    EXPECT_EQ(window_.commands, (std::vector<ReceivedCommand>{{8, 0, 43}}));
}

TEST_F(PressButton, DisabledIgnoresThePen) {
    plain_.Enable(false);
    EXPECT_EQ(plain_.State(), BUTTON_DISABLED);
    Send(WM_LBUTTONDOWN, IN_BUTTON);
    Send(WM_LBUTTONUP, IN_BUTTON);
    EXPECT_TRUE(Received().empty());
    plain_.Enable(true);
    Send(WM_LBUTTONDOWN, IN_BUTTON);
    plain_.Enable(false);
    Send(WM_LBUTTONUP, IN_BUTTON);
    EXPECT_TRUE(Received().empty()) << "disabled while it was held";
}

TEST_F(PressButton, LosesThePressWithTheCapture) {
    Send(WM_LBUTTONDOWN, IN_BUTTON);
    ReleaseCapture();
    EXPECT_EQ(plain_.State(), BUTTON_NORMAL);
    Send(WM_LBUTTONUP, IN_BUTTON);
    EXPECT_TRUE(Received().empty());
}

TEST_F(PressButton, RedrawsItsRectangleOnlyWhenItsLookChanges) {
    const auto dirty = [this] {
        RECT area{};
        GetUpdateRect(window_.Handle(), &area, FALSE);
        ValidateRect(window_.Handle(), nullptr);
        return area;
    };
    dirty();
    Send(WM_LBUTTONDOWN, IN_BUTTON);
    const RECT pressed = dirty();
    EXPECT_TRUE(EqualRect(&pressed, &PLACE));
    Send(WM_MOUSEMOVE, MAKELPARAM(20, 20));
    const RECT moved = dirty();
    EXPECT_TRUE(IsRectEmpty(&moved)) << "still over the button";
    Send(WM_MOUSEMOVE, OUTSIDE);
    const RECT left = dirty();
    EXPECT_TRUE(EqualRect(&left, &PLACE));
}

TEST(DrawnButton, FillsItsRectangleInItsStateAndNothingElse) {
    TestWindow window;
    CVelmDrawnButton button;
    button.Init(PLACE, window.Handle(), 1);
    const auto draw = [&] {
        const HDC dc = GetDC(window.Handle());
        FillColor(dc, {0, 0, 200, 100}, RGB(1, 2, 3));
        button.Draw(dc);
        const Picture picture = Picture::OfDc(dc, 200, 100);
        ReleaseDC(window.Handle(), dc);
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
