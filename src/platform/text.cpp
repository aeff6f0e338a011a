#include "platform/text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/text_case.h"

namespace velm {

namespace {

constexpr char16_t REPLACEMENT = 0xFFFD;

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool IsContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

/// Decodes one code point at `position` and advances past it. An ill-formed sequence becomes U+FFFD and is skipped up
/// to the first byte that cannot belong to it.
char32_t DecodeUtf8(std::string_view text, std::size_t& position) {
    const auto lead = static_cast<unsigned char>(text[position++]);
    if (lead < 0x80) {
        return lead;
    }
    int more = 0;
    char32_t code = 0;
    unsigned char lowest = 0x80;  // range of the second byte: no overlong forms, no surrogates, at most U+10FFFF
    unsigned char highest = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        more = 1;
        code = lead & 0x1FU;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        more = 2;
        code = lead & 0x0FU;
        lowest = lead == 0xE0 ? 0xA0 : lowest;
        highest = lead == 0xED ? 0x9F : highest;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        more = 3;
        code = lead & 0x07U;
        lowest = lead == 0xF0 ? 0x90 : lowest;
        highest = lead == 0xF4 ? 0x8F : highest;
    } else {
        return REPLACEMENT;
    }
    for (; more > 0; --more) {
        if (position >= text.size()) {
            return REPLACEMENT;
        }
        const auto byte = static_cast<unsigned char>(text[position]);
        if (!IsContinuation(byte) || byte < lowest || byte > highest) {
            return REPLACEMENT;
        }
        code = (code << 6) | (byte & 0x3FU);
        lowest = 0x80;
        highest = 0xBF;
        ++position;
    }
    return code;
}

void AppendUtf8(std::string& text, char32_t code) {
    if (code < 0x80) {
        text += static_cast<char>(code);
        return;
    }
    if (code < 0x800) {
        text += static_cast<char>(0xC0 | (code >> 6));
    } else if (code < 0x10000) {
        text += static_cast<char>(0xE0 | (code >> 12));
        text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    } else {
        text += static_cast<char>(0xF0 | (code >> 18));
        text += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    }
    text += static_cast<char>(0x80 | (code & 0x3F));
}

}  // namespace

CVelmString ToLowerAscii(CVelmStringView text) {
    CVelmString lower(text);
    for (char16_t& unit : lower) {
        unit = ToLowerAscii(unit);
    }
    return lower;
}

CVelmString IntegerText(std::int64_t number) {
    return FromUtf8(std::to_string(number));
}

char16_t FoldCase(char16_t unit) {
    if (unit < 0x80) {
        return ToLowerAscii(unit);
    }
    return IsHighSurrogate(unit) || IsLowSurrogate(unit) ? unit : FoldCaseBeyondAscii(unit);
}

CVelmString FoldCase(CVelmStringView text) {
    CVelmString folded(text);
    for (char16_t& unit : folded) {
        unit = FoldCase(unit);
    }
    return folded;
}

bool EqualsNoCase(CVelmStringView a, CVelmStringView b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char16_t x, char16_t y) { return x == y || FoldCase(x) == FoldCase(y); });
}

bool StartsWithNoCase(CVelmStringView text, CVelmStringView prefix) {
    return text.size() >= prefix.size() && EqualsNoCase(text.substr(0, prefix.size()), prefix);
}

bool EndsWithNoCase(CVelmStringView text, CVelmStringView suffix) {
    return text.size() >= suffix.size() && EqualsNoCase(text.substr(text.size() - suffix.size()), suffix);
}

void AppendCodePoint(CVelmString& text, char32_t code) {
    if (code < 0x10000) {
        text += static_cast<char16_t>(code);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
}

CVelmString FromUtf8(std::string_view text) {
    CVelmString result;
    result.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        AppendCodePoint(result, DecodeUtf8(text, position));
    }
    return result;
}

std::string ToUtf8(CVelmStringView text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = text[i];
        if (IsHighSurrogate(code) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
            code = 0x10000 + ((code - 0xD800) << 10) + (static_cast<char32_t>(text[i + 1]) - 0xDC00);
            ++i;
        } else if (IsHighSurrogate(code) || IsLowSurrogate(code)) {
            code = REPLACEMENT;
        }
        AppendUtf8(result, code);
    }
    return result;
}

}  // namespace velm
