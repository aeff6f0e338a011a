#pragma once

#include <windows.h>

namespace velm {

struct CVelmSettings;

/// Edits the data folder and the update address. Returns IDOK, or IDCANCEL with the settings as they were.
int ShowSettingsDialog(HWND parent, CVelmSettings& settings);

}  // namespace velm
