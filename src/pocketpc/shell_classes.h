#pragma once

#include <windows.h>

/// Registers a window class of the shell; true also when it is registered already.
inline bool RegisterShellClass(const WNDCLASSW& windowClass) {
    return RegisterClassW(&windowClass) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

bool RegisterCommandBarClass();
