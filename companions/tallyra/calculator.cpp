#include "tallyra/calculator.h"

#include "formula/functions.h"

namespace velm {
namespace {

constexpr CVelmStringView ANSWER_NAME = u"ans";

}  // namespace

CalculatorResult CVelmCalculator::Compute(CVelmStringView line) {
    CalculatorResult result;
    const std::size_t sign = line.find(u'=');
    const CVelmString name(sign != CVelmStringView::npos ? PlainName(context_, line.substr(0, sign))
                                                         : CVelmStringView());
    const std::size_t start = name.empty() ? 0 : sign + 1;
    if (!name.empty() && FindFunction(name, 0) != nullptr) {
        result.fault = {u"\"" + name + u"\" already has a meaning in formulas", 0, sign};
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
