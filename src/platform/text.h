#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velm {

/// All text of the program is UTF-16. A text with no content is the empty string.
using CVelmString = std::u16string;
using CVelmStringView = std::u16string_view;

/// Lower-cases A to Z only; every other unit stays. This is the letter case of the formula language.
CVelmString ToLowerAscii(CVelmStringView text);
constexpr char16_t ToLowerAscii(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
}

/// 0 to 9 only.
constexpr bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

/// The decimal digits of a whole number, "-" before a negative one.
CVelmString IntegerText(std::int64_t number);

/// Folds the letter case of one UTF-16 unit, as file names are compared. Surrogates stay as they are.
char16_t FoldCase(char16_t unit);

/// The same of every unit: two texts that differ only in letter case become equal.
CVelmString FoldCase(CVelmStringView text);

/// Equal without regard to letter case, unit by unit through FoldCase.
bool EqualsNoCase(CVelmStringView a, CVelmStringView b);
bool StartsWithNoCase(CVelmStringView text, CVelmStringView prefix);
bool EndsWithNoCase(CVelmStringView text, CVelmStringView suffix);

/// Appends a code point, at most U+10FFFF, as one unit or a pair of surrogates.
void AppendCodePoint(CVelmString& text, char32_t code);

/// UTF-8 exists only outside the engine: at the terminal, in text sources and in POSIX paths.
/// Bytes that are not UTF-8 become U+FFFD, and so does a lone surrogate on the way out.
CVelmString FromUtf8(std::string_view text);
std::string ToUtf8(CVelmStringView text);

}  // namespace velm
