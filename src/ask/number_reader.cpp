#include "ask/number_reader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "formula/tokenizer.h"

namespace velm {

namespace {

struct VulgarFraction {
    char16_t character;
    int numerator;
    int denominator;
};

constexpr std::array FRACTIONS = {VulgarFraction{u'½', 1, 2}, VulgarFraction{u'¼', 1, 4}, VulgarFraction{u'¾', 3, 4},
                                  VulgarFraction{u'⅓', 1, 3}, VulgarFraction{u'⅔', 2, 3}, VulgarFraction{u'⅕', 1, 5},
                                  VulgarFraction{u'⅖', 2, 5}, VulgarFraction{u'⅗', 3, 5}, VulgarFraction{u'⅘', 4, 5},
                                  VulgarFraction{u'⅙', 1, 6}, VulgarFraction{u'⅚', 5, 6}, VulgarFraction{u'⅛', 1, 8},
                                  VulgarFraction{u'⅜', 3, 8}, VulgarFraction{u'⅝', 5, 8}, VulgarFraction{u'⅞', 7, 8},
                                  VulgarFraction{u'⅐', 1, 7}, VulgarFraction{u'⅑', 1, 9}, VulgarFraction{u'⅒', 1, 10}};

const VulgarFraction* FindFraction(char16_t unit) {
    const auto* const found = std::ranges::find(FRACTIONS, unit, &VulgarFraction::character);
    return found == FRACTIONS.end() ? nullptr : found;
}

std::size_t SkipDigits(CVelmStringView text, std::size_t at) {
    while (at < text.size() && IsDigit(text[at])) {
        ++at;
    }
    return at;
}

char16_t At(CVelmStringView text, std::size_t at) {
    return at < text.size() ? text[at] : u'\0';
}

bool IsThinBlank(char16_t unit) {
    return unit == 0xA0 || unit == 0x2009 || unit == 0x202F;
}

/// The end of a group of three digits behind a separator; the position itself when there is none.
std::size_t SkipGroup(CVelmStringView text, std::size_t at) {
    const std::size_t end = SkipDigits(text, at + 1);
    const bool isGroup = end == at + 4 && !IsLetter(At(text, end));
    return isGroup ? end : at;
}

/// The whole digits, in groups where the rules have them; the digits alone go to `digits`.
std::size_t ReadWhole(CVelmStringView text, std::size_t at, const NumberRules& rules, CVelmString& digits) {
    static constexpr std::size_t LONGEST_FIRST_GROUP = 3;
    std::size_t end = SkipDigits(text, at);
    digits = text.substr(at, end - at);
    if (end - at > LONGEST_FIRST_GROUP || end == at) {
        return end;
    }
    const char16_t separator = At(text, end);
    const bool separates = (separator == u',' && rules.groupsByCommas) || IsThinBlank(separator) ||
                           (separator == u' ' && rules.groupsByBlanks && digits[0] != u'0');
    while (separates && At(text, end) == separator) {
        const std::size_t next = SkipGroup(text, end);
        if (next == end) {
            break;
        }
        digits += text.substr(end + 1, next - end - 1);
        end = next;
    }
    return end;
}

/// The formula language's own form: 0ffh, 101b, 17o.
std::optional<TypedNumber> ReadWithSuffix(CVelmStringView text, std::size_t at) {
    std::size_t end = at;
    while (end < text.size() && (IsDigit(text[end]) || IsLetter(text[end]))) {
        ++end;
    }
    TypedNumber number{0.0, end, false};
    const CVelmString word = ToLowerAscii(text.substr(at, end - at));
    const bool hasSuffix = word.size() > 1 && (word.back() == u'b' || word.back() == u'o' || word.back() == u'h');
    return hasSuffix && ScanNumber(word, number.value) ? std::optional(number) : std::nullopt;
}

std::optional<TypedNumber> ReadInBase(CVelmStringView text, std::size_t at) {
    static constexpr std::array<std::pair<char16_t, char16_t>, 3> BASES = {{{u'x', u'h'}, {u'b', u'b'}, {u'o', u'o'}}};
    const char16_t letter = ToLowerAscii(At(text, at + 1));
    for (const auto& [prefix, suffix] : BASES) {
        if (At(text, at) != u'0' || letter != prefix) {
            continue;
        }
        std::size_t end = at + 2;
        while (end < text.size() && (IsDigit(text[end]) || IsLetter(text[end]))) {
            ++end;
        }
        TypedNumber number{0.0, end, false};
        const CVelmString word = u"0" + ToLowerAscii(text.substr(at + 2, end - at - 2)) + suffix;
        if (end > at + 2 && ScanNumber(word, number.value)) {
            return number;
        }
    }
    // The formula language's own form, where it can be no number with a unit: 0ffh.
    std::size_t end = at;
    bool hasLetter = false;
    while (HexDigitValue(At(text, end)) >= 0) {
        hasLetter = hasLetter || IsLetter(text[end]);
        ++end;
    }
    TypedNumber number{0.0, end + 1, false};
    const bool isHex = At(text, at) == u'0' && hasLetter && ToLowerAscii(At(text, end)) == u'h' &&
                       !IsLetter(At(text, end + 1)) && !IsDigit(At(text, end + 1));
    return isHex && ScanNumber(ToLowerAscii(text.substr(at, end + 1 - at)), number.value) ? std::optional(number)
                                                                                          : std::nullopt;
}

/// The end of "e6", "e+6" or "E-6"; the position itself when there is none.
std::size_t SkipExponent(CVelmStringView text, std::size_t at) {
    if (ToLowerAscii(At(text, at)) != u'e') {
        return at;
    }
    const std::size_t digits = at + (At(text, at + 1) == u'+' || At(text, at + 1) == u'-' ? 2 : 1);
    const std::size_t end = SkipDigits(text, digits);
    return end > digits && !IsLetter(At(text, end)) ? end : at;
}

double NumberOf(CVelmStringView digits) {
    double value = 0.0;
    return ScanNumber(digits, value) ? value : 0.0;
}

/// Adds "1/2" or "½" behind a whole number.
void AddFraction(CVelmStringView text, TypedNumber& number) {
    const std::size_t start = SkipBlanks(text, number.end);
    if (const VulgarFraction* const fraction = FindFraction(At(text, start))) {
        number.value += static_cast<double>(fraction->numerator) / fraction->denominator;
        number.end = start + 1;
        number.isWhole = false;
        return;
    }
    const std::size_t slash = SkipDigits(text, start);
    const std::size_t end = SkipDigits(text, slash + 1);
    if (start == number.end || slash == start || At(text, slash) != u'/' || end == slash + 1) {
        return;
    }
    const double numerator = NumberOf(text.substr(start, slash - start));
    const double denominator = NumberOf(text.substr(slash + 1, end - slash - 1));
    if (numerator < denominator && At(text, end) != u'/' && At(text, end) != u'.') {
        number.value += numerator / denominator;
        number.end = end;
        number.isWhole = false;
    }
}

}  // namespace

bool BeginsNumber(char16_t unit) {
    return IsDigit(unit) || unit == u'.' || FindFraction(unit) != nullptr;
}

bool IsQuestionBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n' || IsThinBlank(unit);
}

std::size_t SkipBlanks(CVelmStringView text, std::size_t position) {
    while (position < text.size() && IsQuestionBlank(text[position])) {
        ++position;
    }
    return position;
}

std::optional<TypedNumber> ReadTypedNumber(CVelmStringView text, std::size_t position, const NumberRules& rules) {
    if (const VulgarFraction* const fraction = FindFraction(At(text, position))) {
        return TypedNumber{static_cast<double>(fraction->numerator) / fraction->denominator, position + 1, false};
    }
    if (const auto inBase = ReadInBase(text, position)) {
        return inBase;
    }
    if (const auto inBase = rules.hasSuffixes ? ReadWithSuffix(text, position) : std::nullopt) {
        return inBase;
    }
    CVelmString digits;
    std::size_t end = ReadWhole(text, position, rules, digits);
    const std::size_t wholeEnd = end;
    if (At(text, end) == u'.' && (IsDigit(At(text, end + 1)) || end > position)) {
        const std::size_t decimals = SkipDigits(text, end + 1);
        digits += text.substr(end, decimals - end);
        end = decimals;
    }
    if (digits.empty()) {
        return std::nullopt;
    }
    if (const std::size_t exponent = SkipExponent(text, end); exponent > end) {
        CVelmString part(text.substr(end, exponent - end));
        std::erase(part, u'+');
        digits += part;
        end = exponent;
    }
    TypedNumber number{0.0, end, end == wholeEnd};
    if (!ScanNumber(digits, number.value)) {
        return std::nullopt;
    }
    if (number.isWhole) {
        AddFraction(text, number);
    }
    return number;
}

}  // namespace velm
