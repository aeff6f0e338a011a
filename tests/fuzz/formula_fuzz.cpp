// Formula texts: the text evaluated at once, the formula made ready beforehand and a plain recursive walk over the
// parser's tokens must agree, to the last bit.

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

#include "formula/formula.h"
#include "formula/operators.h"
#include "formula/parser.h"
#include "platform/saturate.h"
#include "support/fixed_clock.h"

namespace velm {
namespace {

constexpr std::size_t MAX_LENGTH = 4096;  // the walk takes call stack, unlike what it is compared with

using Value = std::optional<double>;

class TokenWalk {
public:
    TokenWalk(const FormulaTokenList& list, FormulaContext& context)
        : list_(list), context_(context), next_(list.tokens.size()) {}

    Value Evaluate() { return EvaluateNode(ReadNode()); }

private:
    struct Node {
        const FormulaToken* token = nullptr;
        std::vector<Node> operands;  ///< from the right one to the left one
    };

    Node ReadNode() {
        Node node;
        if (next_ == 0) {
            return node;
        }
        node.token = &list_.tokens[--next_];
        for (std::int32_t i = 0; i < node.token->operandCount; ++i) {
            node.operands.push_back(ReadNode());
        }
        return node;
    }

    Value EvaluateNode(const Node& node) {
        const Value value = EvaluateToken(node);
        return value && std::fabs(*value) <= 1e301 ? value : std::nullopt;
    }

    Value EvaluateToken(const Node& node) {
        if (node.token == nullptr || node.token->kind == FormulaTokenKind::Error) {
            return std::nullopt;
        }
        if (node.token->kind == FormulaTokenKind::Number) {
            return node.token->number;
        }
        const bool isName = node.token->kind == FormulaTokenKind::Identifier;
        if (isName && list_.Name(*node.token) == u"iif") {
            return EvaluateConditional(node);
        }
        std::vector<double> values;
        for (const Node& operand : node.operands) {
            const Value value = EvaluateNode(operand);
            if (!value) {
                return std::nullopt;
            }
            values.insert(values.begin(), *value);
        }
        values.resize(values.size() + 2);  // operands that there are not
        return isName ? EvaluateName(node, values) : EvaluateOperator(node.token->index, values[0], values[1]);
    }

    Value EvaluateConditional(const Node& node) {
        const std::size_t count = node.operands.size();
        if (count < 3 || count % 2 == 0) {
            return std::nullopt;
        }
        for (std::size_t condition = count - 1; condition > 0; condition -= 2) {
            const Value chosen = EvaluateNode(node.operands[condition]);
            if (!chosen || *chosen != 0.0) {
                return chosen ? EvaluateNode(node.operands[condition - 1]) : std::nullopt;
            }
        }
        return EvaluateNode(node.operands[0]);
    }

    Value EvaluateName(const Node& node, const std::vector<double>& values) {
        const CVelmStringView name = list_.Name(*node.token);
        if (const FunctionRow* function = FindFunction(name, node.token->operandCount)) {
            return function->call(context_, values[0], values[1]);
        }
        if (node.token->operandCount > 0) {
            return std::nullopt;
        }
        return name == X_NAME ? context_.XValue() : context_.ValueOf(name);
    }

    static Value EvaluateOperator(std::int32_t code, double a, double b) {
        switch (code) {
            case OP_ADD:
                return a + b;
            case OP_SUBTRACT:
                return a - b;
            case OP_MULTIPLY:
                return a * b;
            case OP_DIVIDE:
                return b == 0.0 ? Value() : a / b;
            case OP_REMAINDER:
                return std::fmod(a, b);
            case OP_POWER:
                return b == 2.0 ? a * a : std::pow(a, b);
            case OP_GREATER:
                return a > b ? -1.0 : 0.0;
            case OP_LESS:
                return a < b ? -1.0 : 0.0;
            case OP_EQUAL:
                return a == b ? -1.0 : 0.0;
            case OP_AND:
                return ToInt32(a) & ToInt32(b);
            case OP_OR:
                return ToInt32(a) | ToInt32(b);
            case OP_XOR:
                return ToInt32(a) ^ ToInt32(b);
            case OP_NOT:
                return ~ToInt32(a);
            case OP_FACTORIAL:
                return EvaluateFactorial(a);
            case OP_SQUARE:
                return a * a;
            case OP_CUBE:
                return a * a * a;
            case OP_NEGATE:
                return -a;
            default:
                return a * 0.01;
        }
    }

    static Value EvaluateFactorial(double value) {
        if (value < 0.0 || value >= 150.0 || value != std::floor(value)) {
            return std::nullopt;
        }
        double product = 1.0;
        for (; value > 1.0; value -= 1.0) {
            product *= value;
        }
        return product;
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

    test::FixedClock clock;
    FormulaContext context;
};

/// The first byte says how the others are text: UTF-8, or any 16-bit units.
CVelmString ReadText(std::uint8_t kind, const std::uint8_t* data, std::size_t size) {
    if (kind % 2 == 0) {
        return FromUtf8({reinterpret_cast<const char*>(data), size});
    }
    CVelmString text;
    for (std::size_t i = 0; i + 1 < size; i += 2) {
        text += static_cast<char16_t>(data[i] | data[i + 1] << 8);
    }
    return text;
}

void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "not so: %s\n", what);
        std::abort();
    }
}

bool IsSame(const Value& a, const Value& b) {
    return a.has_value() == b.has_value() &&
           (!a || std::bit_cast<std::uint64_t>(*a) == std::bit_cast<std::uint64_t>(*b));
}

void Compare(CVelmStringView text, double x, std::uint8_t angle) {
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

}  // namespace
}  // namespace velm

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static constexpr double INPUTS[] = {3.25, -1.0, 0.0, -0.0, 1e200, -1e-310, 2e301, NAN};
    if (size < 1 || size > velm::MAX_LENGTH) {
        return 0;
    }
    const velm::CVelmString text = velm::ReadText(data[0], data + 1, size - 1);
    velm::Compare(text, INPUTS[data[0] >> 5], data[0] >> 1 & 3);
    return 0;
}
