#include "formats/decimal_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace velm {
namespace {

constexpr int DIGITS = 12;

/// Digits between the commas of grouped text.
constexpr std::size_t GROUP_DIGITS = 3;

/// The first value that is written with an exponent.
constexpr double MIN_LARGE = 1e12;

/// The lowest values written without one.
constexpr double MIN_PLAIN_SHOWN = 0.001;
constexpr double MIN_PLAIN_IN_FORMULA = 0.000001;

CVelmString Format(double value, double minPlain, bool grouped) {
    if (!std::isfinite(value)) {
        return std::isnan(value) ? u"nan" : value < 0 ? u"-inf" : u"inf";
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
    int wholeDigits = 1;
    for (double power = 10.0; power <= x; power *= 10.0) {
        ++wholeDigits;
    }
    std::array<char, 32> buffer;
    const auto end = std::to_chars(buffer.begin(), buffer.end(), x, std::chars_format::fixed, DIGITS - wholeDigits);
    std::string_view digits(buffer.data(), end.ptr);
    if (wholeDigits < DIGITS) {
        digits = digits.substr(0, digits.find_last_not_of('0') + 1);
        digits.remove_suffix(digits.ends_with('.') ? 1 : 0);
    }
    if (shifted) {
        --buffer[0];
    }
    CVelmString text;
    text.reserve(28);
    if (value < 0) {
        text += u'-';
    }
    AppendGrouped(text, digits, grouped);
    if (exponent != 0) {
        text += (grouped ? u" e" : u"e") + IntegerText(exponent);
    }
    return text;
}

bool AreDigits(CVelmStringView text) {
    return text.find_first_not_of(u"0123456789") == CVelmStringView::npos;
}

}  // namespace

void AppendGrouped(CVelmString& text, std::string_view digits, bool grouped) {
    const std::size_t whole = std::min(digits.find('.'), digits.size());
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (grouped && i > 0 && i < whole && (whole - i) % GROUP_DIGITS == 0) {
            text += u',';
        }
        text += static_cast<char16_t>(digits[i]);
    }
}

CVelmString FormatDecimal(double value, bool grouped) {
    return Format(value, MIN_PLAIN_SHOWN, grouped);
}

CVelmString NumberToText(double value) {
    return Format(value, MIN_PLAIN_IN_FORMULA, false);
}

std::string ShortestText(double value) {
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end.ptr};
}

std::optional<CVelmString> UngroupNumber(CVelmStringView text) {
    text = Trim(text, u" \t\r\n");
    CVelmString number(text.starts_with(u'-') ? u"-" : u"");
    text.remove_prefix(number.size());
    const CVelmStringView whole = text.substr(0, text.find(u'.'));
    const CVelmStringView fraction = text.substr(std::min(whole.size() + 1, text.size()));
    const std::size_t firstGroup = whole.find(u',');
    if (firstGroup == 0 || firstGroup > GROUP_DIGITS || !AreDigits(fraction)) {
        return std::nullopt;
    }
    number += whole.substr(0, firstGroup);
    for (std::size_t comma = firstGroup; comma < whole.size(); comma += GROUP_DIGITS + 1) {
        const CVelmStringView group = whole.substr(comma + 1, GROUP_DIGITS);
        if (whole[comma] != u',' || group.size() != GROUP_DIGITS || !AreDigits(group)) {
            return std::nullopt;
        }
        number += group;
    }
    return AreDigits(whole.substr(0, firstGroup)) ? std::optional(number + CVelmString(text.substr(whole.size())))
                                                  : std::nullopt;
}

}  // namespace velm
