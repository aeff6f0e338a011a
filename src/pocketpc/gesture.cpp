#include <windows.h>

#include <windowsx.h>

#include <cstdlib>

#include "pocketpc/shell.h"

namespace {

/// How long the pen is held for a context menu, and how far it may jitter.
constexpr DWORD HOLD_MS = 600;
constexpr int JITTER = 4;

bool IsMoved(const MSG& message, POINT from) {
    return std::abs(GET_X_LPARAM(message.lParam) - static_cast<int>(from.x)) > JITTER ||
           std::abs(GET_Y_LPARAM(message.lParam) - static_cast<int>(from.y)) > JITTER;
}

/// Whether the next pointer or key message ends the gesture. Removes jitter from the queue, nothing else.
bool IsEnded(POINT from) {
    MSG message{};
    while (PeekMessageW(&message, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_NOREMOVE)) {
        if (message.message != WM_MOUSEMOVE || IsMoved(message, from)) {
            return true;
        }
        PeekMessageW(&message, nullptr, WM_MOUSEMOVE, WM_MOUSEMOVE, PM_REMOVE);
    }
    return PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_NOREMOVE) != FALSE;
}

/// Keeps painting and timers running while the pen is held.
void DispatchPaintAndTimers() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE) ||
           PeekMessageW(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
}

}  // namespace

DWORD SHRecognizeGesture(const SHRGINFO* info) {
    const HWND before = GetCapture();
    if (before != info->hwndClient) {
        SetCapture(info->hwndClient);
    }
    const DWORD start = GetTickCount();
    DWORD result = GN_CONTEXTMENU;
    for (DWORD held = 0; held < HOLD_MS; held = GetTickCount() - start) {
        if (IsEnded(info->ptDown) || GetCapture() != info->hwndClient) {
            result = 0;
            break;
        }
        DispatchPaintAndTimers();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, HOLD_MS - held, QS_ALLINPUT);
    }
    if (before != info->hwndClient && GetCapture() == info->hwndClient) {
        ReleaseCapture();
    }
    return result;
}
