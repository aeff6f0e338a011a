#include "ask/evaluation.h"

#include <array>
#include <cmath>

#include "datetime/date_time.h"
#include "formula/operators.h"
#include "formula/program.h"
#include "platform/saturate.h"

namespace velm {

namespace {

constexpr double SECONDS_OF_DAY = 86400.0;

using Kind = CVelmAskedValue::Kind;

CVelmDimension TimeDimension() {
    CVelmDimension dimension;
    dimension.halves[BASE_TIME] = 2;
    return dimension;
}

CVelmDimension AngleDimension() {
    CVelmDimension dimension;
    dimension.halves[BASE_ANGLE] = 2;
    return dimension;
}

/// What a function does with dimensions.
enum class FunctionRule : std::uint8_t { Numbers, Keeps, Root, OfAngle, ToAngle };

struct FunctionRuleRow {
    CVelmStringView name;
    FunctionRule rule;
};
constexpr std::array FUNCTION_RULES = {
    FunctionRuleRow{u"abs", FunctionRule::Keeps},    FunctionRuleRow{u"neg", FunctionRule::Keeps},
    FunctionRuleRow{u"round", FunctionRule::Keeps},  FunctionRuleRow{u"sqrt", FunctionRule::Root},
    FunctionRuleRow{u"sin", FunctionRule::OfAngle},  FunctionRuleRow{u"cos", FunctionRule::OfAngle},
    FunctionRuleRow{u"tan", FunctionRule::OfAngle},  FunctionRuleRow{u"asin", FunctionRule::ToAngle},
    FunctionRuleRow{u"acos", FunctionRule::ToAngle}, FunctionRuleRow{u"atan", FunctionRule::ToAngle}};

FunctionRule RuleOf(const FunctionRow& function) {
    for (const FunctionRuleRow& row : FUNCTION_RULES) {
        if (row.name == function.name) {
            return row.rule;
        }
    }
    return FunctionRule::Numbers;
}

/// Sets the angle mode for a scope.
class RadianScope {
public:
    explicit RadianScope(FormulaContext& context) : context_(context), before_(context.Angle()) {
        context.SetAngle(AngleMode::Radians);
    }
    ~RadianScope() { context_.SetAngle(before_); }
    RadianScope(const RadianScope&) = delete;
    RadianScope& operator=(const RadianScope&) = delete;

private:
    FormulaContext& context_;
    AngleMode before_;
};

/// An operator on plain numbers, as the formula language computes it.
bool ComputeOperator(FormulaContext& context, std::int32_t code, double left, double right, double& result) {
    static constexpr CVelmStringView LEFT = u"ask_left";
    static constexpr CVelmStringView RIGHT = u"ask_right";
    const OperatorRow& row = OPERATORS[static_cast<std::size_t>(code)];
    CVelmString text(row.place == OperatorPlace::Prefix ? CVelmStringView() : LEFT);
    text += row.character;
    text += row.place == OperatorPlace::Infix ? RIGHT : row.place == OperatorPlace::Prefix ? LEFT : CVelmStringView();
    context.Bind(LEFT, left);
    context.Bind(RIGHT, right);
    const bool ok = EvaluateFormula(context, text, result);
    context.Unbind(LEFT);
    context.Unbind(RIGHT);
    return ok;
}

}  // namespace

bool DimensionsFit(const CVelmDimension& a, const CVelmDimension& b) {
    return a == b || a.WithoutAngle() == b.WithoutAngle();
}

std::optional<CVelmAskedValue> CVelmEvaluation::Evaluate(const QuestionTree& tree) {
    tree_ = &tree;
    error_ = {};
    return Node(tree.root);
}

CVelmEvaluation::Result CVelmEvaluation::Fail(EvaluationFault fault, std::int32_t node, const CVelmDimension& first,
                                              const CVelmDimension& second) {
    if (error_.fault == EvaluationFault::None) {
        error_.fault = fault;
        error_.node = node;
        error_.first = first;
        error_.second = second;
        error_.firstNode = tree_->At(node).left;
        error_.secondNode = tree_->At(node).right;
    }
    return std::nullopt;
}

CVelmEvaluation::Result CVelmEvaluation::FailNoFactor(std::int32_t node, const CVelmAskedValue& value) {
    Fail(value.kind == Kind::Moment ? EvaluationFault::Moment : EvaluationFault::NoFactor, node);
    for (std::uint32_t word = 0; value.unit && word < choice.size(); ++word) {
        if (!question_.words[word].readings.empty() && ReadingOf(word).item == value.unit->item) {
            error_.word = word;
            break;
        }
    }
    return std::nullopt;
}

CVelmEvaluation::Result CVelmEvaluation::Quantity(std::int32_t node, double amount,
                                                  const std::optional<CVelmDimension>& dimension) {
    if (!dimension || !(std::fabs(amount) <= VALUE_LIMIT)) {
        return Fail(EvaluationFault::OutOfRange, node);
    }
    CVelmAskedValue value;
    value.amount = amount;
    value.dimension = *dimension;
    return value;
}

bool CVelmEvaluation::IsComputable(std::int32_t node, const CVelmAskedValue& value) {
    if (value.kind == Kind::Quantity) {
        return true;
    }
    FailNoFactor(node, value);
    return false;
}

CVelmEvaluation::Result CVelmEvaluation::Node(std::int32_t number) {
    const QuestionNode& node = tree_->At(number);
    CVelmAskedValue value;
    switch (node.kind) {
        case QuestionNodeKind::Number:
            value.amount = node.number;
            return value;
        case QuestionNodeKind::Unit:
            return Unit(node);
        case QuestionNodeKind::Percent: {
            const Result hundredths = Node(node.left);
            value.amount = hundredths ? hundredths->amount / 100.0 : 0.0;
            value.isPercent = true;
            return hundredths ? Result(value) : std::nullopt;
        }
        case QuestionNodeKind::Moment:
            value.kind = Kind::Moment;
            value.amount = node.number;
            value.hasTime = node.hasTime;
            return value;
        case QuestionNodeKind::Clock:
            value.amount = node.number;
            value.dimension = TimeDimension();
            value.isTimeOfDay = node.number < SECONDS_OF_DAY;
            return value;
        case QuestionNodeKind::Name:
            return kept_[node.word].value;
        case QuestionNodeKind::UnitTimes:
            return UnitTimes(node);
        case QuestionNodeKind::Sum:
            return Sum(number);
        case QuestionNodeKind::Function:
            return Call(number);
        case QuestionNodeKind::Conditional:
            return Choose(node);
        case QuestionNodeKind::Operator:
        case QuestionNodeKind::UnitOver:
        case QuestionNodeKind::UnitPower:
            return Operation(number);
    }
    return std::nullopt;
}

CVelmEvaluation::Result CVelmEvaluation::Unit(const QuestionNode& node) const {
    const CVelmReading& reading = ReadingOf(node.word);
    CVelmAskedValue value;
    value.unit = reading;
    value.number = 1.0;
    value.isExact = true;
    value.amount = index_.FactorOf(reading);
    value.dimension = index_.FileOf(reading).Dimension();
    if (value.amount == 0.0 || reading.rank == RANK_SECONDARY) {
        value.kind = Kind::InUnit;
    }
    return value;
}

CVelmEvaluation::Result CVelmEvaluation::UnitTimes(const QuestionNode& node) {
    const Result left = Node(node.left);
    const Result right = left ? Node(node.right) : std::nullopt;
    if (!right) {
        return std::nullopt;
    }
    const auto position = static_cast<std::int32_t>(&node - tree_->nodes.data());
    const bool isZone = right->unit && index_.FileOf(*right->unit).isDate != 0;
    if (isZone) {
        // The moment of a time of day is that of this day in the zone, which the caller knows.
        if (left->kind != Kind::Moment && !left->isTimeOfDay) {
            return FailNoFactor(position, *right);
        }
        CVelmAskedValue value = *left;
        value.unit = right->unit;
        value.number = left->amount;
        value.isTimeOfDay = left->kind == Kind::Quantity;
        value.hasTime = true;
        value.kind = Kind::Moment;
        return value;
    }
    const bool isNumber = left->kind == Kind::Quantity && left->dimension.IsNone() && !left->unit;
    if (isNumber && right->unit && right->isExact && right->number == 1.0) {
        CVelmAskedValue value = *right;
        value.number = left->amount;
        value.amount *= left->amount;
        return value;
    }
    return Multiply(position, *left, *right);
}

CVelmEvaluation::Result CVelmEvaluation::Operation(std::int32_t number) {
    const QuestionNode& node = tree_->At(number);
    const Result left = Node(node.left);
    if (!left) {
        return std::nullopt;
    }
    if (node.right == NO_NODE) {
        if (node.code == OP_NEGATE && left->kind != Kind::Moment) {
            CVelmAskedValue negated = *left;
            negated.amount = -negated.amount;
            negated.number = -negated.number;
            return negated;
        }
        if (node.code == OP_SQUARE || node.code == OP_CUBE) {
            CVelmAskedValue exponent;
            exponent.amount = node.code == OP_SQUARE ? 2.0 : 3.0;
            return Power(number, *left, exponent);
        }
        return Plain(number, *left, nullptr, node.code);
    }
    const Result right = Node(node.right);
    if (!right) {
        return std::nullopt;
    }
    if (node.kind == QuestionNodeKind::UnitOver) {
        return Divide(number, *left, *right);
    }
    if (node.kind == QuestionNodeKind::UnitPower) {
        return Power(number, *left, *right);
    }
    switch (node.code) {
        case OP_ADD:
            return Add(number, *left, *right, 1.0);
        case OP_SUBTRACT:
            return Add(number, *left, *right, -1.0);
        case OP_MULTIPLY:
            return Multiply(number, *left, *right);
        case OP_DIVIDE:
            return Divide(number, *left, *right);
        case OP_POWER:
            return Power(number, *left, *right);
        default:
            return Plain(number, *left, &*right, node.code);
    }
}

CVelmEvaluation::Result CVelmEvaluation::Add(std::int32_t number, const CVelmAskedValue& left,
                                             const CVelmAskedValue& right, double sign) {
    if (left.kind == Kind::Moment || right.kind == Kind::Moment) {
        if (left.kind == Kind::Moment && right.kind == Kind::Moment) {
            return sign < 0.0 ? Quantity(number, (left.amount - right.amount) * SECONDS_OF_DAY, TimeDimension())
                              : Fail(EvaluationFault::Moment, number);
        }
        const bool isForward = left.kind == Kind::Moment;
        return isForward || sign > 0.0 ? AddToMoment(number, isForward ? left : right, isForward ? right : left, sign)
                                       : Fail(EvaluationFault::Moment, number);
    }
    if (!IsComputable(number, left) || !IsComputable(number, right)) {
        return std::nullopt;
    }
    CVelmAskedValue sum = left;
    sum.isExact = false;
    sum.isPercent = left.isPercent && right.isPercent;
    if (right.isPercent && !left.isPercent) {
        const double scale = 1.0 + sign * right.amount;
        sum.amount *= scale;
        sum.number *= scale;
        sum.isExact = left.isExact;
        return sum;
    }
    if (!DimensionsFit(left.dimension, right.dimension)) {
        return Fail(EvaluationFault::Unfit, number, left.dimension, right.dimension);
    }
    const Result total = Quantity(number, left.amount + sign * right.amount, left.dimension);
    if (total) {
        sum.amount = total->amount;
        sum.number = left.unit ? total->amount / index_.FactorOf(*left.unit) : 0.0;
    }
    return total ? Result(sum) : std::nullopt;
}

CVelmEvaluation::Result CVelmEvaluation::AddToMoment(std::int32_t number, const CVelmAskedValue& moment,
                                                     const CVelmAskedValue& span, double sign) {
    CVelmAskedValue result = moment;
    if (span.kind != Kind::Quantity) {
        return FailNoFactor(number, span);
    }
    if (span.dimension.IsNone()) {
        result.amount += sign * span.amount;  // days, as in the formula language
    } else if (span.dimension != TimeDimension()) {
        return Fail(EvaluationFault::Moment, number, span.dimension);
    } else {
        const std::uint32_t flags = span.unit && span.isExact ? index_.ItemOf(*span.unit).flags : 0;
        const bool isWhole = span.number == std::floor(span.number) && std::fabs(span.number) < 10000.0;
        DateTime date = DateTime::FromValue(result.amount);
        const auto count = ToInt16(ToInt32(sign * span.number));
        if ((flags & INDEX_ITEM_MONTHS) != 0 && isWhole) {
            date.AddMonths(count);
            result.amount = date.value;
        } else if ((flags & INDEX_ITEM_YEARS) != 0 && isWhole) {
            date.AddYears(count);
            result.amount = date.value;
        } else {
            result.amount += sign * span.amount / SECONDS_OF_DAY;
            const double days = span.amount / SECONDS_OF_DAY;
            result.hasTime = result.hasTime || std::fabs(days - std::round(days)) > 1e-9;
        }
    }
    result.number = result.amount;
    return std::fabs(result.amount) < 1e9 ? Result(result) : Fail(EvaluationFault::OutOfRange, number);
}

CVelmEvaluation::Result CVelmEvaluation::Multiply(std::int32_t number, const CVelmAskedValue& left,
                                                  const CVelmAskedValue& right) {
    if (!IsComputable(number, left) || !IsComputable(number, right)) {
        // Brackets around the number do not make a computation of it: (50 + 50) F.
        const bool isNumber = left.kind == Kind::Quantity && left.dimension.IsNone() && !left.unit;
        const QuestionNode& node = tree_->At(number);
        if (isNumber && right.kind == Kind::InUnit && tree_->At(node.right).kind == QuestionNodeKind::Unit) {
            error_ = {};
            CVelmAskedValue value = right;
            value.number = left.amount;
            value.amount *= left.amount;
            return value;
        }
        return std::nullopt;
    }
    const Result product = Quantity(number, left.amount * right.amount, left.dimension.Times(right.dimension));
    const CVelmAskedValue& scaled = left.unit ? left : right;
    const CVelmAskedValue& scale = left.unit ? right : left;
    if (!product || !scaled.unit || scale.unit || !scale.dimension.IsNone()) {
        return product;
    }
    CVelmAskedValue value = scaled;
    value.amount = product->amount;
    value.number *= scale.amount;
    return value;
}

CVelmEvaluation::Result CVelmEvaluation::Divide(std::int32_t number, const CVelmAskedValue& left,
                                                const CVelmAskedValue& right) {
    if (!IsComputable(number, left) || !IsComputable(number, right)) {
        return std::nullopt;
    }
    if (right.amount == 0.0) {
        return Fail(EvaluationFault::Zero, number);
    }
    const Result quotient = Quantity(number, left.amount / right.amount, left.dimension.Over(right.dimension));
    if (!quotient || !left.unit || right.unit || !right.dimension.IsNone()) {
        return quotient;
    }
    CVelmAskedValue value = left;
    value.amount = quotient->amount;
    value.number /= right.amount;
    return value;
}

CVelmEvaluation::Result CVelmEvaluation::Power(std::int32_t number, const CVelmAskedValue& base,
                                               const CVelmAskedValue& exponent) {
    if (!IsComputable(number, base) || !IsComputable(number, exponent)) {
        return std::nullopt;
    }
    if (!exponent.dimension.WithoutAngle().IsNone()) {
        return Fail(EvaluationFault::NeedsNumber, number, exponent.dimension);
    }
    double result = exponent.amount == 2.0 ? base.amount * base.amount : std::pow(base.amount, exponent.amount);
    const auto dimension = base.dimension.Power(exponent.amount);
    return Quantity(number, dimension ? result : NAN, dimension ? dimension : std::optional(CVelmDimension()));
}

CVelmEvaluation::Result CVelmEvaluation::Plain(std::int32_t number, const CVelmAskedValue& left,
                                               const CVelmAskedValue* right, std::int32_t code) {
    if (!IsComputable(number, left) || (right != nullptr && !IsComputable(number, *right))) {
        return std::nullopt;
    }
    const bool keeps = code == OP_REMAINDER;
    const bool compares = code == OP_GREATER || code == OP_LESS || code == OP_EQUAL;
    if (right != nullptr && (keeps || compares)) {
        if (!DimensionsFit(left.dimension, right->dimension)) {
            return Fail(EvaluationFault::Unfit, number, left.dimension, right->dimension);
        }
    } else {
        for (const CVelmAskedValue* operand : {&left, right}) {
            if (operand != nullptr && !operand->dimension.WithoutAngle().IsNone()) {
                return Fail(EvaluationFault::NeedsNumber, number, operand->dimension);
            }
        }
    }
    double result = 0.0;
    if (!ComputeOperator(context_, code, left.amount, right != nullptr ? right->amount : 0.0, result)) {
        return Fail(EvaluationFault::OutOfRange, number);
    }
    return Quantity(number, result, keeps ? left.dimension : CVelmDimension());
}

CVelmEvaluation::Result CVelmEvaluation::Call(std::int32_t number) {
    const QuestionNode& node = tree_->At(number);
    std::array<double, 2> arguments{};
    std::array<CVelmAskedValue, 2> values{};
    for (std::size_t i = 0; i < node.arguments.size(); ++i) {
        const Result argument = Node(node.arguments[i]);
        if (!argument || !IsComputable(node.arguments[i], *argument)) {
            return std::nullopt;
        }
        values[i] = *argument;
        arguments[i] = argument->amount;
    }
    const CVelmAskedValue& first = values[0];
    const FunctionRule rule = RuleOf(*node.function);
    const bool isAngle = first.dimension == AngleDimension();
    const auto call = [&](double value) { return node.function->call(context_, value, arguments[1]); };
    switch (rule) {
        case FunctionRule::Keeps: {
            // A value is rounded in the unit that it was given in.
            if (first.unit) {
                CVelmAskedValue result = first;
                result.number = call(first.number);
                result.amount = result.number * index_.FactorOf(*first.unit);
                return result;
            }
            if (!first.dimension.IsNone() && node.function->name == u"round") {
                return Fail(EvaluationFault::NeedsNumber, number, first.dimension);
            }
            return Quantity(number, call(first.amount), first.dimension);
        }
        case FunctionRule::Root: {
            const auto dimension = first.dimension.Power(0.5);
            return Quantity(number, dimension ? call(first.amount) : NAN, dimension ? *dimension : CVelmDimension());
        }
        case FunctionRule::OfAngle: {
            if (!isAngle && !first.dimension.IsNone()) {
                return Fail(EvaluationFault::NeedsAngle, number, first.dimension);
            }
            if (!isAngle) {
                return Quantity(number, call(first.amount), CVelmDimension());
            }
            const RadianScope radians(context_);
            return Quantity(number, call(first.amount), CVelmDimension());
        }
        case FunctionRule::ToAngle: {
            if (!first.dimension.WithoutAngle().IsNone()) {
                return Fail(EvaluationFault::NeedsNumber, number, first.dimension);
            }
            const RadianScope radians(context_);
            return Quantity(number, call(first.amount), AngleDimension());
        }
        case FunctionRule::Numbers:
            break;
    }
    for (std::size_t i = 0; i < node.arguments.size(); ++i) {
        if (!values[i].dimension.WithoutAngle().IsNone()) {
            return Fail(EvaluationFault::NeedsNumber, number, values[i].dimension);
        }
    }
    return Quantity(number, call(first.amount), CVelmDimension());
}

CVelmEvaluation::Result CVelmEvaluation::Choose(const QuestionNode& node) {
    std::size_t i = 0;
    for (; i + 1 < node.arguments.size(); i += 2) {
        const Result condition = Node(node.arguments[i]);
        if (!condition || !IsComputable(node.arguments[i], *condition)) {
            return std::nullopt;
        }
        if (condition->amount != 0.0) {
            return Node(node.arguments[i + 1]);
        }
    }
    return Node(node.arguments[i]);
}

CVelmEvaluation::Result CVelmEvaluation::Sum(std::int32_t number) {
    const QuestionNode& node = tree_->At(number);
    const Result left = Node(node.left);
    const Result right = left ? Node(node.right) : std::nullopt;
    if (!right) {
        return std::nullopt;
    }
    // The parts of a negative compound are all negative, but the sign stands before the whole.
    return Add(number, *left, *right, 1.0);
}

}  // namespace velm
