#pragma once

#include "formula/formula_context.h"
#include "model/item.h"

namespace velm {

/// Reads the inputs that have no value from their texts and computes the outputs, whose formulas name other items by
/// their identifiers. Each item has state 1 and a value afterwards, or state 2; no identifier stays bound.
void SolveCalculation(const CVelmItems& items, FormulaContext& context);

}  // namespace velm
