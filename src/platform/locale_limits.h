#pragma once

#include "platform/calendar_time.h"

namespace velm {

/// Whether the date is one that the locale writes on every system: years 1601 to 30827, and a day of its month.
bool IsLocaleDate(const CVelmCalendarTime& time);

/// Whether the time of day is one that the locale writes on every system; hour 24 is not.
bool IsLocaleTime(const CVelmCalendarTime& time);

}  // namespace velm
