#pragma once

#include <cstddef>
#include <optional>

#include "platform/text.h"

namespace velm {

/// A number as people type it, and where it ends.
struct TypedNumber {
    double value = 0.0;
    std::size_t end = 0;
    bool isWhole = false;  ///< digits alone
};

struct NumberRules {
    bool groupsByCommas = true;  ///< false where a comma may separate arguments
    bool groupsByBlanks = true;  ///< false where numbers follow each other
    bool hasSuffixes = false;    ///< "101b", "17o" and "12h" are numbers of a base rather than bits and hours
};

/// Reads "1,234.5", "20 000", "1e+6", "0xff", "0b101", "0ffh", "½" and "2 1/2" at a position. Nothing when no number
/// begins there.
std::optional<TypedNumber> ReadTypedNumber(CVelmStringView text, std::size_t position, const NumberRules& rules);

/// Whether a number could begin with the character.
bool BeginsNumber(char16_t unit);

/// A blank in a question, the thin and unbreakable ones included.
bool IsQuestionBlank(char16_t unit);

/// The position of the next character that is no blank.
std::size_t SkipBlanks(CVelmStringView text, std::size_t position);

}  // namespace velm
