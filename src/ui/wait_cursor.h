#pragma once

#include <windows.h>

#include "platform/scope_exit.h"

namespace velm {

/// Shows the wait cursor for the lifetime of the returned guard, then the arrow.
[[nodiscard]] inline auto ShowWaitCursor() {
    SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    return CVelmScopeExit([] { SetCursor(LoadCursorW(nullptr, IDC_ARROW)); });
}

}  // namespace velm
