#include "tallyra/key_table.h"

#include <array>

namespace velm {
namespace {

constexpr CalculatorKey Insert(const char16_t* caption, const char16_t* text) {
    return {caption, KeyAction::Insert, text};
}
constexpr CalculatorKey Insert(const char16_t* text) {
    return Insert(text, text);
}

constexpr std::array KEYS = {
    Insert(u"sin", u"sin("),
    Insert(u"cos", u"cos("),
    Insert(u"tan", u"tan("),
    Insert(u"ln", u"ln("),
    Insert(u"lg", u"lg("),
    Insert(u"sqrt", u"sqrt("),

    Insert(u"asin", u"asin("),
    Insert(u"acos", u"acos("),
    Insert(u"atan", u"atan("),
    Insert(u"x\u00B2", u"\u00B2"),
    Insert(u"^"),
    Insert(u"!"),

    Insert(u"7"),
    Insert(u"8"),
    Insert(u"9"),
    Insert(u"/"),
    Insert(u"("),
    Insert(u")"),

    Insert(u"4"),
    Insert(u"5"),
    Insert(u"6"),
    Insert(u"*"),
    Insert(u"pi"),
    Insert(u"ans"),

    Insert(u"1"),
    Insert(u"2"),
    Insert(u"3"),
    Insert(u"-"),
    Insert(u"%"),
    CalculatorKey{u"Del", KeyAction::Backspace, u""},

    Insert(u"0"),
    Insert(u"."),
    Insert(u"e"),
    Insert(u"+"),
    CalculatorKey{u"C", KeyAction::Clear, u""},
    CalculatorKey{u"=", KeyAction::Compute, u""},
};
static_assert(KEYS.size() % KEY_COLUMNS == 0);

}  // namespace

std::span<const CalculatorKey> CalculatorKeys() {
    return KEYS;
}

}  // namespace velm
