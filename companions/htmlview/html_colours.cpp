#include "htmlview/html_colours.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/text.h"

namespace velm {

namespace {

constexpr std::u16string_view BLANKS = u" \t\r\n";

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

/// "#rrggbb", "#rgb" or a colour's name, in lower case; -1 for anything else.
std::int32_t ParseColour(std::u16string_view text) {
    for (const NamedColour& named : COLOURS) {
        if (named.name == text) {
            return named.colour;
        }
    }
    const bool isShort = text.size() == 4;
    if ((text.size() != 7 && !isShort) || text[0] != u'#') {
        return -1;
    }
    std::int32_t colour = 0;
    for (const char16_t unit : text.substr(1)) {
        const int digit = HexDigitValue(unit);
        if (digit < 0) {
            return -1;
        }
        colour = isShort ? colour * 256 + digit * 17 : colour * 16 + digit;
    }
    return colour;
}

/// What a style declares for "color"; other names may end so.
std::u16string_view StyleColour(std::u16string_view style) {
    while (!style.empty()) {
        const std::u16string_view declaration = style.substr(0, style.find(u';'));
        style.remove_prefix(std::min(declaration.size() + 1, style.size()));
        const std::size_t colon = declaration.find(u':');
        if (colon != std::u16string_view::npos && Trim(declaration.substr(0, colon), BLANKS) == u"color") {
            return declaration.substr(colon + 1);
        }
    }
    return {};
}

}  // namespace

std::int32_t ColourOf(const HtmlToken& token) {
    const std::u16string attribute = ToLowerAscii(token.Attribute(u"color"));
    const std::u16string style = ToLowerAscii(token.Attribute(u"style"));
    return ParseColour(Trim(attribute.empty() ? StyleColour(style) : std::u16string_view(attribute), BLANKS));
}

}  // namespace velm
