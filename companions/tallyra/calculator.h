#pragma once

#include "formula/formula_context.h"
#include "formula/formula_errors.h"
#include "platform/text.h"

namespace velm {

/// The outcome of a line.
struct CalculatorResult {
    bool computed = false;
    double value = 0.0;
    CVelmString definedName;  ///< of a line such as r = 3.5, in lower case; empty for any other
    FormulaFault fault;       ///< of a line that could not be computed
};

/// Evaluates lines in sequence. The last result is named "ans"; a line such as r = 3.5 defines a variable.
class CVelmCalculator {
public:
    /// The clock outlives the calculator.
    explicit CVelmCalculator(const CVelmClock& clock) : context_(clock) {}

    /// A comparison of one name with something is written in parentheses, (r=3.5): without them it is a definition.
    CalculatorResult Compute(CVelmStringView line);

    const char16_t* CycleAngle() { return CycleAngleMode(context_); }
    const char16_t* AngleLabel() const { return AngleModeLabel(context_); }

private:
    FormulaContext context_;
};

}  // namespace velm
