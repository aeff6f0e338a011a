#pragma once

#include <vector>

#include "formula/formula_context.h"
#include "formula/program.h"
#include "platform/text.h"

namespace velm {

/// A formula text made ready once and evaluated as often as wanted. It need not outlive its text.
class CVelmFormula {
public:
    CVelmFormula() = default;
    explicit CVelmFormula(CVelmStringView text);

    /// False for an empty text and for a syntax error; such a formula never evaluates.
    bool Parses() const { return program_.parses; }

    /// The names bound by DefineVariable that it may read, in lower case, each once for every use; valid as long as the
    /// formula.
    std::vector<CVelmStringView> VariablesRead() const { return program_.VariablesRead(); }

    /// Whether another evaluation may end otherwise although no name was bound in between.
    bool IsVolatile() const { return program_.isVolatile; }

    /// As EvaluateFormula of the text it was made of. Not to be called by two threads at once.
    bool Evaluate(FormulaContext& context, double& result) const { return program_.Run(context, result); }

private:
    FormulaProgram program_;
};

}  // namespace velm
