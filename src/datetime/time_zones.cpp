#include "datetime/time_zones.h"

#include <algorithm>
#include <array>

#include "datetime/date_time.h"
#include "platform/saturate.h"

namespace velm {
namespace {

constexpr double MINUTE = 0.0006944444444444445;
constexpr std::int32_t STANDARD_TIME_ONLY = 1000;

constexpr std::uint16_t LAST = 5;
constexpr std::uint16_t SUNDAY = 0;
constexpr std::uint16_t TUESDAY = 2;
constexpr std::uint16_t WEDNESDAY = 3;
constexpr std::uint16_t FRIDAY = 5;
constexpr std::uint16_t SATURDAY = 6;

constexpr TimeZoneDate NEVER = {};

constexpr TimeZoneDate Yearly(std::uint16_t week, std::uint16_t dayOfWeek, std::uint16_t month, std::uint16_t hour) {
    return {.month = month, .dayOfWeek = dayOfWeek, .day = week, .hour = hour};
}

// code, bias, standard bias, daylight bias, standard time starts, daylight time starts
constexpr TimeZoneRow TIME_ZONES[] = {
    {0, 720, 0, -60, NEVER, NEVER},
    {1, 660, 0, -60, NEVER, NEVER},
    {2, 600, 0, -60, NEVER, NEVER},
    {3, 540, 0, -60, Yearly(LAST, SUNDAY, 10, 2), Yearly(1, SUNDAY, 4, 2)},
    {4, 480, 0, -60, Yearly(LAST, SUNDAY, 10, 2), Yearly(1, SUNDAY, 4, 2)},
    {10, 420, 0, -60, Yearly(LAST, SUNDAY, 10, 2), Yearly(1, SUNDAY, 4, 2)},
    {13, 420, 0, -60, Yearly(LAST, SUNDAY, 9, 2), Yearly(1, SUNDAY, 5, 2)},
    {15, 420, 0, -60, NEVER, NEVER},
    {20, 360, 0, -60, Yearly(LAST, SUNDAY, 10, 2), Yearly(1, SUNDAY, 4, 2)},
    {25, 360, 0, -60, NEVER, NEVER},
    {30, 360, 0, -60, Yearly(LAST, SUNDAY, 9, 2), Yearly(1, SUNDAY, 5, 2)},
    {33, 360, 0, -60, NEVER, NEVER},
    {35, 300, 0, -60, Yearly(LAST, SUNDAY, 10, 2), Yearly(1, SUNDAY, 4, 2)},
    {40, 300, 0, -60, NEVER, NEVER},
    {45, 300, 0, -60, NEVER, NEVER},
    {50, 240, 0, -60, Yearly(LAST, SUNDAY, 10, 2), Yearly(1, SUNDAY, 4, 2)},
    {55, 240, 0, -60, NEVER, NEVER},
    {56, 240, 0, -60, Yearly(2, SATURDAY, 3, 0), Yearly(2, SATURDAY, 10, 0)},
    {60, 210, 0, -60, Yearly(LAST, SUNDAY, 10, 2), Yearly(1, SUNDAY, 4, 2)},
    {65, 180, 0, -60, Yearly(2, SUNDAY, 2, 2), Yearly(3, SUNDAY, 10, 2)},
    {70, 180, 0, -60, NEVER, NEVER},
    {73, 180, 0, -60, Yearly(LAST, SUNDAY, 10, 2), Yearly(1, SUNDAY, 4, 2)},
    {75, 120, 0, -60, Yearly(LAST, SUNDAY, 9, 2), Yearly(LAST, SUNDAY, 3, 2)},
    {80, 60, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {83, 60, 0, -60, NEVER, NEVER},
    {85, 0, 0, -60, Yearly(LAST, SUNDAY, 10, 2), Yearly(LAST, SUNDAY, 3, 1)},
    {90, 0, 0, -60, NEVER, NEVER},
    {95, -60, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {100, -60, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {105, -60, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {110, -60, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {113, -60, 0, -60, NEVER, NEVER},
    {115, -120, 0, -60, Yearly(LAST, SUNDAY, 10, 1), Yearly(LAST, SUNDAY, 3, 0)},
    {120, -120, 0, -60, Yearly(LAST, WEDNESDAY, 9, 2), Yearly(1, FRIDAY, 5, 2)},
    {125, -120, 0, -60, Yearly(LAST, SUNDAY, 10, 4), Yearly(LAST, SUNDAY, 3, 3)},
    {130, -120, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {135, -120, 0, -60, NEVER, NEVER},
    {140, -120, 0, -60, NEVER, NEVER},
    {145, -180, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {150, -180, 0, -60, NEVER, NEVER},
    {155, -180, 0, -60, NEVER, NEVER},
    {158, -180, 0, -60, Yearly(1, SUNDAY, 10, 4), Yearly(1, SUNDAY, 4, 3)},
    {160, -210, 0, -60, Yearly(4, TUESDAY, 9, 2), Yearly(1, SUNDAY, 3, 2)},
    {165, -240, 0, -60, NEVER, NEVER},
    {170, -240, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {175, -270, 0, -60, NEVER, NEVER},
    {180, -300, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {185, -300, 0, -60, NEVER, NEVER},
    {190, -330, 0, -60, NEVER, NEVER},
    {193, -345, 0, -60, NEVER, NEVER},
    {195, -360, 0, -60, NEVER, NEVER},
    {200, -360, 0, -60, NEVER, NEVER},
    {201, -360, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {203, -390, 0, -60, NEVER, NEVER},
    {205, -420, 0, -60, NEVER, NEVER},
    {207, -420, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {210, -480, 0, -60, NEVER, NEVER},
    {215, -480, 0, -60, NEVER, NEVER},
    {220, -480, 0, -60, NEVER, NEVER},
    {225, -480, 0, -60, NEVER, NEVER},
    {227, -480, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {230, -540, 0, -60, NEVER, NEVER},
    {235, -540, 0, -60, NEVER, NEVER},
    {240, -540, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {245, -570, 0, -60, NEVER, NEVER},
    {250, -570, 0, -60, Yearly(LAST, SUNDAY, 3, 3), Yearly(LAST, SUNDAY, 10, 2)},
    {255, -600, 0, -60, Yearly(LAST, SUNDAY, 3, 3), Yearly(LAST, SUNDAY, 10, 2)},
    {260, -600, 0, -60, NEVER, NEVER},
    {265, -600, 0, -60, Yearly(LAST, SUNDAY, 3, 3), Yearly(1, SUNDAY, 10, 2)},
    {270, -600, 0, -60, Yearly(LAST, SUNDAY, 10, 3), Yearly(LAST, SUNDAY, 3, 2)},
    {275, -600, 0, -60, NEVER, NEVER},
    {280, -660, 0, -60, NEVER, NEVER},
    {285, -720, 0, -60, NEVER, NEVER},
    {290, -720, 0, -60, Yearly(3, SUNDAY, 3, 2), Yearly(1, SUNDAY, 10, 2)},
    {300, -780, 0, -60, NEVER, NEVER},
};

/// The date of a yearly rule. Deliberate, stored values rely on it: when the month begins on the rule's weekday the
/// date is one week late, and a "last" rule yields the first of the next month.
DateTime RuleDate(const TimeZoneDate& rule, int year) {
    DateTime date;
    date.SetDate(rule.month, 1, year);
    int week = rule.day;
    if (week == LAST || week == 0) {
        date.AddMonths(1);
        week = 0;
    }
    const int x = rule.dayOfWeek + 1 - date.weekday;
    date.AddDays(x + 7 * (x > 0 ? week - 1 : week));
    return date;
}

double ChangeInYear(const TimeZoneDate& rule, int year) {
    if (rule.year != 0) {
        DateTime date;
        date.SetDate(rule.month, rule.day, rule.year);
        date.SetTime(rule.hour, rule.minute, rule.second);
        return date.value;
    }
    DateTime date = RuleDate(rule, year);
    date.SetTime(rule.hour, 0, 0);
    return date.value;
}

struct ZoneArgument {
    const TimeZoneRow* row;
    bool observesDaylight;
};

ZoneArgument ReadZone(double zone) {
    const std::int32_t code = ToInt32(zone);
    const TimeZoneRow* row = FindTimeZone(code % STANDARD_TIME_ONLY);
    return {row, row != nullptr && code < STANDARD_TIME_ONLY && row->daylightDate.month != 0};
}

double SeasonBias(const TimeZoneRow& row, double localValue) {
    return (IsDaylightTime(row, localValue) ? row.daylightBias : row.standardBias) * MINUTE;
}

}  // namespace

std::span<const TimeZoneRow> TimeZones() {
    return TIME_ZONES;
}

const TimeZoneRow* FindTimeZone(std::int32_t code) {
    const auto row = std::ranges::lower_bound(TIME_ZONES, code, {}, &TimeZoneRow::code);
    return row != std::end(TIME_ZONES) && row->code == code ? row : nullptr;
}

bool IsDaylightTime(const TimeZoneRow& row, double localValue) {
    const int year = DateTime::FromValue(localValue).year;
    const double daylight = ChangeInYear(row.daylightDate, year);
    const double standard = ChangeInYear(row.standardDate, year);
    if (row.standardDate.month > row.daylightDate.month) {
        return daylight < localValue && localValue < standard;
    }
    return !(standard <= localValue && localValue <= daylight);
}

bool FromUtc(double zone, double& value) {
    const auto [row, observesDaylight] = ReadZone(zone);
    if (row == nullptr) {
        return false;
    }
    value -= row->bias * MINUTE;
    if (observesDaylight) {
        value -= SeasonBias(*row, value);
    }
    return true;
}

bool ToUtc(double zone, double& value) {
    const auto [row, observesDaylight] = ReadZone(zone);
    if (row == nullptr) {
        return false;
    }
    if (observesDaylight) {
        value += SeasonBias(*row, value);
    }
    value += row->bias * MINUTE;
    return true;
}

bool ZoneTimeNow(double zone, const CVelmClock& clock, double& value) {
    if (ToInt32(zone) < 0) {
        value = DateTime::Now(clock).value;
        return true;
    }
    double now = DateTime::FromSystemTime(clock.UtcTime()).value;
    if (!FromUtc(zone, now)) {
        return false;
    }
    value = now;
    return true;
}

}  // namespace velm
