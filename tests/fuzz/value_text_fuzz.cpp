#include <array>
#include <cmath>
#include <cstring>
#include <string>

#include "datetime/date_parser.h"
#include "datetime/time_zones.h"
#include "formats/value_format.h"
#include "fuzz/fuzz.h"
#include "support/fixed_clock.h"
#include "support/fixed_locale.h"

namespace velm::test {
namespace {

/// In front of the text: the four compound factors, a value to write and the allowed formats.
constexpr std::size_t HEADER = 6 * 8;

/// Longer than any value's text without labels.
constexpr std::size_t MAX_TEXT_LENGTH = 160;

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
        Require(format.FormatValue(value, locale).size() < MAX_TEXT_LENGTH, "a shown text is short");
        Require(format.FormatValueForInput(value).size() < MAX_TEXT_LENGTH, "a typed text is short");
    }
    std::array<CVelmString, COMPOUND_PARTS> texts;
    const int parts = SplitCompound(format.compoundParts, value, texts);
    Require(parts >= 0 && parts <= COMPOUND_PARTS, "there are 0 to 4 parts");
}

void RequireFieldsInRange(const DateTime& date) {
    Require(date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= 31, "a day of a year");
    Require(date.hour >= 0 && date.hour <= 24 && date.minute >= 0 && date.minute <= 59, "hour and minute");
    Require(date.second >= 0 && date.second <= 59 && date.weekday >= 1 && date.weekday <= 7, "second and weekday");
}

/// A typed date, and its arithmetic.
void TryDate(Input input, const CVelmClock& clock) {
    DateTime date = ParseDate(FromUtf8(Characters(input)), clock);
    Require(std::isfinite(date.value), "the value is finite");
    RequireFieldsInRange(DateTime::FromValue(date.value));
    Require(date.DaysInMonth() >= 28 && date.DaysInMonth() <= 31, "a month has 28 to 31 days");
    const auto step = static_cast<std::int16_t>(input.size() * 257);
    date.AddMonths(step);
    date.AddYears(step);
    date.AddWeeks(step * 1000);
    RequireFieldsInRange(date);
    for (const TimeZoneRow& zone : TimeZones()) {
        double value = date.value;
        Require(FromUtc(zone.code, value) && ToUtc(zone.code, value), "every zone converts");
        Require(std::fabs(value - date.value) < 0.1, "there and back is at most the hour that a change skips");
    }
}

}  // namespace

/// A typed text read with any compound factors and as a date, and any double written in every format.
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
    TryDate(input.subspan(HEADER), clock);
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
