#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>

#include "formats/value_format.h"
#include "fuzz/fuzz.h"
#include "support/fixed_clock.h"
#include "support/fixed_locale.h"

namespace velm::test {
namespace {

/// In front of the text: the four compound factors, a value to write and the allowed formats.
constexpr std::size_t HEADER = 6 * 8;

/// Longer than any value's text without labels.
constexpr std::size_t LONGEST_TEXT = 160;

double DoubleAt(Input input, std::size_t index) {
    double value = 0;
    std::memcpy(&value, input.data() + index * sizeof(value), sizeof(value));
    return value;
}

void RequireReadsBack(const CVelmString& text, double value) {
    if (!std::isfinite(value)) {
        return;
    }
    const double magnitude = std::fabs(value);
    const double tolerance = std::max(magnitude, magnitude >= 0.001 && magnitude < 1 ? 1.0 : 0.0) * 6e-12;
    Require(std::fabs(std::strtod(ToUtf8(text).c_str(), nullptr) - value) <= tolerance + 1e-320,
            "a number reads back within twelve digits");
}

void RequireBaseReadsBack(const CVelmValueFormat& format, char16_t suffix, FormulaContext& context, double value) {
    CVelmString text = ToLowerAscii(format.FormatValueForInput(value));
    if (text.empty()) {
        return;
    }
    if (text[0] >= u'a') {
        text.insert(0, u"0");
    }
    double read = 0;
    Require(format.ParseValueText(text + suffix, context, read), "a number base reads back");
    Require(read == (value < 0 ? value + 4294967296.0 : value), "a number base reads back as the same 32 bits");
}

void WriteInEveryFormat(CVelmValueFormat format, FormulaContext& context, double value) {
    const FixedLocale locale;
    for (std::uint32_t code = 1; code <= 2 * FMT_CURRENCY; code <<= 1) {
        format.displayFormat = code;
        format.inputFormat = code;
        Require(format.FormatValue(value, locale).size() < LONGEST_TEXT, "a shown text is short");
        Require(format.FormatValueForInput(value).size() < LONGEST_TEXT, "a typed text is short");
    }
    format.inputFormat = FMT_DECIMAL;
    RequireReadsBack(format.FormatValueForInput(value), value);
    for (const auto& [code, suffix] : {std::pair(FMT_HEX, u'h'), {FMT_OCTAL, u'o'}, {FMT_BINARY, u'b'}}) {
        format.inputFormat = code;
        RequireBaseReadsBack(format, suffix, context, value);
    }
    std::array<CVelmString, COMPOUND_PARTS> texts;
    const int parts = format.SplitCompound(value, texts);
    Require(parts >= 0 && parts <= COMPOUND_PARTS, "there are 0 to 4 parts");
}

}  // namespace

/// A typed text read with any compound factors, and any double written in every format.
void Try(Input input) {
    if (input.size() < HEADER) {
        return;
    }
    CVelmValueFormat format;
    for (std::size_t i = 0; i < format.compoundParts.size(); ++i) {
        format.compoundParts[i] = {u"ft", DoubleAt(input, i)};
    }
    const double value = DoubleAt(input, 4);
    format.SetAllowedFormats(input[5 * 8] | static_cast<unsigned>(input[5 * 8 + 1]) << 8);

    const FixedClock clock;
    FormulaContext context(clock);
    WriteInEveryFormat(format, context, value);
    WriteInEveryFormat(format, context, std::trunc(value));

    double read = 0;
    if (format.ParseValueText(FromUtf8(Characters(input.subspan(HEADER))), context, read)) {
        Require(!std::isnan(read), "what was read is a number");
        WriteInEveryFormat(format, context, read);
    }
}

}  // namespace velm::test
