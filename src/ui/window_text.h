#pragma once

#include <windows.h>

#include "platform/text.h"

namespace velm {

/// The text of a window or control; empty when it has none.
CVelmString WindowText(HWND window);

/// A text of the string table, at most 254 characters; empty when there is none of that identifier.
CVelmString LoadText(UINT id);

}  // namespace velm
