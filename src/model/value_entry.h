#pragma once

#include <span>

#include "model/document.h"

namespace velm {

/// Gives an item of the document a value, makes it the current one and computes the others. Hidden items of a
/// conversion document are computed when they are among `asked`.
void EnterValue(CVelmDocument& document, CVelmItem& item, double value, FormulaContext& context,
                std::span<const CVelmItem* const> asked = {});

/// The same with typed text. False, with nothing changed, when the text has no value.
bool EnterText(CVelmDocument& document, CVelmItem& item, CVelmStringView text, FormulaContext& context,
               std::span<const CVelmItem* const> asked = {});

}  // namespace velm
