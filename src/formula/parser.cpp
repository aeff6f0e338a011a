#include "formula/parser.h"

#include <limits>

#include "formula/operators.h"
#include "formula/tokenizer.h"

namespace velm {

namespace {

/// The class of the previous token.
enum class ParseState {
    Start,          ///< the beginning, or after "(" or ","
    AfterOperator,  ///< after an infix or prefix operator
    AfterNumber,    ///< after a number, or a postfix operator that followed one
    AfterClose,     ///< after ")", or a postfix operator that followed a name or ")"
    AfterName,
};

/// An operator-precedence parser: operators, names and parentheses stay on the stack until their operands are output.
class FormulaParser {
public:
    FormulaParser(FormulaTokenList& list, std::vector<FormulaToken>& stack)
        : text_(list.text), output_(list.tokens), stack_(stack) {
        output_.clear();
        stack_.clear();
    }

    void Parse() {
        if (text_.size() > std::numeric_limits<std::int32_t>::max()) {
            PutError();  // token positions and argument counts are 32-bit
            return;
        }
        std::size_t behind = 0;
        CVelmStringView token;
        while (NextToken(text_, behind, token)) {
            start_ = behind - token.size();
            if (token.size() > TOKEN_MAX_LENGTH || !AcceptToken(token)) {
                PutError();
                return;
            }
        }
        start_ = text_.size();
        Finish();
    }

private:
    bool AcceptToken(CVelmStringView token) {
        std::int32_t code = 0;
        if (IsOperatorToken(token, code)) {
            return AcceptOperator(code);
        }
        double number = 0.0;
        if (ScanNumber(token, number)) {
            return AcceptNumber(token, number);
        }
        if (IsFormulaLetter(token[0])) {
            return AcceptName(token);
        }
        switch (token[0]) {
            case u'(':
                return AcceptOpen();
            case u')':
                return AcceptClose();
            case u',':
                return AcceptComma();
            default:
                return false;
        }
    }

    bool ExpectsOperand() const { return state_ == ParseState::Start || state_ == ParseState::AfterOperator; }

    bool AcceptOperator(std::int32_t code) {
        if (ExpectsOperand()) {
            return AcceptPrefix(code == OP_SUBTRACT ? OP_NEGATE : code);
        }
        switch (OperatorOf(code).place) {
            case OperatorPlace::Infix:
                return AcceptInfix(code);
            case OperatorPlace::Postfix:
                return AcceptPostfix(code);
            default:
                return false;
        }
    }

    bool AcceptPrefix(std::int32_t code) {
        if (OperatorOf(code).place != OperatorPlace::Prefix) {
            return false;
        }
        stack_.push_back(OperatorToken(code));
        state_ = ParseState::AfterOperator;
        return true;
    }

    bool AcceptInfix(std::int32_t code) {
        MoveNameOnTop();
        while (TopIs(FormulaTokenKind::Operator) &&
               OperatorOf(stack_.back().index).precedence >= OperatorOf(code).precedence) {
            MoveTop();
        }
        stack_.push_back(OperatorToken(code));
        state_ = ParseState::AfterOperator;
        return true;
    }

    /// A postfix operator applies immediately to the operand just read, ahead of every pending operator.
    bool AcceptPostfix(std::int32_t code) {
        if (state_ != ParseState::AfterNumber) {
            MoveNameOnTop();
            state_ = ParseState::AfterClose;
        }
        output_.push_back(OperatorToken(code));
        return true;
    }

    bool AcceptNumber(CVelmStringView word, double number) {
        if (!ExpectsOperand()) {
            return false;
        }
        FormulaToken token = MakeToken(FormulaTokenKind::Number, word.size());
        token.number = number;
        output_.push_back(token);
        state_ = ParseState::AfterNumber;
        return true;
    }

    bool AcceptName(CVelmStringView name) {
        if (!ExpectsOperand()) {
            return false;
        }
        stack_.push_back(MakeToken(FormulaTokenKind::Identifier, name.size()));
        state_ = ParseState::AfterName;
        return true;
    }

    bool AcceptOpen() {
        if (state_ == ParseState::AfterName) {
            stack_.push_back(MakeToken(FormulaTokenKind::CallParen, 1));
        } else if (ExpectsOperand()) {
            stack_.push_back(MakeToken(FormulaTokenKind::Paren, 1));
        } else {
            return false;
        }
        state_ = ParseState::Start;
        return true;
    }

    /// The name of a call stays on the stack until the next operator or the end.
    bool AcceptClose() {
        if (ExpectsOperand()) {
            return false;
        }
        while (!TopIs(FormulaTokenKind::CallParen) && !TopIs(FormulaTokenKind::Paren)) {
            if (stack_.empty()) {
                return false;
            }
            MoveTop();
        }
        if (TopIs(FormulaTokenKind::CallParen)) {
            CountArgument();
        }
        stack_.pop_back();
        state_ = ParseState::AfterClose;
        return true;
    }

    bool AcceptComma() {
        if (ExpectsOperand()) {
            return false;
        }
        while (!TopIs(FormulaTokenKind::CallParen)) {
            if (stack_.empty() || TopIs(FormulaTokenKind::Paren)) {
                return false;
            }
            MoveTop();
        }
        CountArgument();
        state_ = ParseState::Start;
        return true;
    }

    void Finish() {
        if (stack_.empty()) {
            return;
        }
        if (state_ == ParseState::AfterOperator) {
            PutError();  // the pending operators still follow and fail on it
        } else {
            MoveNameOnTop();
        }
        while (TopIs(FormulaTokenKind::Operator)) {
            MoveTop();
        }
        if (!stack_.empty()) {
            start_ = stack_.back().position;
            PutError();
        }
    }

    static const OperatorRow& OperatorOf(std::int32_t code) { return OPERATORS[static_cast<std::size_t>(code)]; }

    FormulaToken MakeToken(FormulaTokenKind kind, std::size_t length) const {
        FormulaToken token;
        token.kind = kind;
        token.position = static_cast<std::uint32_t>(start_);
        token.length = static_cast<std::uint32_t>(length);
        return token;
    }

    FormulaToken OperatorToken(std::int32_t code) const {
        FormulaToken token = MakeToken(FormulaTokenKind::Operator, 1);
        token.index = code;
        token.operandCount = OperatorOf(code).OperandCount();
        return token;
    }

    bool TopIs(FormulaTokenKind kind) const { return !stack_.empty() && stack_.back().kind == kind; }

    void MoveTop() {
        output_.push_back(stack_.back());
        stack_.pop_back();
    }

    void MoveNameOnTop() {
        if (TopIs(FormulaTokenKind::Identifier)) {
            MoveTop();
        }
    }

    /// The name of a call lies beneath its parenthesis, which is on top.
    void CountArgument() { ++stack_[stack_.size() - 2].operandCount; }

    void PutError() { output_.push_back(MakeToken(FormulaTokenKind::Error, 0)); }

    CVelmStringView text_;
    std::vector<FormulaToken>& output_;
    std::vector<FormulaToken>& stack_;
    std::size_t start_ = 0;  ///< where the token in hand starts
    ParseState state_ = ParseState::Start;
};

}  // namespace

const FormulaToken* FormulaTokenList::FindError() const {
    for (const FormulaToken& token : tokens) {
        if (token.kind == FormulaTokenKind::Error) {
            return &token;
        }
    }
    return nullptr;
}

FormulaTokenList ParseFormula(CVelmStringView text) {
    FormulaTokenList list;
    list.text = text;
    std::vector<FormulaToken> stack;
    ParseFormula(list, stack);
    return list;
}

void ParseFormula(FormulaTokenList& list, std::vector<FormulaToken>& stack) {
    FormulaParser(list, stack).Parse();
}

}  // namespace velm
