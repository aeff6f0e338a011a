#include "formula/compiler.h"

#include <cmath>

#include "formula/formula_context.h"
#include "formula/parser.h"

namespace velm {

namespace {

constexpr std::uint32_t NO_INSTRUCTION = UINT32_MAX;
constexpr std::int32_t MIN_CONDITIONAL_ARGUMENTS = 3;

/// An operand is a slot of the frame, or this.
constexpr std::uint32_t ACCUMULATOR = UINT32_MAX;
constexpr std::size_t NO_HOLDER = SIZE_MAX;

}  // namespace

const FormulaTokenList& FormulaCompiler::Parse(CVelmStringView text) {
    list_.text = text;
    for (char16_t& unit : list_.text) {
        unit = ToLowerAscii(unit);
    }
    ParseFormula(list_, stack_);
    return list_;
}

void FormulaCompiler::Compile(CVelmStringView text, FormulaProgram& program) {
    program_ = &program;
    program.instructions.clear();
    program.names.clear();
    program.frame.assign(FormulaProgram::FIRST_FREE_SLOT, 0.0);
    program.needsX = false;
    program.isVolatile = false;
    program.isLinear = false;
    program.parses = !Parse(text).IsEmpty() && !list_.HasError();
    if (program.parses) {
        Translate();
    }
    program_ = nullptr;
}

std::uint32_t FormulaCompiler::AddSlot(double value) {
    program_->frame.push_back(value);
    return static_cast<std::uint32_t>(program_->frame.size() - 1);
}

FormulaInstruction& FormulaCompiler::Emit(std::uint32_t code) {
    FormulaInstruction& instruction = program_->instructions.emplace_back();
    instruction.code = code;
    instruction.saved = FormulaProgram::UNUSED_SLOT;
    return instruction;
}

/// An instruction that does not read the accumulator first spills it to the slot where its consumer expects it.
FormulaInstruction& FormulaCompiler::EmitSaving(std::uint32_t code) {
    FormulaInstruction& instruction = Emit(code);
    if (holder_ != NO_HOLDER) {
        instruction.saved = AddSlot();
        pending_[holder_].rightSlot = instruction.saved;
        holder_ = NO_HOLDER;
    }
    return instruction;
}

/// Reads the list from its head and emits an instruction once its operands are complete, so the right operand is
/// evaluated before the left one and the last argument before the first.
void FormulaCompiler::Translate() {
    pending_.clear();
    holder_ = NO_HOLDER;
    openConditionals_ = 0;
    std::size_t left = list_.tokens.size();
    do {
        const FormulaToken& token = list_.tokens[--left];
        if (token.operandCount > 0) {
            Open(token);
        } else {
            Deliver(TranslateLeaf(token));
        }
    } while (left > 0 && !pending_.empty());
}

void FormulaCompiler::Open(const FormulaToken& token) {
    const bool isConditional = token.kind == FormulaTokenKind::Identifier && list_.Name(token) == CONDITIONAL_NAME;
    Pending node;
    node.token = &token;
    node.missing = token.operandCount;
    node.isConditional = isConditional;
    if (isConditional) {
        OpenConditional(node);
    }
    pending_.push_back(node);
}

/// A number beyond the limit fails, but only if it is evaluated.
std::uint32_t FormulaCompiler::TranslateLeaf(const FormulaToken& token) {
    if (token.kind == FormulaTokenKind::Identifier) {
        return TranslateName(token);
    }
    if (!(std::fabs(token.number) <= VALUE_LIMIT)) {
        EmitSaving(OPCODE_FAIL);
    }
    return AddSlot(token.number);
}

std::uint32_t FormulaCompiler::TranslateName(const FormulaToken& token) {
    const CVelmStringView name = list_.Name(token);
    if (name == X_NAME) {
        return TranslateX();
    }
    if (const FunctionRow* function = FindFunction(name, 0)) {
        EmitCall(*function, FormulaProgram::UNUSED_SLOT, FormulaProgram::UNUSED_SLOT);
    } else if (name == CONDITIONAL_NAME) {
        EmitSaving(OPCODE_FAIL);
    } else {
        FormulaInstruction& instruction = EmitSaving(OPCODE_VARIABLE);
        instruction.a = static_cast<std::uint32_t>(program_->names.size());
        instruction.b = token.length;
        program_->names += name;
    }
    return ACCUMULATOR;
}

/// Outside of conditionals one check before the run serves every use of x.
std::uint32_t FormulaCompiler::TranslateX() {
    if (openConditionals_ == 0) {
        program_->needsX = true;
    } else {
        Emit(OPCODE_CHECK_X);
    }
    return FormulaProgram::X_SLOT;
}

/// Passes an operand to the pending operator or call, and each completed result on to the next one.
void FormulaCompiler::Deliver(std::uint32_t operand) {
    while (!pending_.empty()) {
        Pending& node = pending_.back();
        --node.missing;
        if (node.isConditional) {
            AddConditionalPart(node, operand);
        }
        if (node.missing > 0) {
            node.rightSlot = operand;
            holder_ = operand == ACCUMULATOR && !node.isConditional ? pending_.size() - 1 : holder_;
            return;
        }
        Close(node, operand);
        pending_.pop_back();
        operand = ACCUMULATOR;
    }
    if (operand != ACCUMULATOR) {
        EmitSaving(OPCODE_LOAD).a = operand;
    }
}

void FormulaCompiler::Close(const Pending& node, std::uint32_t left) {
    if (node.isConditional) {
        CloseConditional(node);
        return;
    }
    if (node.rightSlot == ACCUMULATOR) {
        holder_ = NO_HOLDER;
    }
    const FormulaToken& token = *node.token;
    if (token.kind == FormulaTokenKind::Operator) {
        EmitOperator(static_cast<std::uint32_t>(token.index), left, node.rightSlot);
    } else if (const FunctionRow* function = FindFunction(list_.Name(token), token.operandCount)) {
        EmitCall(*function, left, node.rightSlot);
    } else {
        EmitSaving(OPCODE_FAIL);
    }
}

void FormulaCompiler::EmitOperator(std::uint32_t code, std::uint32_t left, std::uint32_t right) {
    if (EmitShort(code, left, right)) {
        return;
    }
    // The square is a multiplication, as in the evaluator's power.
    const bool isSquare = code == OP_POWER && right != ACCUMULATOR && program_->frame[right] == 2.0;
    FormulaInstruction& instruction = EmitSaving(isSquare ? static_cast<std::uint32_t>(OP_SQUARE) : code);
    instruction.a = SaveOperand(instruction, left);
    instruction.b = SaveOperand(instruction, right);
}

bool FormulaCompiler::EmitShort(std::uint32_t code, std::uint32_t left, std::uint32_t right) {
    if (code > OP_DIVIDE || (left != ACCUMULATOR && right != ACCUMULATOR)) {
        return false;
    }
    const bool isCommutative = code == OP_ADD || code == OP_MULTIPLY;
    if (left == ACCUMULATOR || isCommutative) {
        Emit(OPCODE_ADD_TO + code).b = left == ACCUMULATOR ? right : left;
    } else {
        Emit(code == OP_SUBTRACT ? OPCODE_REST_OF : OPCODE_QUOTIENT_OF).a = left;
    }
    return true;
}

void FormulaCompiler::EmitCall(const FunctionRow& function, std::uint32_t first, std::uint32_t second) {
    program_->isVolatile = program_->isVolatile || function.isVolatile;
    if (function.arity == 1 && first == ACCUMULATOR) {
        Emit(OPCODE_CALL_WITH).call = function.call;
        return;
    }
    FormulaInstruction& instruction = EmitSaving(OPCODE_CALL);
    instruction.a = SaveOperand(instruction, first);
    instruction.b = SaveOperand(instruction, second);
    instruction.call = function.call;
}

/// The slot of an operand; an operand in the accumulator is saved first.
std::uint32_t FormulaCompiler::SaveOperand(FormulaInstruction& instruction, std::uint32_t operand) {
    if (operand != ACCUMULATOR) {
        return operand;
    }
    instruction.saved = AddSlot();
    return instruction.saved;
}

/// Arguments arrive and are emitted last first; a leading jump goes to the first condition, and each part ends in a
/// jump to the next. A wrong number of arguments fails at evaluation.
void FormulaCompiler::OpenConditional(Pending& node) {
    ++openConditionals_;
    const bool wellFormed = node.missing >= MIN_CONDITIONAL_ARGUMENTS && node.missing % 2 != 0;
    node.entry = NextInstruction();
    node.lastChoice = NO_INSTRUCTION;
    EmitSaving(wellFormed ? OPCODE_JUMP : OPCODE_FAIL);
    node.part = NextInstruction();
}

void FormulaCompiler::AddConditionalPart(Pending& node, std::uint32_t operand) {
    const std::int32_t index = node.missing;
    const bool isLast = index + 1 == node.token->operandCount;
    const bool isValue = isLast || index % 2 != 0;
    const std::uint32_t at = NextInstruction();
    FormulaInstruction& instruction = EmitSaving(isValue ? OPCODE_CHOOSE : OPCODE_BRANCH);
    instruction.a = SaveOperand(instruction, operand);
    if (isValue) {
        instruction.b = node.lastChoice;
        node.lastChoice = at;
        (isLast ? node.elsePart : node.valuePart) = node.part;
    } else {
        instruction.b = node.valuePart;
        instruction.otherwise = node.elsePart;
        node.elsePart = node.part;
    }
    node.part = NextInstruction();
}

void FormulaCompiler::CloseConditional(const Pending& node) {
    --openConditionals_;
    const std::uint32_t end = NextInstruction();
    program_->instructions[node.entry].b = node.elsePart;
    for (std::uint32_t choice = node.lastChoice; choice != NO_INSTRUCTION;) {
        std::uint32_t& link = program_->instructions[choice].b;
        choice = link;
        link = end;
    }
}

}  // namespace velm
