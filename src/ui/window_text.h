#pragma once

#include <windows.h>

#include "platform/text.h"

namespace velm {

/// The text of a window or control; empty when it has none.
CVelmString WindowText(HWND window);

/// A string resource, at most 254 characters; empty when there is none.
CVelmString LoadText(UINT id);

}  // namespace velm
