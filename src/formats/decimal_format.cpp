#include "formats/decimal_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace velm {
namespace {

constexpr int DIGITS = 12;

/// The first value that is written with an exponent.
constexpr double MIN_LARGE = 1e12;

/// The smallest values that are written without one.
constexpr double MIN_PLAIN_SHOWN = 0.001;
constexpr double MIN_PLAIN_IN_FORMULA = 0.000001;

/// Decimal digits with the number of them before the point; one more than there are digits when rounding went up to
/// the next power of ten.
struct Digits {
    std::array<char, DIGITS> text;
    int count;
    int point;
};

/// Rounds a finite magnitude of at least 1 and cuts trailing zeros off its fraction.
Digits RoundToDigits(double magnitude) {
    std::array<char, 32> scientific;
    char* const first = scientific.data();
    const auto end =
        std::to_chars(first, first + scientific.size(), magnitude, std::chars_format::scientific, DIGITS - 1);
    Digits digits;
    digits.text[0] = first[0];
    std::copy_n(first + 2, DIGITS - 1, digits.text.data() + 1);
    int exponent = 0;
    std::from_chars(first + DIGITS + 3, end.ptr, exponent);
    digits.point = exponent + 1;
    digits.count = DIGITS;
    while (digits.count > std::max(digits.point, 1) && digits.text[static_cast<std::size_t>(digits.count - 1)] == '0') {
        --digits.count;
    }
    return digits;
}

void AppendDigits(CVelmString& text, const Digits& digits, bool grouped) {
    const auto digitAt = [&digits](int i) {
        return i < digits.count ? static_cast<char16_t>(digits.text[static_cast<std::size_t>(i)]) : u'0';
    };
    for (int i = 0; i < digits.point; ++i) {
        if (grouped && i > 0 && (digits.point - i) % GROUP_DIGITS == 0) {
            text += u',';
        }
        text += digitAt(i);
    }
    if (digits.count <= digits.point) {
        return;
    }
    text += u'.';
    for (int i = digits.point; i < digits.count; ++i) {
        text += digitAt(i);
    }
}

void AppendExponent(CVelmString& text, int exponent, bool grouped) {
    std::array<char, 8> number;
    const auto end = std::to_chars(number.data(), number.data() + number.size(), exponent);
    text += grouped ? u" e" : u"e";
    text.append(number.data(), end.ptr);
}

CVelmString FormatNonFinite(double value) {
    if (std::isnan(value)) {
        return u"nan";
    }
    return value < 0 ? u"-inf" : u"inf";
}

CVelmString Format(double value, double minPlain, bool grouped) {
    if (!std::isfinite(value)) {
        return FormatNonFinite(value);
    }
    if (value == 0.0) {
        return u"0";
    }
    double x = std::fabs(value);
    int exponent = 0;
    bool shifted = false;
    if (x < minPlain) {
        do {
            x *= 1000;
            exponent -= 3;
        } while (x < 1.0);
    } else if (x < 1.0) {
        // A leading 1, taken off again below, makes the digits count from the integer position.
        x += 1.0;
        shifted = true;
    } else if (x >= MIN_LARGE) {
        // Multiplied, not divided. Deliberate: the last digit depends on it.
        while (x >= 1000.0) {
            x *= 0.001;
            exponent += 3;
        }
    }
    Digits digits = RoundToDigits(x);
    if (shifted) {
        --digits.text[0];
    }
    CVelmString text;
    text.reserve(28);
    if (value < 0) {
        text += u'-';
    }
    AppendDigits(text, digits, grouped);
    if (exponent != 0) {
        AppendExponent(text, exponent, grouped);
    }
    return text;
}

bool AreDigits(CVelmStringView text) {
    return text.find_first_not_of(u"0123456789") == CVelmStringView::npos;
}

}  // namespace

CVelmString FormatDecimal(double value, bool grouped) {
    return Format(value, MIN_PLAIN_SHOWN, grouped);
}

CVelmString NumberToText(double value) {
    return Format(value, MIN_PLAIN_IN_FORMULA, false);
}

std::optional<CVelmString> UngroupNumber(CVelmStringView text) {
    text = Trim(text, u" \t\r\n");
    CVelmString number(text.starts_with(u'-') ? u"-" : u"");
    text.remove_prefix(number.size());
    const CVelmStringView whole = text.substr(0, text.find(u'.'));
    const CVelmStringView fraction = text.substr(std::min(whole.size() + 1, text.size()));
    constexpr std::size_t GROUP = GROUP_DIGITS;
    const std::size_t firstGroup = whole.find(u',');
    if (firstGroup == 0 || firstGroup > GROUP || !AreDigits(fraction)) {
        return std::nullopt;
    }
    number += whole.substr(0, firstGroup);
    for (std::size_t comma = firstGroup; comma < whole.size(); comma += GROUP + 1) {
        const CVelmStringView group = whole.substr(comma + 1, GROUP);
        if (whole[comma] != u',' || group.size() != GROUP || !AreDigits(group)) {
            return std::nullopt;
        }
        number += group;
    }
    return AreDigits(whole.substr(0, firstGroup)) ? std::optional(number + CVelmString(text.substr(whole.size())))
                                                  : std::nullopt;
}

}  // namespace velm
