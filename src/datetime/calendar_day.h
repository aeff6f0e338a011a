#pragma once

#include <chrono>
#include <optional>

#include "platform/clock.h"
#include "platform/text.h"

namespace velm {

/// A day of the Gregorian calendar; days compare by their order.
using CVelmDay = std::chrono::year_month_day;

/// Reads "2024-07-05", which a blank or a "T" and anything else may follow, or "5 July 2024" in English. Nothing for
/// any other text and for a day that does not exist.
std::optional<CVelmDay> ReadDay(CVelmStringView text);

/// "2024-07-05"
CVelmString DayText(const CVelmDay& day);

/// The local day.
CVelmDay Today(const CVelmClock& clock);

/// How many days `second` comes after `first`; negative when it comes before.
int DaysBetween(const CVelmDay& first, const CVelmDay& second);

}  // namespace velm
