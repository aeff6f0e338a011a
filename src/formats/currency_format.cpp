#include "formats/currency_format.h"

#include <array>
#include <charconv>
#include <cmath>

#include "formats/decimal_format.h"

namespace velm {

CVelmString FormatCurrency(double value, bool grouped) {
    constexpr double MAX_FIXED = 1e18;
    const double magnitude = std::fabs(value);
    if (magnitude < 0.005) {
        return u"0.00";
    }
    if (!(magnitude <= MAX_FIXED)) {
        return FormatDecimal(value, grouped);
    }
    std::array<char, 32> buffer;
    const auto [end, error] =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude, std::chars_format::fixed, 2);
    const char* const point = end - 3;

    CVelmString text;
    if (value < 0) {
        text += grouped ? u'(' : u'-';
    }
    for (const char* c = buffer.data(); c != end; ++c) {
        text += static_cast<char16_t>(*c);
        const auto integerDigitsLeft = point - c - 1;
        if (grouped && integerDigitsLeft > 0 && integerDigitsLeft % GROUP_DIGITS == 0) {
            text += u',';
        }
    }
    if (value < 0 && grouped) {
        text += u')';
    }
    return text;
}

}  // namespace velm
