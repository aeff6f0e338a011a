#pragma once

#include <windows.h>

namespace velm {

class CVelmWindow;

// Shared by the top-level windows of the program and its companions.

/// Initial client area on screens larger than a handheld's, in pixels at scale 1.
constexpr int FRAME_FIRST_WIDTH = 240;
constexpr int FRAME_FIRST_HEIGHT = 320;

/// Creates the object's window: it fills a handheld's screen; on a larger one it has a border and the initial size.
/// Null on failure.
HWND CreateFrameWindow(CVelmWindow& object, const wchar_t* className, const wchar_t* title);

/// Handles WM_GETMINMAXINFO: limits the window to its minimum usable size.
void LimitFrameSize(HWND window, MINMAXINFO& limits);

}  // namespace velm
