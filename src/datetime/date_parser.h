#pragma once

#include "datetime/date_time.h"
#include "platform/text.h"

namespace velm {

/// Reads a typed date: "." or TODAY, NOW, "Friday, March 05, 2004", "05 March 2004" in 13 or 20 characters, yyyymmdd,
/// or month, day and year between separators. If the number in front of a separator is above 12, it is the year when it
/// has four digits (2004-03-25) and otherwise the day (25/3/2004). A year of one or two digits lies in 1951 to 2050; a
/// "." anywhere else than in front makes it a year before the common era.
/// Never fails: an unreadable month or day gives the cleared date, whose month is 0.
DateTime ParseDate(CVelmStringView text, const CVelmClock& clock);

/// 1 to 12 by the first three letters of an English name, 0 for anything else.
int MonthOfName(CVelmStringView name);

}  // namespace velm
