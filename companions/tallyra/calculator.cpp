#include "tallyra/calculator.h"

#include "formula/functions.h"
#include "formula/parser.h"

namespace velm {
namespace {

constexpr CVelmStringView ANSWER_NAME = u"ans";

/// The one plain name that a text is, in lower case; empty when it is anything else.
CVelmString PlainName(CVelmStringView text) {
    const FormulaTokenList list = ParseFormula(ToLowerAscii(text));
    const bool plain = list.tokens.size() == 1 && list.Head().kind == FormulaTokenKind::Identifier;
    return plain ? CVelmString(list.Name(list.Head())) : CVelmString();
}

}  // namespace

CalculatorResult CVelmCalculator::Compute(CVelmStringView line) {
    CalculatorResult result;
    const std::size_t sign = line.find(u'=');
    const CVelmString name = sign != CVelmStringView::npos ? PlainName(line.substr(0, sign)) : CVelmString();
    const std::size_t start = name.empty() ? 0 : sign + 1;
    if (!name.empty() && FindFunction(name, 0) != nullptr) {
        result.fault = {u"\"" + name + u"\" has a meaning of its own in formulas", 0, sign};
        return result;
    }
    const CVelmStringView formula = line.substr(start);
    if (!EvaluateFormula(context_, formula, result.value)) {
        result.fault = ExplainFailure(context_, formula);
        result.fault.position += start;
        return result;
    }
    result.computed = true;
    result.definedName = name;
    if (!name.empty()) {
        DefineVariable(context_, name, result.value);
    }
    DefineVariable(context_, ANSWER_NAME, result.value);
    return result;
}

}  // namespace velm
