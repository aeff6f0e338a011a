#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "htmlview/html_tokenizer.h"
#include "platform/text.h"

namespace velm {

namespace {

struct Entity {
    std::u16string_view name;
    char16_t character;
};

// Sorted by name: looked up by bisection.
constexpr std::array ENTITIES = {
    Entity{u"Delta", 0x394},   Entity{u"Gamma", 0x393},  Entity{u"Lambda", 0x39B},  Entity{u"Omega", 0x3A9},
    Entity{u"Phi", 0x3A6},     Entity{u"Pi", 0x3A0},     Entity{u"Prime", 0x2033},  Entity{u"Psi", 0x3A8},
    Entity{u"Sigma", 0x3A3},   Entity{u"Theta", 0x398},  Entity{u"alpha", 0x3B1},   Entity{u"amp", u'&'},
    Entity{u"apos", u'\''},    Entity{u"beta", 0x3B2},   Entity{u"bull", 0x2022},   Entity{u"cent", 0xA2},
    Entity{u"chi", 0x3C7},     Entity{u"copy", 0xA9},    Entity{u"dagger", 0x2020}, Entity{u"deg", 0xB0},
    Entity{u"delta", 0x3B4},   Entity{u"divide", 0xF7},  Entity{u"epsilon", 0x3B5}, Entity{u"eta", 0x3B7},
    Entity{u"euro", 0x20AC},   Entity{u"frac12", 0xBD},  Entity{u"frac14", 0xBC},   Entity{u"frac34", 0xBE},
    Entity{u"frasl", 0x2044},  Entity{u"gamma", 0x3B3},  Entity{u"ge", 0x2265},     Entity{u"gt", u'>'},
    Entity{u"hellip", 0x2026}, Entity{u"infin", 0x221E}, Entity{u"kappa", 0x3BA},   Entity{u"lambda", 0x3BB},
    Entity{u"laquo", 0xAB},    Entity{u"larr", 0x2190},  Entity{u"ldquo", 0x201C},  Entity{u"le", 0x2264},
    Entity{u"lsquo", 0x2018},  Entity{u"lt", u'<'},      Entity{u"mdash", 0x2014},  Entity{u"micro", 0xB5},
    Entity{u"middot", 0xB7},   Entity{u"minus", 0x2212}, Entity{u"mu", 0x3BC},      Entity{u"nbsp", 0xA0},
    Entity{u"ndash", 0x2013},  Entity{u"ne", 0x2260},    Entity{u"nu", 0x3BD},      Entity{u"omega", 0x3C9},
    Entity{u"para", 0xB6},     Entity{u"phi", 0x3C6},    Entity{u"pi", 0x3C0},      Entity{u"plusmn", 0xB1},
    Entity{u"pound", 0xA3},    Entity{u"prime", 0x2032}, Entity{u"psi", 0x3C8},     Entity{u"quot", u'"'},
    Entity{u"radic", 0x221A},  Entity{u"raquo", 0xBB},   Entity{u"rarr", 0x2192},   Entity{u"rdquo", 0x201D},
    Entity{u"reg", 0xAE},      Entity{u"rho", 0x3C1},    Entity{u"rsquo", 0x2019},  Entity{u"sect", 0xA7},
    Entity{u"sigma", 0x3C3},   Entity{u"sup1", 0xB9},    Entity{u"sup2", 0xB2},     Entity{u"sup3", 0xB3},
    Entity{u"tau", 0x3C4},     Entity{u"theta", 0x3B8},  Entity{u"thinsp", 0x2009}, Entity{u"times", 0xD7},
    Entity{u"trade", 0x2122},  Entity{u"yen", 0xA5},     Entity{u"zeta", 0x3B6},
};
static_assert(std::ranges::is_sorted(ENTITIES, {}, &Entity::name));

constexpr std::size_t MAX_ENTITY_LENGTH = 8;
constexpr char16_t REPLACEMENT = 0xFFFD;
constexpr char32_t MAX_CODE_POINT = 0x10FFFF;

char16_t FindEntity(std::u16string_view name) {
    const auto found =
        std::lower_bound(ENTITIES.begin(), ENTITIES.end(), name,
                         [](const Entity& entity, std::u16string_view key) { return entity.name < key; });
    return found != ENTITIES.end() && found->name == name ? found->character : u'\0';
}

/// A number that stands for no character gives the replacement character.
void AppendNumbered(std::u16string& text, char32_t code) {
    const bool valid = code != 0 && code <= MAX_CODE_POINT && (code < 0xD800 || code > 0xDFFF);
    AppendCodePoint(text, valid ? code : REPLACEMENT);
}

/// Reads the entity that begins with the "&" at `at`; moves `at` behind it and appends its character.
bool DecodeOne(std::u16string_view text, std::size_t& at, std::u16string& decoded) {
    std::size_t next = at + 1;
    if (next < text.size() && text[next] == u'#') {
        ++next;
        const bool hexadecimal = next < text.size() && (text[next] == u'x' || text[next] == u'X');
        next += hexadecimal ? 1 : 0;
        const auto isDigit = [hexadecimal](char16_t unit) {
            return hexadecimal ? HexDigitValue(unit) >= 0 : IsDigit(unit);
        };
        const std::size_t first = next;
        char32_t code = 0;
        for (; next < text.size() && isDigit(text[next]); ++next) {
            code = code * (hexadecimal ? 16 : 10) + static_cast<char32_t>(HexDigitValue(text[next]));
            code = std::min<char32_t>(code, MAX_CODE_POINT + 1);
        }
        if (next == first) {
            return false;
        }
        AppendNumbered(decoded, code);
    } else {
        const std::size_t end = text.substr(next, MAX_ENTITY_LENGTH + 1).find(u';');
        const char16_t character = end == std::u16string_view::npos ? u'\0' : FindEntity(text.substr(next, end));
        if (character == 0) {
            return false;
        }
        decoded += character;
        next += end;
    }
    at = next < text.size() && text[next] == u';' ? next + 1 : next;
    return true;
}

}  // namespace

std::u16string DecodeEntities(std::u16string_view text) {
    std::u16string decoded;
    decoded.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == u'&' && DecodeOne(text, at, decoded)) {
            continue;
        }
        decoded += text[at++];
    }
    return decoded;
}

}  // namespace velm
