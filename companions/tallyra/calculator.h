#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "ask/questions.h"
#include "formula/formula_context.h"
#include "formula/formula_errors.h"
#include "platform/services.h"
#include "platform/text.h"

namespace velm {

/// The outcome of a line.
struct CalculatorResult {
    bool computed = false;
    double value = 0.0;
    CVelmString definedName;            ///< of a line such as r = 3.5, in lower case; empty for any other
    std::optional<CVelmAnswer> answer;  ///< of a question, in place of the value
    FormulaFault fault;                 ///< of a line that could not be computed
};

/// Evaluates lines in sequence. The last result is named "ans"; a line such as r = 3.5 defines a variable. What is no
/// formula is asked as a question, such as 26.2 mi in km.
class CVelmCalculator {
public:
    /// The services outlive the calculator. For the folders see CVelmQuestions.
    CVelmCalculator(const CVelmServices& services, CVelmString dataFolder, CVelmString cacheFolder);

    /// A comparison of one name with something is written in parentheses, (r=3.5): without them it is a definition.
    CalculatorResult Compute(CVelmStringView line);

    const char16_t* CycleAngle() { return CycleAngleMode(context_); }
    const char16_t* AngleLabel() const { return AngleModeLabel(context_); }

private:
    bool ComputeFormula(CVelmStringView line, CalculatorResult& result);
    bool IsComplete(CVelmStringView formula) const;
    bool Ask(CVelmStringView line, CalculatorResult& result);
    void Define(CVelmStringView name, double value);

    FormulaContext context_;
    FormulaContext questionContext_;  ///< conversions and calculations bind names of their own
    CVelmQuestions questions_;
    std::vector<std::pair<CVelmString, double>> unasked_;  ///< the formulas' values that questions do not know yet
};

}  // namespace velm
