#include "htmlview/html_colors.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "htmlview/html_tokenizer.h"
#include "platform/text.h"

namespace velm {

namespace {

struct NamedColor {
    std::u16string_view name;
    std::int32_t color;
};

// The sixteen colors that HTML names.
constexpr std::array COLORS = {
    NamedColor{u"black", 0x000000},  NamedColor{u"silver", 0xC0C0C0},  NamedColor{u"gray", 0x808080},
    NamedColor{u"white", 0xFFFFFF},  NamedColor{u"maroon", 0x800000},  NamedColor{u"red", 0xFF0000},
    NamedColor{u"purple", 0x800080}, NamedColor{u"fuchsia", 0xFF00FF}, NamedColor{u"green", 0x008000},
    NamedColor{u"lime", 0x00FF00},   NamedColor{u"olive", 0x808000},   NamedColor{u"yellow", 0xFFFF00},
    NamedColor{u"navy", 0x000080},   NamedColor{u"blue", 0x0000FF},    NamedColor{u"teal", 0x008080},
    NamedColor{u"aqua", 0x00FFFF},
};

/// "#rrggbb", "#rgb" or a color's name, in lower case; -1 for anything else.
std::int32_t ParseColor(std::u16string_view text) {
    for (const NamedColor& named : COLORS) {
        if (named.name == text) {
            return named.color;
        }
    }
    const bool isShort = text.size() == 4;
    if ((text.size() != 7 && !isShort) || text[0] != u'#') {
        return -1;
    }
    std::int32_t color = 0;
    for (const char16_t unit : text.substr(1)) {
        const int digit = HexDigitValue(unit);
        if (digit < 0) {
            return -1;
        }
        color = isShort ? color * 256 + digit * 17 : color * 16 + digit;
    }
    return color;
}

/// What a style declares for "color"; other names may end so.
std::u16string_view StyleColor(std::u16string_view style) {
    while (!style.empty()) {
        const std::u16string_view declaration = style.substr(0, style.find(u';'));
        style.remove_prefix(std::min(declaration.size() + 1, style.size()));
        const std::size_t colon = declaration.find(u':');
        if (colon != std::u16string_view::npos && Trim(declaration.substr(0, colon), HTML_BLANKS) == u"color") {
            return declaration.substr(colon + 1);
        }
    }
    return {};
}

}  // namespace

std::int32_t ColorOf(const HtmlToken& token) {
    const std::u16string attribute = ToLowerAscii(token.Attribute(u"color"));
    const std::u16string style = ToLowerAscii(token.Attribute(u"style"));
    return ParseColor(Trim(attribute.empty() ? StyleColor(style) : std::u16string_view(attribute), HTML_BLANKS));
}

}  // namespace velm
