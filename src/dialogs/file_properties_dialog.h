#pragma once

#include <windows.h>

namespace velm {

class CVelmCatalog;
class CVelmDocument;

/// Edits the title and category of a document. One without a file name is new and gets one here that no other file
/// has. Returns IDOK, or IDCANCEL with the document as it was.
int ShowFilePropertiesDialog(HWND parent, CVelmDocument& document, const CVelmCatalog& catalog);

}  // namespace velm
