#include "platform/locale.h"

#include <array>

#include "platform/locale_limits.h"

namespace velm {

namespace {

constexpr int FIRST_YEAR = 1601;
constexpr int LAST_YEAR = 30827;
constexpr std::array<int, 12> DAYS_IN_MONTH = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

bool IsGregorianLeapYear(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

}  // namespace

bool IsLocaleDate(const CVelmCalendarTime& time) {
    if (time.year < FIRST_YEAR || time.year > LAST_YEAR || time.month < 1 || time.month > 12) {
        return false;
    }
    const bool leapDay = time.month == 2 && IsGregorianLeapYear(time.year);
    const int days = DAYS_IN_MONTH[static_cast<std::size_t>(time.month - 1)] + (leapDay ? 1 : 0);
    return time.day >= 1 && time.day <= days;
}

bool IsLocaleTime(const CVelmCalendarTime& time) {
    return time.hour >= 0 && time.hour <= 23 && time.minute >= 0 && time.minute <= 59 && time.second >= 0 &&
           time.second <= 59;
}

}  // namespace velm
