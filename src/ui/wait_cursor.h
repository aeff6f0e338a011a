#pragma once

#include <windows.h>

namespace velm {

/// Shows the wait cursor for its lifetime, then the arrow.
class CVelmWaitCursor {
public:
    CVelmWaitCursor() { SetCursor(LoadCursorW(nullptr, IDC_WAIT)); }
    ~CVelmWaitCursor() { SetCursor(LoadCursorW(nullptr, IDC_ARROW)); }
    CVelmWaitCursor(const CVelmWaitCursor&) = delete;
    CVelmWaitCursor& operator=(const CVelmWaitCursor&) = delete;
};

}  // namespace velm
