#pragma once

#include <windows.h>

namespace velm {

class CVelmCatalog;
class CVelmHtmlLibrary;
class CVelmReferenceList;

/// Lets the user choose a data file of the catalogue, which is scanned first, or read text references. These are
/// listed on first use, from the same folder. Returns the chosen file's index, -1 when the dialog was cancelled.
int ShowOpenFileDialog(HWND parent, CVelmCatalog& catalog, CVelmReferenceList& references, CVelmHtmlLibrary& html);

}  // namespace velm
