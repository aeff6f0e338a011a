#pragma once

#include <vector>

#include "formula/formula_context.h"
#include "formula/program.h"
#include "platform/text.h"

namespace velm {

/// A formula text compiled once and evaluated any number of times. The text need not outlive it.
class CVelmFormula {
public:
    CVelmFormula() = default;
    explicit CVelmFormula(CVelmStringView text);

    /// False for an empty text and for a syntax error; such a formula never evaluates.
    bool Parses() const { return program_.parses; }

    /// The variables it may read, in lower case, one entry per use; valid as long as the formula.
    std::vector<CVelmStringView> VariablesRead() const { return program_.VariablesRead(); }

    /// Whether the result may change although no name was bound in between.
    bool IsVolatile() const { return program_.isVolatile; }

    /// Same as EvaluateFormula of its text. Not thread-safe.
    bool Evaluate(FormulaContext& context, double& result) const { return program_.Run(context, result); }

private:
    FormulaProgram program_;
};

}  // namespace velm
