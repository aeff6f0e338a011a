#pragma once

#include <windows.h>

namespace velm {

class CVelmValueFormat;

/// Lets the user choose which formats an item allows and define its compound parts. Returns IDOK, or IDCANCEL with
/// the format as it was.
int ShowFormatsDialog(HWND parent, CVelmValueFormat& format);

}  // namespace velm
