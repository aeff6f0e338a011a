#pragma once

#include "platform/locale.h"
#include "platform/text.h"

namespace velm {

/// Three letters of the weekday, the regional short date and, when asked for, the regional time. What the platform
/// cannot write is written in plain numbers, years before the common era with " BC" behind them.
CVelmString FormatDate(double value, bool withTime, const CVelmLocale& locale);

/// True unless the user's short-date pattern begins with the day. The pattern is asked for once in a run.
bool IsMonthFirstLocale(const CVelmLocale& locale);

}  // namespace velm
