#include <cmath>

#include "datetime/date_parser.h"
#include "datetime/time_zones.h"
#include "formats/date_format.h"
#include "fuzz/fuzz.h"
#include "support/fixed_clock.h"
#include "support/fixed_locale.h"

namespace velm::test {
namespace {

void RequireFieldsInRange(const DateTime& date) {
    Require(date.month >= 1 && date.month <= 12, "month is 1 to 12");
    Require(date.day >= 1 && date.day <= 31, "day is 1 to 31");
    Require(date.hour >= 0 && date.hour <= 24, "hour is 0 to 24");
    Require(date.minute >= 0 && date.minute <= 59, "minute is 0 to 59");
    Require(date.second >= 0 && date.second <= 59, "second is 0 to 59");
    Require(date.weekday >= 1 && date.weekday <= 7, "weekday is 1 to 7");
}

}  // namespace

/// A typed date, its arithmetic and its text.
void Try(Input input) {
    const FixedClock clock;
    DateTime date = ParseDate(FromUtf8(Characters(input)), clock);
    Require(std::isfinite(date.value), "the value is finite");
    RequireFieldsInRange(DateTime::FromValue(date.value));
    Require(FormatDate(date.value, true, FixedLocale()).size() > 10, "weekday, date and time are written");
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

}  // namespace velm::test
