#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace velm {

/// All text of the program is UTF-16.
using CVelmString = std::u16string;
using CVelmStringView = std::u16string_view;

/// Lower-cases A to Z only, as the formula language does.
CVelmString ToLowerAscii(CVelmStringView text);
constexpr char16_t ToLowerAscii(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
}

/// 0 to 9 only.
constexpr bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

/// A to Z and a to z only.
constexpr bool IsLetter(char16_t unit) {
    return ToLowerAscii(unit) >= u'a' && ToLowerAscii(unit) <= u'z';
}

/// The value of a hexadecimal digit in either letter case; -1 for anything else.
constexpr int HexDigitValue(char16_t unit) {
    const char16_t lower = ToLowerAscii(unit);
    return IsDigit(unit) ? unit - u'0' : lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

/// Removes the units of `around` from both ends.
template <typename Unit>
constexpr std::basic_string_view<Unit> Trim(std::basic_string_view<Unit> text,
                                            std::type_identity_t<std::basic_string_view<Unit>> around) {
    text = text.substr(0, text.find_last_not_of(around) + 1);
    return text.substr(std::min(text.find_first_not_of(around), text.size()));
}

/// A whole number in decimal.
CVelmString IntegerText(std::int64_t number);

/// Folds the letter case of one UTF-16 unit, as file names are compared. Surrogates do not change.
char16_t FoldCase(char16_t unit);

/// Folds every unit: texts that differ only in letter case become equal.
CVelmString FoldCase(CVelmStringView text);

/// Equal without regard to letter case, unit by unit through FoldCase.
bool EqualsNoCase(CVelmStringView a, CVelmStringView b);
bool StartsWithNoCase(CVelmStringView text, CVelmStringView prefix);
bool EndsWithNoCase(CVelmStringView text, CVelmStringView suffix);

/// Appends a code point, at most U+10FFFF, as one unit or a surrogate pair.
void AppendCodePoint(CVelmString& text, char32_t code);

/// The byte order mark that some programs write before UTF-8 text.
constexpr std::string_view UTF8_MARK = "\xEF\xBB\xBF";

/// UTF-8 exists only outside the engine: at the terminal, in text sources and in POSIX paths. Invalid UTF-8 becomes
/// U+FFFD, and so does a lone surrogate on output.
CVelmString FromUtf8(std::string_view text);
std::string ToUtf8(CVelmStringView text);

}  // namespace velm
