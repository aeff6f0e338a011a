#pragma once

#include <windows.h>

#include "platform/text.h"

namespace velm {

class CVelmCatalog;
class CVelmHtmlLibrary;
class CVelmReferenceList;

/// Lets the user choose a data file of the catalogue, which is scanned first, or read text references. These are
/// listed on first use, from `referenceFolder`. Returns the chosen file's index, -1 when the dialog was cancelled.
int ShowOpenFileDialog(HWND parent, CVelmCatalog& catalog, CVelmReferenceList& references,
                       const CVelmString& referenceFolder, CVelmHtmlLibrary& html);

}  // namespace velm
