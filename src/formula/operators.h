#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace velm {

/// The operator codes, which are also the evaluator's.
enum OperatorCode : std::int32_t {
    OP_ADD,
    OP_SUBTRACT,
    OP_MULTIPLY,
    OP_DIVIDE,
    OP_REMAINDER,
    OP_POWER,
    OP_GREATER,
    OP_LESS,
    OP_EQUAL,
    OP_AND,
    OP_OR,
    OP_XOR,
    OP_NOT,
    OP_FACTORIAL,
    OP_SQUARE,
    OP_CUBE,
    OP_NEGATE,
    OP_PERCENT,
    OP_COUNT
};

enum class OperatorPlace : std::uint8_t { Infix, Prefix, Postfix };

struct OperatorRow {
    unsigned char character;
    std::int8_t precedence;
    OperatorPlace place;

    constexpr std::int32_t OperandCount() const { return place == OperatorPlace::Infix ? 2 : 1; }
};

/// Indexed by operator code. "-" stands twice: the parser turns the infix code into the prefix one.
inline constexpr std::array<OperatorRow, OP_COUNT> OPERATORS = {{
    {'+', 2, OperatorPlace::Infix},
    {'-', 2, OperatorPlace::Infix},
    {'*', 3, OperatorPlace::Infix},
    {'/', 3, OperatorPlace::Infix},
    {'\\', 3, OperatorPlace::Infix},
    {'^', 4, OperatorPlace::Infix},
    {'>', 1, OperatorPlace::Infix},
    {'<', 1, OperatorPlace::Infix},
    {'=', 1, OperatorPlace::Infix},
    {'&', 3, OperatorPlace::Infix},
    {'|', 3, OperatorPlace::Infix},
    {'#', 3, OperatorPlace::Infix},
    {'~', 4, OperatorPlace::Prefix},
    {'!', 4, OperatorPlace::Postfix},
    {0xB2, 4, OperatorPlace::Postfix},  // superscript two
    {0xB3, 4, OperatorPlace::Postfix},  // superscript three
    {'-', 5, OperatorPlace::Prefix},
    {'%', 4, OperatorPlace::Postfix},
}};

}  // namespace velm
