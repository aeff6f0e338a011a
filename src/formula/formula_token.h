#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/text.h"

namespace velm {

/// The numbers are fixed: 0 means error.
enum class FormulaTokenKind : std::int32_t {
    Error = 0,
    Number = 1,
    Operator = 2,
    Identifier = 3,
    Parameter = 4,   ///< an argument of a definition; the parser never makes one
    CallParen = 10,  ///< "(" directly after an identifier, on the parser's stack only
    Paren = 11,      ///< any other "(", on the parser's stack only
};

struct FormulaToken {
    FormulaTokenKind kind = FormulaTokenKind::Error;
    std::int32_t index = 0;         ///< operator code
    std::int32_t operandCount = 0;  ///< operands of an operator, arguments of a call; 0 for a plain name
    std::uint32_t position = 0;     ///< where the token starts in the formula text
    std::uint32_t length = 0;       ///< of its text; an identifier's name is this part of the formula text
    double number = 0.0;            ///< value of a number
};

/// A parsed formula: conceptually a linked list built by prepending tokens; stored as a vector whose last element is
/// the head, so that tokens need no allocation of their own. Names are parts of `text` for the same reason.
struct FormulaTokenList {
    CVelmString text;                  ///< the formula as it was parsed
    std::vector<FormulaToken> tokens;  ///< read from the back: prefix order from the root, right operand first

    bool IsEmpty() const { return tokens.empty(); }
    const FormulaToken& Head() const { return tokens.back(); }

    /// True when the formula does not parse, a trailing operator included; `*FindError()` is then the position.
    bool HasError() const { return FindError() != nullptr; }
    const FormulaToken* FindError() const;

    CVelmStringView Name(const FormulaToken& token) const {
        return CVelmStringView(text).substr(token.position, token.length);
    }
};

}  // namespace velm
