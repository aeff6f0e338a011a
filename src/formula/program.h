#pragma once

#include <cstdint>
#include <vector>

#include "formula/functions.h"
#include "formula/operators.h"
#include "platform/text.h"

namespace velm {

/// What an instruction does with the accumulator and the slots of the frame: an operator code, or one of these.
/// Unless noted otherwise an instruction first saves the accumulator in slot `saved`, then leaves its result there.
enum InstructionCode : std::uint32_t {
    OPCODE_CALL = OP_COUNT,  ///< the built-in function of slots a and b
    OPCODE_LOAD,             ///< slot a
    OPCODE_VARIABLE,         ///< a named value; a is where its name starts in the program's names, b its length
    OPCODE_CHECK_X,          ///< fails when x has no usable value
    OPCODE_JUMP,             ///< to instruction b
    OPCODE_BRANCH,           ///< on slot a: to instruction b when it is not zero, else to instruction `otherwise`
    OPCODE_CHOOSE,           ///< loads slot a and continues at instruction b
    OPCODE_FAIL,

    // Short forms of the most frequent steps, which operate on the accumulator and do not save it.
    OPCODE_ADD_TO,         ///< accumulator + slot b
    OPCODE_SUBTRACT_FROM,  ///< accumulator - slot b
    OPCODE_MULTIPLY_BY,    ///< accumulator * slot b
    OPCODE_DIVIDE_BY,      ///< accumulator / slot b
    OPCODE_REST_OF,        ///< slot a - accumulator
    OPCODE_QUOTIENT_OF,    ///< slot a / accumulator
    OPCODE_CALL_WITH,      ///< the built-in function of the accumulator
};

struct FormulaInstruction {
    std::uint32_t code = OPCODE_FAIL;
    std::uint32_t saved = 0;
    std::uint32_t a = 0;  ///< left operand
    std::uint32_t b = 0;  ///< right operand
    std::uint32_t otherwise = 0;
    FunctionCall call = nullptr;
};

/// ((x + offset) * factor) / divisor + sum: most conversion formulas are no more than this.
struct LinearFormula {
    double offset = -0.0;  // the defaults change no value, not even the sign of a zero
    double factor = 1.0;
    double divisor = 1.0;
    double sum = -0.0;
};

/// A compiled formula: straight-line instructions over a frame of values, with forward jumps for conditionals only.
/// Evaluation does not recurse.
struct FormulaProgram {
    static constexpr std::uint32_t X_SLOT = 0;
    static constexpr std::uint32_t UNUSED_SLOT = 1;
    static constexpr std::uint32_t FIRST_FREE_SLOT = 2;

    std::vector<FormulaInstruction> instructions;
    CVelmString names;
    bool parses = false;
    bool needsX = false;      ///< whatever is evaluated, x is
    bool isVolatile = false;  ///< calls a function that is
    bool isLinear = false;    ///< `linear` does the same as the instructions
    LinearFormula linear;

    /// x, constants and intermediate results. Every result is written before it is read, so runs do not affect one
    /// another; kept because refilling it costs as much as evaluating.
    mutable std::vector<double> frame;

    /// Finds out whether the program is linear.
    void FindLinear();

    /// The variables it may read, x included, one entry per use.
    std::vector<CVelmStringView> VariablesRead() const;

    /// The name that an OPCODE_VARIABLE reads.
    CVelmStringView Name(const FormulaInstruction& variable) const {
        return CVelmStringView(names).substr(variable.a, variable.b);
    }

    /// False, with `result` untouched, when the evaluation fails.
    bool Run(FormulaContext& context, double& result) const;
};

/// Every step's value must lie within this limit, both signs; a NaN does not.
inline constexpr double VALUE_LIMIT = 1e301;

}  // namespace velm
