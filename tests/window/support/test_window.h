#pragma once

#include <windows.h>

#include <functional>
#include <vector>

#include "app/window_class.h"
#include "support/waiting.h"

namespace velm::test {

/// A command as a window received it.
struct ReceivedCommand {
    WORD id = 0;
    WORD notification = 0;
    LPARAM parameter = 0;

    bool operator==(const ReceivedCommand&) const = default;
};

/// A window of the test's own thread, 200 x 100 at (40, 40) of the screen, that keeps the commands it receives and
/// hands other messages to `handler` first.
class TestWindow : public CVelmWindow {
public:
    TestWindow() {
        RegisterWindowClass(GetModuleHandleW(nullptr));
        Create(WS_POPUP | WS_VISIBLE, 40, 40, 200, 100, nullptr, 0, L"");
    }
    ~TestWindow() override {
        handler = nullptr;
        DestroyWindow(Handle());
        UnregisterClassW(WINDOW_CLASS, GetModuleHandleW(nullptr));
    }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_COMMAND) {
            commands.push_back({LOWORD(wParam), HIWORD(wParam), lParam});
            return 0;
        }
        return handler && handler(message, wParam, lParam) ? TRUE : CVelmWindow::WindowProc(message, wParam, lParam);
    }

    std::function<bool(UINT, WPARAM, LPARAM)> handler;
    std::vector<ReceivedCommand> commands;
};

/// Dispatches the messages of the test's own thread until the condition holds.
template <typename Condition>
bool PumpUntil(Condition condition) {
    return WaitUntil([&condition] {
        for (MSG message{}; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
            DispatchMessageW(&message);
        }
        return condition();
    });
}

/// Dispatches what is in the queue now.
inline void Pump() {
    PumpUntil([] { return true; });
}

}  // namespace velm::test
