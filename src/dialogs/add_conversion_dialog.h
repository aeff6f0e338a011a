#pragma once

#include <windows.h>

#include <memory>

namespace velm {

class CVelmConversion;
class CVelmConversionDoc;
class FormulaContext;

/// Asks for the two units and the factor and offset, or (`advanced`) the formulas, of a new conversion between units
/// of the document. Null when the user cancels; the document does not have the conversion yet.
std::unique_ptr<CVelmConversion> ShowAddConversionDialog(HWND parent, CVelmConversionDoc& document,
                                                         FormulaContext& context, bool advanced);

}  // namespace velm
