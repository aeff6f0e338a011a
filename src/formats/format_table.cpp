#include "formats/format_table.h"

#include <algorithm>
#include <array>

#include "formats/base_format.h"
#include "formats/currency_format.h"
#include "formats/date_format.h"
#include "formats/decimal_format.h"
#include "formats/value_format.h"
#include "formula/tokenizer.h"

namespace velm {
namespace {

template <std::uint32_t CODE>
CVelmString WriteBase(double value, bool grouped) {
    return FormatBase(value, CODE, grouped);
}

CVelmString ShowCompound(const CVelmValueFormat& format, double value, const CVelmLocale& /*locale*/) {
    return FormatCompound(format.compoundParts, value);
}

template <bool WITH_TIME>
CVelmString ShowDate(const CVelmValueFormat& /*format*/, double value, const CVelmLocale& locale) {
    return FormatDate(value, WITH_TIME, locale);
}

// tools/make-art takes the order of the icons from here.
constexpr std::array FORMATS = {
    FormatKind{FMT_DECIMAL, "decimal", u"Default (decimal)", u"numeric/calc", u"Dec", 0, 0, 0, FormatDecimal, nullptr},
    FormatKind{FMT_CURRENCY, "currency", u"Currency", u"numeric/calc", u"", FMT_DECIMAL, 0, 0, FormatCurrency, nullptr},
    FormatKind{FMT_HEX, "hex", u"Hexadecimal", u"hexadecimal", u"Hex", 0, 4, HEX_SUFFIX, WriteBase<FMT_HEX>, nullptr},
    FormatKind{FMT_OCTAL, "octal", u"Octal", u"octal", u"Oct", 0, 3, OCTAL_SUFFIX, WriteBase<FMT_OCTAL>, nullptr},
    FormatKind{FMT_BINARY, "binary", u"Binary", u"binary", u"Bin", 0, 1, BINARY_SUFFIX, WriteBase<FMT_BINARY>, nullptr},
    FormatKind{FMT_DATE, "date", u"Date", u"date", u"", FMT_DATETIME, 0, 0, FormatDecimal, ShowDate<false>},
    FormatKind{FMT_DATETIME, "datetime", u"Date Time", u"date time", u"", 0, 0, 0, FormatDecimal, ShowDate<true>},
    FormatKind{FMT_COMPOUND, "compound", u"Compound", u"compound", u"", 0, 0, 0, FormatDecimal, ShowCompound},
};

}  // namespace

std::span<const FormatKind> Formats() {
    return FORMATS;
}

const FormatKind* FindFormat(std::uint32_t code) {
    const auto* const found = std::ranges::find(FORMATS, code, &FormatKind::code);
    return found == FORMATS.end() ? nullptr : found;
}

const FormatKind* FindFormat(std::string_view word) {
    const auto* const found = std::ranges::find(FORMATS, word, &FormatKind::word);
    return found == FORMATS.end() ? nullptr : found;
}

const FormatKind& FormatOf(std::uint32_t code) {
    const FormatKind* const found = FindFormat(code);
    return found == nullptr ? FORMATS.front() : *found;
}

std::vector<std::string> FormatWords() {
    std::vector<std::string> words;
    words.reserve(FORMATS.size());
    for (const FormatKind& format : FORMATS) {
        words.emplace_back(format.word);
    }
    return words;
}

std::vector<std::string> FormatWords(const CVelmValueFormat& item) {
    std::vector<std::string> words;
    for (const FormatKind& format : FORMATS) {
        if (format.code == item.displayFormat) {
            words.emplace(words.begin(), format.word);
        } else if ((format.code & item.allowedFormats) != 0) {
            words.emplace_back(format.word);
        }
    }
    return words;
}

void CompleteTyped(CVelmString& text, std::uint32_t code) {
    const FormatKind& format = FormatOf(code);
    if (format.radixSuffix == 0 || text.empty()) {
        return;
    }
    // A number that begins with a letter would be a name.
    const int digit = IsLetter(text.front()) ? HexDigitValue(text.front()) : -1;
    if (digit >= 0 && digit < 1 << format.digitBits) {
        text.insert(text.begin(), u'0');
    }
    text += format.radixSuffix;
}

}  // namespace velm
