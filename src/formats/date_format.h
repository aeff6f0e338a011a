#pragma once

#include "platform/locale.h"
#include "platform/text.h"

namespace velm {

/// Three letters of the weekday, the regional short date and optionally the regional time. Falls back to plain numbers
/// where the platform cannot format the date; negative years end in " BC".
CVelmString FormatDate(double value, bool withTime, const CVelmLocale& locale);

/// True unless the user's short-date pattern begins with the day. The pattern is cached.
bool IsMonthFirstLocale(const CVelmLocale& locale);

}  // namespace velm
