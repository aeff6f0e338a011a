#include "formula/formula_errors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "formula/functions.h"
#include "formula/operators.h"
#include "formula/parser.h"
#include "formula/program.h"
#include "formula/tokenizer.h"

namespace velm {
namespace {

constexpr CVelmStringView LEFT_NAME = u"explained_left";
constexpr CVelmStringView RIGHT_NAME = u"explained_right";

struct Domain {
    CVelmStringView name;
    CVelmStringView message;
};

// The domain of each function that is not defined everywhere.
constexpr std::array DOMAINS = {
    Domain{u"sqrt", u"sqrt needs a number of at least 0"},
    Domain{u"ln", u"ln needs a number above 0"},
    Domain{u"lg", u"lg needs a number above 0"},
    Domain{u"asin", u"asin needs a number from -1 to 1"},
    Domain{u"acos", u"acos needs a number from -1 to 1"},
    Domain{u"tan", u"tan has no value at this angle"},
    Domain{u"fromutc", u"There is no time zone with this number"},
    Domain{u"toutc", u"There is no time zone with this number"},
    Domain{u"inttime", u"There is no time zone with this number"},
    Domain{u"err", u"err is always an error"},
};

CVelmString Quote(CVelmStringView text) {
    return u"\"" + CVelmString(text) + u"\"";
}

/// Whether the "(" that the text begins with has its ")".
bool IsClosed(CVelmStringView text) {
    int open = 0;
    for (const char16_t unit : text) {
        open += unit == u'(' ? 1 : unit == u')' ? -1 : 0;
        if (open == 0) {
            return true;
        }
    }
    return false;
}

/// Explains a syntax error from the position where the parser found it.
FormulaFault ExplainSyntax(const FormulaTokenList& list) {
    const CVelmStringView text = list.text;
    const FormulaToken& error = *list.FindError();
    std::size_t position = std::min<std::size_t>(error.position, text.size());
    CVelmStringView word;
    if (!NextToken(text, position, word)) {
        return {u"The formula is incomplete", text.size(), 0};
    }
    const std::size_t start = position - word.size();
    const bool digit = IsDigit(word.front()) || word.front() == u'.';
    double number = 0.0;
    std::int32_t code = 0;
    if (digit && !ScanNumber(word, number)) {
        return {Quote(word) + u" is not a number", start, word.size()};
    }
    if (word == u"(" && !IsClosed(text.substr(start))) {
        return {u"The \")\" for this \"(\" is missing", start, 1};
    }
    if (word == u")") {
        const CVelmStringView before = text.substr(0, start);
        const bool unopened =
            std::count(before.begin(), before.end(), u'(') <= std::count(before.begin(), before.end(), u')');
        return {unopened ? u"There is no \"(\" for this \")\"" : u"A value is missing before \")\"", start, 1};
    }
    if (IsOperatorToken(word, code)) {
        return {u"A value is missing before " + Quote(word), start, word.size()};
    }
    if (word == u",") {
        return {u"A comma only separates the arguments of a function", start, 1};
    }
    if (digit || IsFormulaLetter(word.front()) || word == u"(") {
        return {u"An operator is missing before " + Quote(word), start, word.size()};
    }
    return {Quote(word) + u" is not allowed in a formula", start, word.size()};
}

/// The value of a subexpression, or its error.
struct Part {
    std::optional<double> value;
    FormulaFault fault;
};

/// Evaluates a formula that parses from left to right and stops at the first fault.
class EvaluationExplainer {
public:
    EvaluationExplainer(FormulaContext& context, const FormulaTokenList& list) : context_(context), list_(list) {}

    FormulaFault Explain() {
        std::vector<Part> parts;
        for (const FormulaToken& token : list_.tokens) {
            const auto operands = std::min<std::size_t>(parts.size(), static_cast<std::size_t>(token.operandCount));
            std::vector<Part> taken(parts.end() - static_cast<std::ptrdiff_t>(operands), parts.end());
            parts.resize(parts.size() - operands);
            parts.push_back(Apply(token, taken));
        }
        return parts.empty() ? FormulaFault{u"There is nothing to calculate", 0, 0} : parts.back().fault;
    }

private:
    Part Fail(const FormulaToken& token, CVelmString message) const {
        return {std::nullopt, {std::move(message), token.position, token.length}};
    }

    Part Apply(const FormulaToken& token, const std::vector<Part>& operands) {
        const CVelmStringView word = list_.Name(token);
        if (token.kind == FormulaTokenKind::Number) {
            return Check(token, token.number, u"The number is too large");
        }
        if (token.kind == FormulaTokenKind::Identifier && word == CONDITIONAL_NAME && token.operandCount > 0) {
            return ApplyConditional(token, operands);
        }
        for (const Part& operand : operands) {
            if (!operand.value) {
                return operand;
            }
        }
        if (token.kind == FormulaTokenKind::Identifier) {
            return ApplyName(token, word, operands);
        }
        return ApplyOperator(token, operands);
    }

    Part ApplyConditional(const FormulaToken& token, const std::vector<Part>& operands) const {
        if (operands.size() < 3 || operands.size() % 2 == 0) {
            return Fail(token, u"iif takes pairs of a condition and a value, then one more value");
        }
        for (std::size_t i = 0; i + 1 < operands.size(); i += 2) {
            if (!operands[i].value) {
                return operands[i];
            }
            if (*operands[i].value != 0.0) {
                return operands[i + 1];
            }
        }
        return operands.back();
    }

    Part ApplyName(const FormulaToken& token, CVelmStringView name, const std::vector<Part>& operands) {
        const std::int32_t count = token.operandCount;
        if (FindFunction(name, count) != nullptr) {
            CVelmString formula(name);
            if (count > 0) {
                formula +=
                    u'(' + (count > 1 ? CVelmString(LEFT_NAME) + u',' : CVelmString()) + CVelmString(RIGHT_NAME) + u')';
            }
            const auto domain =
                std::find_if(DOMAINS.begin(), DOMAINS.end(), [&](const Domain& row) { return row.name == name; });
            return Compute(token, formula, operands,
                           domain != DOMAINS.end() ? CVelmString(domain->message) : u"The result is too large");
        }
        if (count == 0) {
            double value = 0.0;
            return EvaluateFormula(context_, name, value) ? Part{value, {}}
                                                          : Fail(token, u"There is no value named " + Quote(name));
        }
        for (const FunctionRow& row : Functions()) {
            if (row.name == name) {
                return Fail(token, CVelmString(name) + u" takes " + IntegerText(row.arity) +
                                       (row.arity == 1 ? u" argument, not " : u" arguments, not ") +
                                       IntegerText(count));
            }
        }
        return Fail(token, u"There is no function named " + Quote(name));
    }

    Part ApplyOperator(const FormulaToken& token, const std::vector<Part>& operands) {
        const OperatorRow& row = OPERATORS[static_cast<std::size_t>(token.index)];
        const CVelmString sign(1, static_cast<char16_t>(row.character));
        CVelmString formula = row.place == OperatorPlace::Infix
                                  ? CVelmString(LEFT_NAME) + sign + CVelmString(RIGHT_NAME)
                              : row.place == OperatorPlace::Prefix ? sign + CVelmString(RIGHT_NAME)
                                                                   : CVelmString(RIGHT_NAME) + sign;
        const double right = operands.empty() ? 0.0 : *operands.back().value;
        CVelmString message = u"The result is too large";
        if (token.index == OP_FACTORIAL) {
            message = u"A factorial needs a whole number from 0 to 149";
        } else if ((token.index == OP_DIVIDE || token.index == OP_REMAINDER) && right == 0.0) {
            message = u"Division by zero";
        } else if (token.index == OP_POWER && *operands.front().value < 0.0) {
            message = u"A negative number can be raised only to whole powers";
        }
        return Compute(token, formula, operands, message);
    }

    Part Compute(const FormulaToken& token, CVelmStringView formula, const std::vector<Part>& operands,
                 CVelmString message) {
        if (!operands.empty()) {
            DefineVariable(context_, LEFT_NAME, *operands.front().value);
            DefineVariable(context_, RIGHT_NAME, *operands.back().value);
        }
        double value = 0.0;
        const bool computed = EvaluateFormula(context_, formula, value);
        UndefineVariable(context_, LEFT_NAME);
        UndefineVariable(context_, RIGHT_NAME);
        return computed ? Part{value, {}} : Fail(token, std::move(message));
    }

    Part Check(const FormulaToken& token, double value, CVelmString message) const {
        return std::isfinite(value) && std::fabs(value) <= VALUE_LIMIT ? Part{value, {}}
                                                                       : Fail(token, std::move(message));
    }

    FormulaContext& context_;
    const FormulaTokenList& list_;
};

}  // namespace

FormulaFault ExplainFailure(FormulaContext& context, CVelmStringView text) {
    const FormulaTokenList list = ParseFormula(ToLowerAscii(text));
    if (list.HasError()) {
        return ExplainSyntax(list);
    }
    return EvaluationExplainer(context, list).Explain();
}

}  // namespace velm
