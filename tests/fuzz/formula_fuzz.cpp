// Formula texts: the text evaluated at once, the formula made ready beforehand and a plain recursive walk over the
// parser's tokens must agree, to the last bit.

#include <bit>
#include <cmath>
#include <map>
#include <optional>
#include <vector>

#include "formula/formula.h"
#include "formula/operators.h"
#include "formula/parser.h"
#include "fuzz/fuzz.h"
#include "platform/saturate.h"
#include "support/fixed_clock.h"

namespace velm::test {
namespace {

constexpr std::size_t MAX_LENGTH = 4096;  // the walk takes call stack, unlike what it is compared with

using Value = std::optional<double>;

double Factorial(double value) {
    if (value < 0.0 || value >= 150.0 || value != std::floor(value)) {
        return NAN;
    }
    double product = 1.0;
    for (; value > 1.0; value -= 1.0) {
        product *= value;
    }
    return product;
}

/// Where there is no value they give one out of range.
const std::map<std::int32_t, double (*)(double, double)> OPERATIONS = {
    {OP_ADD, [](double a, double b) { return a + b; }},
    {OP_SUBTRACT, [](double a, double b) { return a - b; }},
    {OP_MULTIPLY, [](double a, double b) { return a * b; }},
    {OP_DIVIDE, [](double a, double b) { return b == 0.0 ? NAN : a / b; }},
    {OP_REMAINDER, [](double a, double b) { return std::fmod(a, b); }},
    {OP_POWER, [](double a, double b) { return b == 2.0 ? a * a : std::pow(a, b); }},
    {OP_GREATER, [](double a, double b) { return a > b ? -1.0 : 0.0; }},
    {OP_LESS, [](double a, double b) { return a < b ? -1.0 : 0.0; }},
    {OP_EQUAL, [](double a, double b) { return a == b ? -1.0 : 0.0; }},
    {OP_AND, [](double a, double b) -> double { return ToInt32(a) & ToInt32(b); }},
    {OP_OR, [](double a, double b) -> double { return ToInt32(a) | ToInt32(b); }},
    {OP_XOR, [](double a, double b) -> double { return ToInt32(a) ^ ToInt32(b); }},
    {OP_NOT, [](double a, double) -> double { return ~ToInt32(a); }},
    {OP_FACTORIAL, [](double a, double) { return Factorial(a); }},
    {OP_SQUARE, [](double a, double) { return a * a; }},
    {OP_CUBE, [](double a, double) { return a * a * a; }},
    {OP_NEGATE, [](double a, double) { return -a; }},
    {OP_PERCENT, [](double a, double) { return a * 0.01; }},
};

class TokenWalk {
public:
    TokenWalk(const FormulaTokenList& list, FormulaContext& context)
        : list_(list), context_(context), next_(list.tokens.size()) {}

    Value Evaluate() { return next_ == 0 ? std::nullopt : Evaluate(ReadNode()); }

private:
    struct Node {
        const FormulaToken* token = nullptr;
        std::vector<Node> operands;  ///< from the right one to the left one
    };

    Node ReadNode() {
        Node node{&list_.tokens[--next_], {}};
        for (std::int32_t i = 0; i < node.token->operandCount; ++i) {
            node.operands.push_back(ReadNode());
        }
        return node;
    }

    Value Evaluate(const Node& node) {
        const Value value = EvaluateToken(node);
        return value && std::fabs(*value) <= 1e301 ? value : std::nullopt;
    }

    Value EvaluateToken(const Node& node) {
        const CVelmStringView name = list_.Name(*node.token);
        if (node.token->kind == FormulaTokenKind::Identifier && name == u"iif") {
            return EvaluateConditional(node.operands);
        }
        std::vector<double> values;
        for (const Node& operand : node.operands) {
            const Value value = Evaluate(operand);
            if (!value) {
                return std::nullopt;
            }
            values.insert(values.begin(), *value);
        }
        values.resize(values.size() + 2);  // operands that there are not
        switch (node.token->kind) {
            case FormulaTokenKind::Number:
                return node.token->number;
            case FormulaTokenKind::Operator:
                return OPERATIONS.at(node.token->index)(values[0], values[1]);
            case FormulaTokenKind::Identifier:
                if (const FunctionRow* function = FindFunction(name, node.token->operandCount)) {
                    return function->call(context_, values[0], values[1]);
                }
                return node.token->operandCount > 0 ? std::nullopt
                       : name == X_NAME             ? context_.XValue()
                                                    : context_.ValueOf(name);
            default:
                return std::nullopt;
        }
    }

    Value EvaluateConditional(const std::vector<Node>& operands) {
        if (operands.size() < 3 || operands.size() % 2 == 0) {
            return std::nullopt;
        }
        for (std::size_t condition = operands.size() - 1; condition > 0; condition -= 2) {
            const Value chosen = Evaluate(operands[condition]);
            if (!chosen || *chosen != 0.0) {
                return chosen ? Evaluate(operands[condition - 1]) : std::nullopt;
            }
        }
        return Evaluate(operands[0]);
    }

    const FormulaTokenList& list_;
    FormulaContext& context_;
    std::size_t next_;
};

/// A context of its own for each evaluation, so that all draw the same random numbers.
struct Setting {
    Setting(double x, std::uint8_t angle) : context(clock) {
        context.SetAngle(static_cast<AngleMode>(angle % 3));
        DefineVariable(context, u"a", 0.1);
        if (!std::isnan(x)) {
            context.BindX(x);
        }
    }

    FixedClock clock;
    FormulaContext context;
};

/// The first byte says how the others are text: UTF-8, or any 16-bit units.
CVelmString ReadText(Input input) {
    if (input[0] % 2 == 0) {
        return FromUtf8(Characters(input.subspan(1)));
    }
    CVelmString text;
    for (std::size_t i = 1; i + 1 < input.size(); i += 2) {
        text += static_cast<char16_t>(input[i] | input[i + 1] << 8);
    }
    return text;
}

bool IsSame(const Value& a, const Value& b) {
    return a.has_value() == b.has_value() &&
           (!a || std::bit_cast<std::uint64_t>(*a) == std::bit_cast<std::uint64_t>(*b));
}

}  // namespace

void Try(Input input) {
    static constexpr double INPUTS[] = {3.25, -1.0, 0.0, -0.0, 1e200, -1e-310, 2e301, NAN};
    if (input.empty() || input.size() > MAX_LENGTH) {
        return;
    }
    const CVelmString text = ReadText(input);
    const double x = INPUTS[input[0] >> 5];
    const std::uint8_t angle = input[0] >> 1 & 3;
    double result = 0.0;
    Setting textSetting(x, angle);
    const Value ofText = EvaluateFormula(textSetting.context, text, result) ? Value(result) : Value();

    const CVelmFormula formula(text);
    Setting formulaSetting(x, angle);
    const Value ofFormula = formula.Evaluate(formulaSetting.context, result) ? Value(result) : Value();
    Require(IsSame(ofText, ofFormula), "a formula made ready gives what its text gives");

    const FormulaTokenList list = ParseFormula(ToLowerAscii(text));
    Setting walkSetting(x, angle);
    Require(IsSame(ofText, TokenWalk(list, walkSetting.context).Evaluate()), "a text gives what its tokens say");
    Require(formula.Parses() == (!list.IsEmpty() && !list.HasError()), "a formula parses when its list has no error");
    Require(formula.Parses() || !ofText, "what does not parse has no value");
}

}  // namespace velm::test
