#include "ui/frame_window.h"

#include "ui/display_scale.h"
#include "ui/window_class.h"

namespace velm {
namespace {

// Physical pixels.
constexpr int HANDHELD_WIDTH = 480;
constexpr int HANDHELD_HEIGHT = 640;

// Pixels at scale 1.
constexpr int MIN_SIZE = 160;

/// The window size for a client area size.
SIZE WindowSize(int clientWidth, int clientHeight, DWORD style) {
    RECT area{0, 0, clientWidth, clientHeight};
    AdjustWindowRectEx(&area, style, FALSE, 0);
    return {area.right - area.left, area.bottom - area.top};
}

}  // namespace

HWND CreateFrameWindow(CVelmWindow& object, const wchar_t* className, const wchar_t* title) {
    const SIZE screen{GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    const bool handheld = screen.cx <= HANDHELD_WIDTH && screen.cy <= HANDHELD_HEIGHT;
    const DWORD style = (handheld ? WS_POPUP : WS_OVERLAPPEDWINDOW) | WS_CLIPCHILDREN;
    const SIZE size = handheld ? screen : WindowSize(Scaled(FRAME_FIRST_WIDTH), Scaled(FRAME_FIRST_HEIGHT), style);
    const int place = handheld ? 0 : CW_USEDEFAULT;
    return CreateWindowExW(0, className, title, style, place, place, static_cast<int>(size.cx),
                           static_cast<int>(size.cy), nullptr, nullptr, GetModuleHandleW(nullptr), &object);
}

void LimitFrameSize(HWND window, MINMAXINFO& limits) {
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
    const SIZE smallest = WindowSize(Scaled(MIN_SIZE), Scaled(MIN_SIZE), style);
    limits.ptMinTrackSize = {smallest.cx, smallest.cy};
}

}  // namespace velm
