#pragma once

#include <cstddef>

#include "formula/formula_context.h"
#include "platform/text.h"

namespace velm {

/// What is wrong with a formula, in words, and where in its text.
struct FormulaFault {
    CVelmString message;
    std::size_t position = 0;
    std::size_t length = 0;  ///< 0 at the end of the text
};

/// Explains why a formula does not evaluate. To be asked after EvaluateFormula failed, with the same definitions: the
/// evaluator itself stays silent. The two names that operands are bound to meanwhile are free again afterwards.
FormulaFault ExplainFailure(FormulaContext& context, CVelmStringView text);

}  // namespace velm
