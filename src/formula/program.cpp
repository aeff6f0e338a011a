#include "formula/program.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "formula/formula_context.h"
#include "platform/saturate.h"

namespace velm {

namespace {

constexpr double FAILURE = std::numeric_limits<double>::quiet_NaN();

bool IsInRange(double value) {
    return std::fabs(value) <= VALUE_LIMIT;
}

double TruthValue(bool truth) {
    return truth ? -1.0 : 0.0;
}

/// The square is a multiplication: correctly rounded like the power, and many times faster.
double Power(double base, double exponent) {
    return exponent == 2.0 ? base * base : std::pow(base, exponent);
}

double Factorial(double value) {
    if (!(value >= 0.0 && value < 150.0) || std::floor(value) != value) {
        return FAILURE;
    }
    double product = 1.0;
    for (double factor = value; factor > 1.0; factor -= 1.0) {
        product *= factor;
    }
    return product;
}

double Divide(double dividend, double divisor) {
    return divisor == 0.0 ? FAILURE : dividend / divisor;
}

/// The instructions that need a function of the library or of the context.
double ExecuteOther(const FormulaProgram& program, FormulaContext& context, const FormulaInstruction& instruction,
                    double accumulator) {
    double* const slots = program.frame.data();
    slots[instruction.saved] = accumulator;
    const auto left = [&] { return slots[instruction.a]; };
    const auto right = [&] { return slots[instruction.b]; };
    switch (instruction.code) {
        case OP_REMAINDER:
            return std::fmod(left(), right());  // the sign of the left operand; a NaN for a divisor of 0
        case OP_POWER:
            return Power(left(), right());
        case OP_FACTORIAL:
            return Factorial(left());
        case OPCODE_VARIABLE:
            return context.ValueOf(program.Name(instruction));
        default:
            return FAILURE;
    }
}

/// Runs from instruction `at`. Without calls it is a leaf function that keeps everything in registers; at the first
/// instruction it does not handle the other variant takes over. Kept out of line so that it stays a leaf.
template <bool WITH_CALLS>
[[gnu::noinline]] bool Execute(const FormulaProgram& program, FormulaContext& context, const FormulaInstruction* at,
                               double accumulator, double& result) {
    static constexpr std::uint32_t CODE_MASK = 63;  // spares the check that the code is a case
    static_assert(OPCODE_CALL_WITH <= CODE_MASK);
    const FormulaInstruction* const begin = program.instructions.data();
    const FormulaInstruction* const end = begin + program.instructions.size();
    double* const slots = program.frame.data();
    const auto save = [&] { slots[at->saved] = accumulator; };
    const auto left = [&] { return slots[at->a]; };
    const auto right = [&] { return slots[at->b]; };
    while (at != end) {
        double value = FAILURE;
        switch (at->code & CODE_MASK) {
            case OPCODE_ADD_TO:
                value = accumulator + right();
                break;
            case OPCODE_SUBTRACT_FROM:
                value = accumulator - right();
                break;
            case OPCODE_MULTIPLY_BY:
                value = accumulator * right();
                break;
            case OPCODE_DIVIDE_BY:
                value = Divide(accumulator, right());
                break;
            case OPCODE_REST_OF:
                value = left() - accumulator;
                break;
            case OPCODE_QUOTIENT_OF:
                value = Divide(left(), accumulator);
                break;
            case OP_ADD:
                save();
                value = left() + right();
                break;
            case OP_SUBTRACT:
                save();
                value = left() - right();
                break;
            case OP_MULTIPLY:
                save();
                value = left() * right();
                break;
            case OP_DIVIDE:
                save();
                value = Divide(left(), right());
                break;
            case OP_GREATER:
                save();
                value = TruthValue(left() > right());
                break;
            case OP_LESS:
                save();
                value = TruthValue(left() < right());
                break;
            case OP_EQUAL:
                save();
                value = TruthValue(left() == right());
                break;
            case OP_AND:
                save();
                value = ToInt32(left()) & ToInt32(right());
                break;
            case OP_OR:
                save();
                value = ToInt32(left()) | ToInt32(right());
                break;
            case OP_XOR:
                save();
                value = ToInt32(left()) ^ ToInt32(right());
                break;
            case OP_NOT:
                save();
                value = ~ToInt32(left());
                break;
            case OP_SQUARE:
                save();
                value = left() * left();
                break;
            case OP_CUBE:
                save();
                value = left() * left() * left();
                break;
            case OP_NEGATE:
                save();
                value = -left();
                break;
            case OP_PERCENT:
                save();
                value = left() * 0.01;
                break;
            case OPCODE_LOAD:
                save();
                value = left();
                break;
            case OPCODE_CALL:  // NOLINT(bugprone-branch-clone): alike only where calls are left out
                if constexpr (WITH_CALLS) {
                    save();
                    value = at->call(context, left(), right());
                    break;
                } else {
                    return Execute<true>(program, context, at, accumulator, result);
                }
            case OPCODE_CALL_WITH:
                if constexpr (WITH_CALLS) {
                    value = at->call(context, accumulator, 0.0);
                    break;
                } else {
                    return Execute<true>(program, context, at, accumulator, result);
                }
            case OPCODE_CHECK_X:
                if (!IsInRange(slots[FormulaProgram::X_SLOT])) {
                    return false;
                }
                ++at;
                continue;
            case OPCODE_JUMP:
                save();
                at = begin + at->b;
                continue;
            case OPCODE_BRANCH:
                save();
                at = begin + (left() != 0.0 ? at->b : at->otherwise);
                continue;
            case OPCODE_CHOOSE:
                save();
                accumulator = left();
                at = begin + at->b;
                continue;
            default:
                if constexpr (WITH_CALLS) {
                    value = ExecuteOther(program, context, *at, accumulator);
                    break;
                } else {
                    return Execute<true>(program, context, at, accumulator, result);
                }
        }
        if (!IsInRange(value)) {
            return false;
        }
        accumulator = value;
        ++at;
    }
    result = accumulator;
    return true;
}

/// The range is checked at every step here too. Division by zero is not linear.
bool ExecuteLinear(const LinearFormula& linear, double x, double& result) {
    const double sum = x + linear.offset;
    const double product = sum * linear.factor;
    const double quotient = product / linear.divisor;
    const double value = quotient + linear.sum;
    if (!IsInRange(x) || !IsInRange(sum) || !IsInRange(product) || !IsInRange(quotient) || !IsInRange(value)) {
        return false;
    }
    result = value;
    return true;
}

/// Collects the steps of a linear program.
class LinearBuilder {
public:
    explicit LinearBuilder(const std::vector<double>& frame) : frame_(frame) {}

    const LinearFormula& Result() const { return linear_; }

    /// False unless the instruction combines the running value with a constant and comes in order.
    bool Take(const FormulaInstruction& instruction) {
        return place_ == Place::Start ? TakeFirst(instruction) : TakeNext(instruction);
    }

private:
    enum class Place { Start, Offset, Factor, Divisor, Sum };

    bool TakeFirst(const FormulaInstruction& instruction) {
        const bool isLeftX = instruction.a == FormulaProgram::X_SLOT;
        const bool isRightX = instruction.b == FormulaProgram::X_SLOT;
        if (instruction.code > OP_DIVIDE || isLeftX == isRightX) {
            return false;
        }
        const bool isCommutative = instruction.code == OP_ADD || instruction.code == OP_MULTIPLY;
        return (isLeftX || isCommutative) &&
               TakeStep(instruction.code, frame_[isLeftX ? instruction.b : instruction.a]);
    }

    bool TakeNext(const FormulaInstruction& instruction) {
        if (instruction.code < OPCODE_ADD_TO || instruction.code > OPCODE_DIVIDE_BY ||
            instruction.b == FormulaProgram::X_SLOT) {
            return false;
        }
        return TakeStep(instruction.code - OPCODE_ADD_TO + OP_ADD, frame_[instruction.b]);
    }

    bool TakeStep(std::uint32_t code, double constant) {
        switch (code) {
            case OP_ADD:
                return place_ == Place::Start ? Put(Place::Offset, linear_.offset, constant)
                                              : Put(Place::Sum, linear_.sum, constant);
            case OP_SUBTRACT:
                return TakeStep(OP_ADD, -constant);
            case OP_MULTIPLY:
                return Put(Place::Factor, linear_.factor, constant);
            case OP_DIVIDE:
                return constant != 0.0 && Put(Place::Divisor, linear_.divisor, constant);
            default:
                return false;
        }
    }

    bool Put(Place place, double& number, double constant) {
        if (place <= place_) {
            return false;
        }
        place_ = place;
        number = constant;
        return true;
    }

    const std::vector<double>& frame_;
    LinearFormula linear_;
    Place place_ = Place::Start;
};

}  // namespace

bool FormulaProgram::Run(FormulaContext& context, double& result) const {
    const double x = context.XValue();
    if (isLinear) {
        return ExecuteLinear(linear, x, result);
    }
    if (!parses || (needsX && !IsInRange(x))) {
        return false;
    }
    frame[X_SLOT] = x;
    return Execute<false>(*this, context, instructions.data(), 0.0, result);
}

void FormulaProgram::FindLinear() {
    LinearBuilder builder(frame);
    isLinear = parses && !instructions.empty() &&
               std::ranges::all_of(instructions, [&](const FormulaInstruction& i) { return builder.Take(i); });
    linear = builder.Result();
}

std::vector<CVelmStringView> FormulaProgram::VariablesRead() const {
    std::vector<CVelmStringView> variables;
    if (needsX) {
        variables.push_back(X_NAME);
    }
    for (const FormulaInstruction& instruction : instructions) {
        if (instruction.code == OPCODE_VARIABLE) {
            variables.push_back(Name(instruction));
        } else if (instruction.code == OPCODE_CHECK_X) {
            variables.push_back(X_NAME);
        }
    }
    return variables;
}

}  // namespace velm
