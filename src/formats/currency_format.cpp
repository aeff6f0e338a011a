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
    CVelmString text;
    if (value < 0) {
        text += grouped ? u'(' : u'-';
    }
    AppendGrouped(text, {buffer.data(), end}, grouped);
    if (value < 0 && grouped) {
        text += u')';
    }
    return text;
}

}  // namespace velm
