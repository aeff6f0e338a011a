#include "htmlview/html_colours.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velm {

namespace {

struct NamedColour {
    std::u16string_view name;
    std::int32_t colour;
};

// The sixteen colours that HTML names.
constexpr std::array COLOURS = {
    NamedColour{u"black", 0x000000},  NamedColour{u"silver", 0xC0C0C0},  NamedColour{u"gray", 0x808080},
    NamedColour{u"white", 0xFFFFFF},  NamedColour{u"maroon", 0x800000},  NamedColour{u"red", 0xFF0000},
    NamedColour{u"purple", 0x800080}, NamedColour{u"fuchsia", 0xFF00FF}, NamedColour{u"green", 0x008000},
    NamedColour{u"lime", 0x00FF00},   NamedColour{u"olive", 0x808000},   NamedColour{u"yellow", 0xFFFF00},
    NamedColour{u"navy", 0x000080},   NamedColour{u"blue", 0x0000FF},    NamedColour{u"teal", 0x008080},
    NamedColour{u"aqua", 0x00FFFF},
};

int HexDigit(char16_t unit) {
    constexpr std::u16string_view DIGITS = u"0123456789abcdef";
    const char16_t lower = unit >= u'A' && unit <= u'F' ? static_cast<char16_t>(unit + 32) : unit;
    const std::size_t found = DIGITS.find(lower);
    return found == std::u16string_view::npos ? -1 : static_cast<int>(found);
}

/// "#rrggbb" or a colour's name; -1 for anything else.
std::int32_t ParseColour(std::u16string_view text) {
    for (const NamedColour& named : COLOURS) {
        if (named.name == text) {
            return named.colour;
        }
    }
    if (text.size() != 7 || text[0] != u'#') {
        return -1;
    }
    std::int32_t colour = 0;
    for (const char16_t unit : text.substr(1)) {
        const int digit = HexDigit(unit);
        if (digit < 0) {
            return -1;
        }
        colour = colour * 16 + digit;
    }
    return colour;
}

}  // namespace

std::int32_t ColourOf(const HtmlToken& token) {
    std::u16string_view text = token.Attribute(u"color");
    if (text.empty()) {
        const std::u16string_view style = token.Attribute(u"style");
        const std::size_t found = style.find(u"color:");
        if (found == std::u16string_view::npos || (found > 0 && style[found - 1] == u'-')) {
            return -1;
        }
        text = style.substr(found + 6);
        text.remove_prefix(std::min(text.find_first_not_of(u' '), text.size()));
        text = text.substr(0, std::min(text.find(u';'), text.size()));
    }
    return ParseColour(text);
}

}  // namespace velm
