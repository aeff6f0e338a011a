#include "ui/press_button.h"

#include <windowsx.h>

#include <utility>

namespace velm {

void CVelmPressButton::Init(const RECT& rectangle, HWND owner, WORD id, bool longPress, LPARAM parameter) {
    rectangle_ = rectangle;
    owner_ = owner;
    id_ = id;
    longPress_ = longPress;
    parameter_ = parameter;
}

bool CVelmPressButton::PenDown(int x, int y) {
    if (!HitTest(x, y)) {
        return false;
    }
    tracking_ = true;
    state_ = BUTTON_PRESSED;
    Redraw();
    SetCapture(owner_);
    if (longPress_) {
        longPressCounter_ = 1;
        SetTimer(owner_, BUTTON_TIMER, BUTTON_LONG_PRESS_MS, nullptr);
    }
    return true;
}

bool CVelmPressButton::PenMove(int x, int y) {
    if (!tracking_) {
        return false;
    }
    SetPressed(Contains(x, y));
    return true;
}

bool CVelmPressButton::PenUp(int x, int y) {
    if (!tracking_) {
        return false;
    }
    EndPress();
    if (Contains(x, y)) {
        PostMessageW(owner_, WM_COMMAND, MAKEWPARAM(id_, 0), parameter_);
    }
    return true;
}

bool CVelmPressButton::Timer() {
    if (longPressCounter_ == 0) {
        return false;
    }
    if (++longPressCounter_ >= 2) {
        EndPress();
        PostMessageW(owner_, WM_COMMAND, MAKEWPARAM(id_, BUTTON_LONG_PRESS), parameter_);
    }
    return true;
}

void CVelmPressButton::CancelPress() {
    if (tracking_) {
        EndPress();
    }
}

bool CVelmPressButton::HitTest(int x, int y) const {
    return state_ != BUTTON_DISABLED && Contains(x, y);
}

void CVelmPressButton::Enable(bool on) {
    if (on == (state_ != BUTTON_DISABLED)) {
        return;
    }
    CancelPress();
    state_ = on ? BUTTON_NORMAL : BUTTON_DISABLED;
    Redraw();
}

void CVelmPressButton::Move(const RECT& rectangle) {
    Redraw();
    rectangle_ = rectangle;
    Redraw();
}

void CVelmPressButton::Redraw() const {
    InvalidateRect(owner_, &rectangle_, FALSE);
}

bool CVelmPressButton::Contains(int x, int y) const {
    return PtInRect(&rectangle_, POINT{x, y}) != FALSE;
}

void CVelmPressButton::SetPressed(bool pressed) {
    const int state = pressed ? BUTTON_PRESSED : BUTTON_NORMAL;
    if (std::exchange(state_, state) != state) {
        Redraw();
    }
}

void CVelmPressButton::StopTimer() {
    if (std::exchange(longPressCounter_, 0) != 0) {
        KillTimer(owner_, BUTTON_TIMER);
    }
}

void CVelmPressButton::EndPress() {
    // Cleared first: releasing the capture notifies the owner immediately.
    tracking_ = false;
    state_ = BUTTON_NORMAL;
    StopTimer();
    if (GetCapture() == owner_) {
        ReleaseCapture();
    }
    Redraw();
}

bool CVelmButtonRouter::Route(std::span<CVelmPressButton* const> buttons, UINT message, WPARAM wParam, LPARAM lParam) {
    const int x = GET_X_LPARAM(lParam);
    const int y = GET_Y_LPARAM(lParam);
    if (message == WM_LBUTTONDOWN) {
        return PenDown(buttons, x, y);
    }
    // Ending a press releases the capture, which reenters here and clears the button.
    CVelmPressButton* const pressed = pressed_;
    if (pressed == nullptr) {
        return false;
    }
    bool handled = false;
    switch (message) {
        case WM_MOUSEMOVE:
            handled = pressed->PenMove(x, y);
            break;
        case WM_LBUTTONUP:
            handled = pressed->PenUp(x, y);
            break;
        case WM_TIMER:
            handled = wParam == BUTTON_TIMER && pressed->Timer();
            break;
        case WM_CAPTURECHANGED:
            pressed->CancelPress();
            break;
        default:
            break;
    }
    if (!pressed->IsTracking()) {
        pressed_ = nullptr;
    }
    return handled;
}

bool CVelmButtonRouter::PenDown(std::span<CVelmPressButton* const> buttons, int x, int y) {
    if (pressed_ != nullptr && pressed_->PenDown(x, y)) {
        return true;
    }
    for (CVelmPressButton* const button : buttons) {
        if (button->PenDown(x, y)) {
            pressed_ = button;
            return true;
        }
    }
    return false;
}

void CVelmButtonRouter::Forget() {
    if (CVelmPressButton* const pressed = std::exchange(pressed_, nullptr)) {
        pressed->CancelPress();
    }
}

}  // namespace velm
