#pragma once

#include "platform/calendar_time.h"

namespace velm {

/// Whether every system's locale can format the date: years 1601 to 30827, and a valid day of its month.
bool IsLocaleDate(const CVelmCalendarTime& time);

/// Whether every system's locale can format the time of day; hour 24 is out of range.
bool IsLocaleTime(const CVelmCalendarTime& time);

}  // namespace velm
