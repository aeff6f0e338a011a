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

void WriteInEveryFormat(CVelmValueFormat format, double value) {
    const FixedLocale locale;
    for (std::uint32_t code = 1; code <= 2 * FMT_CURRENCY; code <<= 1) {
        format.displayFormat = code;
        format.inputFormat = code;
        Require(format.FormatValue(value, locale).size() < LONGEST_TEXT, "a shown text is short");
        Require(format.FormatValueForInput(value).size() < LONGEST_TEXT, "a typed text is short");
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
    WriteInEveryFormat(format, value);
    WriteInEveryFormat(format, std::trunc(value));

    double read = 0;
    if (format.ParseValueText(FromUtf8(Characters(input.subspan(HEADER))), context, read)) {
        Require(!std::isnan(read), "what was read is a number");
        WriteInEveryFormat(format, read);
    }
}

}  // namespace velm::test
