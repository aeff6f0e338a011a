#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/text.h"

namespace velm {

/// A longer token is a syntax error.
inline constexpr std::size_t TOKEN_MAX_LENGTH = 270;

/// The last character of a number in another base than ten.
inline constexpr char16_t HEX_SUFFIX = u'h';
inline constexpr char16_t OCTAL_SUFFIX = u'o';
inline constexpr char16_t BINARY_SUFFIX = u'b';

/// Extracts the next word or character of `text` at `position` and advances past it, skipping blanks. False at the end
/// of the text. `token` is a part of `text`.
bool NextToken(CVelmStringView text, std::size_t& position, CVelmStringView& token);

/// Reads a whole word as a number: decimal, or in another base by its suffix; lower case but for the exponent. False,
/// with `value` untouched, when it is none. Deliberate: "." reads as 0, "-" as -0, "1." as 1.
bool ScanNumber(CVelmStringView word, double& value);

/// True for a single operator character; "-" yields the infix code. Deliberate: only the low 8 bits of the character
/// count, so any character that shares them with an operator is that operator.
bool IsOperatorToken(CVelmStringView token, std::int32_t& code);

/// A to Z, a to z and "_"; nothing else is a letter.
bool IsFormulaLetter(char16_t unit);

}  // namespace velm
