#include "ui/press_button.h"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <map>
#include <string>
#include <tuple>

#include "support/picture.h"
#include "support/waiting.h"
#include "ui/bitmap.h"
#include "ui/display_scale.h"
#include "ui/drawn_button.h"
#include "ui/window_class.h"

namespace velm::test {
namespace {

constexpr RECT PLACE = {10, 10, 50, 30};

/// A window with two buttons side by side, the second of them with a long press. It keeps the commands it receives, as
/// "7 0 42 ".
class ButtonWindow : public CVelmWindow {
public:
    ButtonWindow() {
        RegisterWindowClass(WINDOW_CLASS, nullptr, nullptr, reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1));
        Create(WS_POPUP | WS_VISIBLE, 40, 40, 200, 100, nullptr, 0, L"");
        plain.Init(PLACE, Handle(), 7, false, 42);
        holding.Init({60, 10, 100, 30}, Handle(), 8, true, 43);
        Pump();
    }
    ~ButtonWindow() override {
        DestroyWindow(Handle());
        UnregisterClassW(WINDOW_CLASS, GetModuleHandleW(nullptr));
    }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        const std::array<CVelmPressButton*, 2> buttons = {&plain, &holding};
        if (message == WM_COMMAND) {
            commands += std::to_string(LOWORD(wParam)) + " " + std::to_string(HIWORD(wParam)) + " " +
                        std::to_string(lParam) + " ";
        } else if (!router.Route(buttons, message, wParam, lParam)) {
            return CVelmWindow::WindowProc(message, wParam, lParam);
        }
        return 0;
    }

    void Send(UINT message, int x, int y) const { SendMessageW(Handle(), message, 0, MAKELPARAM(x, y)); }

    /// Dispatches what is in the queue now.
    static void Pump() {
        for (MSG message{}; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
            DispatchMessageW(&message);
        }
    }

    CVelmPressButton plain;
    CVelmPressButton holding;
    CVelmButtonRouter router;
    std::string commands;
};

TEST(PressButton, PostsOneCommandWhenReleasedOverItself) {
    ButtonWindow window;
    const std::map<char, std::tuple<UINT, int, int>> pens = {
        {'d', {WM_LBUTTONDOWN, 15, 15}}, {'m', {WM_MOUSEMOVE, 49, 10}}, {'o', {WM_MOUSEMOVE, 50, 10}},
        {'u', {WM_LBUTTONUP, 10, 29}},   {'U', {WM_LBUTTONUP, 10, 30}}, {'D', {WM_LBUTTONDOWN, 9, 15}}};
    struct Case {
        std::string acts;   ///< down, move within, move out, up within, Up outside, Down outside, x and e: disable and
                            ///< enable, capture lost
        std::string looks;  ///< after each act: normal, pressed, disabled (x); in capitals where it is drawn anew
        std::string commands = "";
    };
    for (const Case& row :
         {Case{"du", "PN", "7 0 42 "}, Case{"dmu", "PpN", "7 0 42 "}, Case{"doU", "PNN"},
          Case{"domu", "PNPN", "7 0 42 "}, Case{"dU", "PN"}, Case{"mu", "nn"}, Case{"D", "n"}, Case{"xdu", "Xxx"},
          Case{"dxu", "PXx"}, Case{"xedu", "XNPN", "7 0 42 "}, Case{"dcu", "PNn"}}) {
        SCOPED_TRACE(row.acts);
        window.commands.clear();
        window.plain.Enable(true);
        std::string looks;
        for (const char act : row.acts) {
            ValidateRect(window.Handle(), nullptr);
            if (const auto pen = pens.find(act); pen != pens.end()) {
                std::apply([&](UINT message, int x, int y) { window.Send(message, x, y); }, pen->second);
            } else if (act == 'c') {
                ReleaseCapture();
            } else {
                window.plain.Enable(act == 'e');
            }
            const char look = "np-x"[window.plain.State()];
            RECT drawn{};
            const bool anew = GetUpdateRect(window.Handle(), &drawn, FALSE) != FALSE;
            EXPECT_TRUE(!anew || EqualRect(&drawn, &PLACE));
            looks += static_cast<char>(anew ? std::toupper(look) : look);
            EXPECT_EQ(GetCapture() == window.Handle(), window.plain.IsTracking());
        }
        ButtonWindow::Pump();
        EXPECT_EQ(looks, row.looks);
        EXPECT_EQ(window.commands, row.commands);
    }
}

TEST(PressButton, HeldReportsALongPressAndNoClick) {
    ButtonWindow window;
    const auto start = std::chrono::steady_clock::now();
    window.Send(WM_LBUTTONDOWN, 70, 15);
    EXPECT_TRUE(WaitUntil([&] {
        ButtonWindow::Pump();
        return !window.commands.empty();
    }));
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    EXPECT_FALSE(window.holding.IsTracking());
    window.Send(WM_LBUTTONUP, 70, 15);
    window.Send(WM_LBUTTONDOWN, 70, 15);
    window.Send(WM_LBUTTONUP, 70, 15);
    EXPECT_FALSE(KillTimer(window.Handle(), BUTTON_TIMER)) << "released in time it is no long press";
    ButtonWindow::Pump();
    EXPECT_EQ(window.commands, "8 1 43 8 0 43 ");
}

TEST(PressButton, DrawsItsStateInItsRectangleAndNowhereElse) {
    CVelmDrawnButton button;
    button.Init(PLACE, nullptr, 1);
    const auto draw = [&] { return Picture::Drawn(200, 100, RGB(1, 2, 3), [&](HDC dc) { button.Draw(dc); }); };
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
