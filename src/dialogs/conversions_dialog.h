#pragma once

#include <windows.h>

namespace velm {

class CVelmConversionDoc;
class FormulaContext;

/// Shows the conversions of a document and changes them at once: edits in place, adds and deletes.
void ShowConversionsDialog(HWND parent, CVelmConversionDoc& document, FormulaContext& context);

}  // namespace velm
