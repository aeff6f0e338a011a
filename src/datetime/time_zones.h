#pragma once

#include <cstdint>
#include <span>

#include "platform/clock.h"

namespace velm {

/// When the time changes, in local time. Month 0: never. Year 0: every year, in week `day` (1 to 5, 5 = last) of
/// `dayOfWeek` (0 = Sunday). Any other year: once, on that date.
struct TimeZoneDate {
    std::uint16_t year = 0;
    std::uint16_t month = 0;
    std::uint16_t dayOfWeek = 0;
    std::uint16_t day = 0;
    std::uint16_t hour = 0;
    std::uint16_t minute = 0;
    std::uint16_t second = 0;
    std::uint16_t millisecond = 0;
};

/// A time zone: the fields after the code are laid out as the platform's time-zone information. Biases are minutes;
/// local standard time plus `bias` is UTC, and one of the other two is added while its time is in effect.
struct TimeZoneRow {
    std::int32_t code;
    std::int32_t bias;
    std::int32_t standardBias;
    std::int32_t daylightBias;
    TimeZoneDate standardDate;
    TimeZoneDate daylightDate;
};

/// All zones, sorted by code.
std::span<const TimeZoneRow> TimeZones();

/// Null for a code that is not in the table.
const TimeZoneRow* FindTimeZone(std::int32_t code);

/// Whether a local date-time value lies in the daylight time of its own year. For rows with a daylight rule.
bool IsDaylightTime(const TimeZoneRow& row, double localValue);

/// Convert a date-time value in place. The zone is a code, or a code plus 1000 for standard time all year.
/// False, with the value untouched, when the table has no such code.
bool FromUtc(double zone, double& value);
bool ToUtc(double zone, double& value);

/// The current time in a zone; the clock's local time for a negative zone. Fails like FromUtc.
bool ZoneTimeNow(double zone, const CVelmClock& clock, double& value);

}  // namespace velm
