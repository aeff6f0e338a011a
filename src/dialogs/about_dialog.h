#pragma once

#include <windows.h>

#include "platform/text.h"

namespace velm {

/// Shows the program's title, version and licence, and the address that updates are looked for at.
void ShowAboutDialog(HWND parent, const CVelmString& updateAddress);

}  // namespace velm
