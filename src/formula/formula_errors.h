#pragma once

#include <cstddef>

#include "formula/formula_context.h"
#include "platform/text.h"

namespace velm {

/// An error message and its position in the formula.
struct FormulaFault {
    CVelmString message;
    std::size_t position = 0;
    std::size_t length = 0;  ///< 0 at the end of the text
};

/// Explains why EvaluateFormula failed, given the same definitions. Binds two names temporarily.
FormulaFault ExplainFailure(FormulaContext& context, CVelmStringView text);

}  // namespace velm
