#pragma once

#include <windows.h>

namespace velm {

class CVelmWindow;

// What the top-level windows of the program and of its companions have in common.

/// The client area that a window opens with where the screen is larger than a handheld's. In pixels of an ordinary
/// screen.
constexpr int FRAME_FIRST_WIDTH = 240;
constexpr int FRAME_FIRST_HEIGHT = 320;

/// Makes the object's window: it fills a handheld's screen; on a larger one it has a border and the first size. Null
/// when the system refuses or the object refuses WM_CREATE.
HWND CreateFrameWindow(CVelmWindow& object, const wchar_t* className, const wchar_t* title);

/// Answers WM_GETMINMAXINFO: the window does not become smaller than what its parts have room in.
void LimitFrameSize(HWND window, MINMAXINFO& limits);

}  // namespace velm
