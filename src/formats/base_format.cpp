#include "formats/base_format.h"

#include <algorithm>

#include "formats/decimal_format.h"
#include "formats/format_table.h"
#include "platform/saturate.h"

namespace velm {

CVelmString FormatBase(double value, std::uint32_t code, bool grouped) {
    if (value == 0.0) {
        return u"0";
    }
    const std::int32_t whole = ToInt32(value);
    if (whole != value) {
        return grouped ? u"Dec: " + FormatDecimal(value, true) : CVelmString();
    }
    // Padded as though the groups' spaces were there even without them. Deliberate: an ungrouped 0x12345 is 000012345.
    constexpr CVelmStringView DIGITS = u"0123456789ABCDEF";
    const unsigned bits = FormatOf(code).digitBits;
    const auto groupIsFull = [](const CVelmString& text) { return (text.size() + 1) % 5 == 0; };
    CVelmString reversed;
    for (auto rest = static_cast<std::uint32_t>(whole); rest != 0; rest >>= bits) {
        if (grouped && groupIsFull(reversed)) {
            reversed += u' ';
        }
        reversed += DIGITS[rest & ((1U << bits) - 1)];
    }
    while (!groupIsFull(reversed)) {
        reversed += u'0';
    }
    std::ranges::reverse(reversed);
    return reversed;
}

}  // namespace velm
