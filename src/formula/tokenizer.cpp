#include "formula/tokenizer.h"

#include <array>
#include <charconv>
#include <string>

#include "formula/operators.h"

namespace velm {

namespace {

constexpr std::uint8_t CLASS_OTHER = 0;
constexpr std::uint8_t CLASS_BLANK = 1;
constexpr std::uint8_t CLASS_LETTER = 2;
constexpr std::uint8_t CLASS_DIGIT = 4;
constexpr std::uint8_t CLASS_POINT = 8;

constexpr std::array<std::uint8_t, 128> MakeCharClasses() {
    std::array<std::uint8_t, 128> classes{};
    for (const char16_t blank : CVelmStringView(u" \n\t\r")) {
        classes[blank] = CLASS_BLANK;
    }
    for (std::size_t letter = 'a'; letter <= 'z'; ++letter) {
        classes[letter] = CLASS_LETTER;
        classes[letter - 'a' + 'A'] = CLASS_LETTER;
    }
    for (std::size_t digit = '0'; digit <= '9'; ++digit) {
        classes[digit] = CLASS_DIGIT;
    }
    classes['_'] = CLASS_LETTER;
    classes['.'] = CLASS_POINT;
    return classes;
}

constexpr std::array<std::int32_t, 256> MakeOperatorCodes() {
    std::array<std::int32_t, 256> codes{};
    codes.fill(-1);
    for (std::size_t code = OPERATORS.size(); code-- > 0;) {
        codes[OPERATORS[code].character] = static_cast<std::int32_t>(code);
    }
    return codes;
}

constexpr std::array<std::uint8_t, 128> CHAR_CLASSES = MakeCharClasses();
constexpr std::array<std::int32_t, 256> OPERATOR_CODES = MakeOperatorCodes();

unsigned ClassOf(char16_t unit) {
    return unit < CHAR_CLASSES.size() ? CHAR_CLASSES[unit] : CLASS_OTHER;
}

/// Radix of a suffix character, 0 for any other character.
int SuffixRadix(char16_t suffix) {
    switch (suffix) {
        case BINARY_SUFFIX:
            return 2;
        case HEX_SUFFIX:
            return 16;
        case OCTAL_SUFFIX:
            return 8;
        default:
            return 0;
    }
}

/// Value of a digit in the given radix, -1 for a character that is none.
int DigitValue(char16_t unit, int radix) {
    const int digit = HexDigitValue(unit);
    return digit < radix ? digit : -1;
}

bool ScanRadixNumber(CVelmStringView digits, int radix, double& value) {
    double sum = 0.0;
    double place = 1.0;
    for (std::size_t i = digits.size(); i-- > 0;) {
        const int digit = DigitValue(digits[i], radix);
        if (digit < 0) {
            return false;
        }
        if (digit > 0) {  // a leading zero is fine even where its place value has overflowed
            sum += digit * place;
        }
        place *= radix;
    }
    value = sum;
    return true;
}

/// The double nearest to 10 to the power of `exponent`, the same on every system.
double PowerOfTen(int exponent) {
    static constexpr std::array<double, 23> EXACT = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const auto size = static_cast<std::size_t>(exponent < 0 ? -exponent : exponent);
    if (size < EXACT.size()) {
        return exponent < 0 ? 1.0 / EXACT[size] : EXACT[size];
    }
    const std::string text = "1e" + std::to_string(exponent);
    double power = 0.0;  // underflow
    std::from_chars(text.data(), text.data() + text.size(), power);
    return power;
}

/// Reads digits with an optional "-" before them, saturating. False when there is no digit.
bool ScanExponent(CVelmStringView word, std::size_t& at, int& exponent) {
    static constexpr int LIMIT = 100000;
    const bool negative = at < word.size() && word[at] == u'-';
    at += negative ? 1 : 0;
    const std::size_t start = at;
    int size = 0;
    for (; at < word.size() && IsDigit(word[at]); ++at) {
        size = size < LIMIT ? size * 10 + (word[at] - u'0') : size;
    }
    exponent = negative ? -size : size;
    return at > start;
}

bool ScanDecimalNumber(CVelmStringView word, double& value) {
    static constexpr int MAX_EXPONENT = 300;
    std::size_t at = 0;
    double sign = 1.0;
    if (word[at] == u'-') {
        sign = -1.0;
        ++at;
    }
    double mantissa = 0.0;
    for (; at < word.size() && IsDigit(word[at]); ++at) {
        mantissa = mantissa * 10.0 + (word[at] - u'0');
    }
    if (at < word.size() && word[at] == u'.') {
        double place = 10.0;
        for (++at; at < word.size() && IsDigit(word[at]); ++at) {
            mantissa += (word[at] - u'0') / place;
            place *= 10.0;
        }
    }
    int exponent = 0;
    if (at < word.size() && (word[at] == u'e' || word[at] == u'E')) {
        ++at;
        if (!ScanExponent(word, at, exponent)) {
            return false;
        }
    }
    if (at < word.size() || exponent > MAX_EXPONENT) {
        return false;
    }
    value = PowerOfTen(exponent) * sign * mantissa;
    return true;
}

}  // namespace

bool NextToken(CVelmStringView text, std::size_t& position, CVelmStringView& token) {
    while (position < text.size() && ClassOf(text[position]) == CLASS_BLANK) {
        ++position;
    }
    if (position >= text.size()) {
        return false;
    }
    const std::size_t start = position++;
    const unsigned first = ClassOf(text[start]);
    if (first == CLASS_LETTER) {
        while (position < text.size() && (ClassOf(text[position]) & (CLASS_LETTER | CLASS_DIGIT)) != 0) {
            ++position;
        }
    } else if (first == CLASS_DIGIT || first == CLASS_POINT) {
        while (position < text.size() && ((ClassOf(text[position]) & (CLASS_LETTER | CLASS_DIGIT | CLASS_POINT)) != 0 ||
                                          (text[position] == u'-' && text[position - 1] == u'e'))) {
            ++position;
        }
    }
    token = text.substr(start, position - start);
    return true;
}

bool ScanNumber(CVelmStringView word, double& value) {
    if (word.empty() || !(IsDigit(word[0]) || word[0] == u'-' || word[0] == u'.')) {
        return false;
    }
    const int radix = SuffixRadix(word.back());
    if (radix != 0) {
        return ScanRadixNumber(word.substr(0, word.size() - 1), radix, value);
    }
    return ScanDecimalNumber(word, value);
}

bool IsOperatorToken(CVelmStringView token, std::int32_t& code) {
    if (token.size() != 1) {
        return false;
    }
    const std::int32_t found = OPERATOR_CODES[token[0] & 0xFF];
    if (found < 0) {
        return false;
    }
    code = found;
    return true;
}

bool IsFormulaLetter(char16_t unit) {
    return ClassOf(unit) == CLASS_LETTER;
}

}  // namespace velm
