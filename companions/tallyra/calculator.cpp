#include "tallyra/calculator.h"

#include <algorithm>
#include <cmath>

#include "formats/decimal_format.h"
#include "formula/formula.h"
#include "formula/functions.h"

namespace velm {
namespace {

constexpr CVelmStringView ANSWER_NAME = u"ans";

/// Of two explanations that one gets further which understood more of the line. A word right behind a number was meant
/// as a unit.
bool IsQuestionFault(CVelmStringView line, const FormulaFault& formula, const CVelmQuestionFault& question) {
    if (formula.position != question.position) {
        return question.position > formula.position;
    }
    const std::size_t before = line.substr(0, question.position).find_last_not_of(u' ');
    return before != CVelmStringView::npos && IsDigit(line[before]) && question.position < line.size() &&
           IsLetter(line[question.position]);
}

}  // namespace

CVelmCalculator::CVelmCalculator(const CVelmServices& services, CVelmString dataFolder, CVelmString cacheFolder)
    : context_(services.clock),
      questionContext_(services.clock),
      questions_(services, questionContext_, std::move(dataFolder), std::move(cacheFolder)) {}

CalculatorResult CVelmCalculator::Compute(CVelmStringView line) {
    CalculatorResult result;
    if (!ComputeFormula(line, result)) {
        result.computed = Ask(line, result);
    }
    return result;
}

/// False for a line that is no formula, with what the formula language says about it.
bool CVelmCalculator::ComputeFormula(CVelmStringView line, CalculatorResult& result) {
    const std::size_t sign = line.find(u'=');
    const CVelmString name(sign != CVelmStringView::npos ? PlainName(context_, line.substr(0, sign))
                                                         : CVelmStringView());
    const std::size_t start = name.empty() ? 0 : sign + 1;
    if (!name.empty() && FindFunction(name, 0) != nullptr) {
        result.fault = {u"\"" + name + u"\" already has a meaning in formulas", 0, sign};
        return true;
    }
    const CVelmStringView formula = line.substr(start);
    if (!EvaluateFormula(context_, formula, result.value)) {
        result.fault = ExplainFailure(context_, formula);
        result.fault.position += start;
        return IsComplete(formula);
    }
    result.computed = true;
    result.definedName = name;
    if (!name.empty()) {
        Define(name, result.value);
    }
    Define(ANSWER_NAME, result.value);
    return true;
}

/// Whether a formula could be computed if its values were others.
bool CVelmCalculator::IsComplete(CVelmStringView formula) const {
    const CVelmFormula compiled(formula);
    return compiled.Parses() && std::ranges::none_of(compiled.VariablesRead(), [this](CVelmStringView name) {
               return std::isnan(context_.ValueOf(name));
           });
}

void CVelmCalculator::Define(CVelmStringView name, double value) {
    DefineVariable(context_, name, value);
    unasked_.emplace_back(name, value);
}

bool CVelmCalculator::Ask(CVelmStringView line, CalculatorResult& result) {
    questionContext_.SetAngle(context_.Angle());
    for (const auto& [name, value] : unasked_) {
        const CVelmString number = NumberToText(value);
        questions_.Ask(name == ANSWER_NAME ? number : name + u" = " + number);
    }
    unasked_.clear();
    CVelmAnswer answer = questions_.Ask(line);
    if (!answer.ok) {
        if (IsQuestionFault(line, result.fault, answer.fault)) {
            result.fault = {std::move(answer.fault.message), answer.fault.position, answer.fault.length};
        }
        return false;
    }
    if (answer.rows.size() == 1 && answer.rows.front().hasValue) {
        DefineVariable(context_, ANSWER_NAME, answer.rows.front().value);
    }
    // w = 80 kg: a formula with w is a question from now on.
    UndefineVariable(context_, line.substr(0, line.find(u'=')));
    result.answer = std::move(answer);
    return true;
}

}  // namespace velm
