#pragma once

namespace velm {

/// A calendar date and time of day: month 1 to 12, day 1 to 31, hour 0 to 23; negative years are BCE.
struct CVelmCalendarTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int weekday = 1;  ///< 1 = Sunday to 7 = Saturday; read by the locale only
};

constexpr bool IsWeekday(int weekday) {
    return weekday >= 1 && weekday <= 7;
}

}  // namespace velm
