#pragma once

#include <cstdint>
#include <vector>

#include "formula/formula_token.h"
#include "formula/program.h"

namespace velm {

/// Turns formula texts into programs. Reusing a compiler reuses its memory.
class FormulaCompiler {
public:
    /// Lower-cases, parses and translates. The program does not refer to the text afterwards.
    void Compile(CVelmStringView text, FormulaProgram& program);

    /// The tokens of a text, lower-cased first; valid until the next call.
    const FormulaTokenList& Parse(CVelmStringView text);

private:
    /// An operator or call with operands still pending.
    struct Pending {
        const FormulaToken* token = nullptr;
        std::int32_t missing = 0;      ///< operands still to come
        std::uint32_t rightSlot = 0;   ///< of the operand that came first
        bool isConditional = false;    ///< the rest is the conditional's:
        std::uint32_t entry = 0;       ///< the jump in front of its arguments,
        std::uint32_t lastChoice = 0;  ///< the last instruction to be sent to its end, chained through b,
        std::uint32_t part = 0;        ///< where the argument in hand begins,
        std::uint32_t valuePart = 0;   ///< where the value read last begins,
        std::uint32_t elsePart = 0;    ///< and where to go on when the condition is false.
    };

    std::uint32_t AddSlot(double value = 0.0);
    std::uint32_t NextInstruction() const { return static_cast<std::uint32_t>(program_->instructions.size()); }
    FormulaInstruction& Emit(std::uint32_t code);
    FormulaInstruction& EmitSaving(std::uint32_t code);

    void Translate();
    void Open(const FormulaToken& token);
    std::uint32_t TranslateLeaf(const FormulaToken& token);
    std::uint32_t TranslateName(const FormulaToken& token);
    std::uint32_t TranslateX();
    void Deliver(std::uint32_t operand);
    void Close(const Pending& node, std::uint32_t left);
    void EmitOperator(std::uint32_t code, std::uint32_t left, std::uint32_t right);
    bool EmitShort(std::uint32_t code, std::uint32_t left, std::uint32_t right);
    void EmitCall(const FunctionRow& function, std::uint32_t first, std::uint32_t second);
    std::uint32_t SaveOperand(FormulaInstruction& instruction, std::uint32_t operand);

    void OpenConditional(Pending& node);
    void AddConditionalPart(Pending& node, std::uint32_t operand);
    void CloseConditional(const Pending& node);

    FormulaTokenList list_;
    std::vector<FormulaToken> stack_;
    std::vector<Pending> pending_;
    FormulaProgram* program_ = nullptr;
    std::size_t holder_ = 0;  ///< the pending node whose right operand is in the accumulator
    std::uint32_t openConditionals_ = 0;
};

}  // namespace velm
