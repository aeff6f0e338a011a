#include "platform/locale.h"

#include <chrono>

#include "platform/locale_limits.h"

namespace velm {

namespace {

constexpr int FIRST_YEAR = 1601;
constexpr int LAST_YEAR = 30827;

}  // namespace

bool IsLocaleDate(const CVelmCalendarTime& time) {
    if (time.year < FIRST_YEAR || time.year > LAST_YEAR || time.month < 1 || time.month > 12) {
        return false;
    }
    const auto month = std::chrono::year(time.year) / time.month;
    const auto lastDay = static_cast<unsigned>((month / std::chrono::last).day());
    return time.day >= 1 && time.day <= static_cast<int>(lastDay);
}

bool IsLocaleTime(const CVelmCalendarTime& time) {
    return time.hour >= 0 && time.hour <= 23 && time.minute >= 0 && time.minute <= 59 && time.second >= 0 &&
           time.second <= 59;
}

}  // namespace velm
