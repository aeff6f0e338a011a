#pragma once

#include <windows.h>

#include <span>

namespace velm {

/// Visual states. A disabled button ignores the pen.
constexpr int BUTTON_NORMAL = 0;
constexpr int BUTTON_PRESSED = 1;
constexpr int BUTTON_DISABLED = 3;

/// The owner's timer for long presses, and the high word of the command that reports one.
constexpr UINT_PTR BUTTON_TIMER = 100;
constexpr UINT BUTTON_LONG_PRESS_MS = 600;
constexpr WORD BUTTON_LONG_PRESS = 1;

/// A windowless button: a rectangle of its owner window that tracks the pen and posts a command to the owner when the
/// pen is released over it or, optionally, after a long press.
class CVelmPressButton {
public:
    virtual ~CVelmPressButton() = default;

    /// The rectangle is in the owner's client coordinates; the command's second parameter is `parameter`.
    void Init(const RECT& rectangle, HWND owner, WORD id, bool longPress = false, LPARAM parameter = 0);

    /// True when the button handled the event.
    bool PenDown(int x, int y);
    bool PenMove(int x, int y);
    bool PenUp(int x, int y);

    /// Call for the owner's BUTTON_TIMER. True when it belongs to this button's press.
    bool Timer();

    /// Ends a press without a command, as when another window captured the pen.
    void CancelPress();

    /// False when disabled.
    bool HitTest(int x, int y) const;

    bool IsTracking() const { return tracking_; }
    int State() const { return state_; }
    void Enable(bool on);

    const RECT& Rectangle() const { return rectangle_; }
    void Move(const RECT& rectangle);
    void Redraw() const;

private:
    bool Contains(int x, int y) const;
    void SetPressed(bool pressed);
    void StopTimer();
    void EndPress();

    bool tracking_ = false;
    int state_ = BUTTON_NORMAL;
    HWND owner_ = nullptr;
    WORD id_ = 0;
    int longPressCounter_ = 0;
    RECT rectangle_{};
    bool longPress_ = false;
    LPARAM parameter_ = 0;
};

/// Routes an owner window's pen events to its buttons: a press belongs to its button until the pen is lifted.
class CVelmButtonRouter {
public:
    /// True when a button handled the message. The buttons are tried in order and not owned; a pressed one must not be
    /// destroyed before Forget.
    bool Route(std::span<CVelmPressButton* const> buttons, UINT message, WPARAM wParam, LPARAM lParam);

    /// Ends a press without a command.
    void Forget();

private:
    bool PenDown(std::span<CVelmPressButton* const> buttons, int x, int y);

    CVelmPressButton* pressed_ = nullptr;
};

}  // namespace velm
