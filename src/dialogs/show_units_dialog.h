#pragma once

#include <windows.h>

namespace velm {

class CVelmDocument;

/// Lets the user tick which items of a document the list shows. Returns IDOK, or IDCANCEL with nothing changed.
int ShowUnitsDialog(HWND parent, CVelmDocument& document);

}  // namespace velm
