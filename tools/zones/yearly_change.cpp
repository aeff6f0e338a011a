#include "yearly_change.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace velm::zones {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::weekday;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr int DAYS_A_WEEK = 7;
constexpr std::array WEEKDAYS{"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
constexpr std::array MONTHS{"January", "February", "March",     "April",   "May",      "June",
                            "July",    "August",   "September", "October", "November", "December"};

sys_days DayOf(std::int64_t time) {
    return std::chrono::floor<days>(std::chrono::sys_seconds(std::chrono::seconds(time)));
}

std::int64_t StartOf(sys_days day) {
    return day.time_since_epoch().count() * DAY;
}

sys_days FirstOfMarch(int inYear) {
    return year(inYear) / std::chrono::March / 1;
}

const char* MonthName(year_month_day date) {
    return MONTHS[static_cast<unsigned>(date.month()) - 1];
}

/// The day as one counts in a year of 365 days.
year_month_day CalendarDay(int daysAfterFirstOfMarch) {
    return FirstOfMarch(2001) + days(daysAfterFirstOfMarch);
}

/// Whether laws use to say "the first", "the second", "the last" such weekday of the week from this day on.
bool BeginsUsualWeek(int daysAfterFirstOfMarch) {
    const year_month_day date = CalendarDay(daysAfterFirstOfMarch);
    const unsigned day = static_cast<unsigned>(date.day());
    const unsigned last = static_cast<unsigned>((date.year() / date.month() / std::chrono::last).day());
    return day % DAYS_A_WEEK == 1 || day == last - DAYS_A_WEEK + 1;
}

/// Values are written in units of 1/100,000 day, which is 0.864 s.
constexpr std::int64_t UNITS = 100000;

std::int64_t ValueUnits(std::int64_t time) {
    constexpr std::int64_t VALUE_OF_1970 = 2440587;
    return ((VALUE_OF_1970 * DAY + time) * UNITS - UNITS / 10) / DAY;
}

std::string UnitsText(std::int64_t units, int divisor) {
    return fmt::format("{}", static_cast<double>(units) / static_cast<double>(UNITS * divisor));
}

}  // namespace

int MarchYear(std::int64_t time) {
    const int calendarYear = static_cast<int>(year_month_day(DayOf(time)).year());
    return DayOf(time) < FirstOfMarch(calendarYear) ? calendarYear - 1 : calendarYear;
}

std::string ValueText(std::int64_t time) {
    return UnitsText(ValueUnits(time), 1);
}

std::string MiddleText(std::int64_t begin, std::int64_t end) {
    return UnitsText(ValueUnits(begin) + ValueUnits(end), 2);
}

std::string HalfLengthText(std::int64_t begin, std::int64_t end) {
    return UnitsText(ValueUnits(end) - ValueUnits(begin), 2);
}

std::string DateWords(std::int64_t time) {
    const year_month_day date = DayOf(time);
    return fmt::format("{} {} {}", static_cast<unsigned>(date.day()), MonthName(date), static_cast<int>(date.year()));
}

std::int64_t YearlyChange::TimeIn(int inYear) const {
    const sys_days first = FirstOfMarch(inYear) + days(firstDay);
    return StartOf(first + (weekday - std::chrono::weekday(first))) + secondOfDay;
}

std::string YearlyChange::Position() const {
    // Counted from 1 March of a leap year that is the weekday, its latest one is a multiple of 7 days away. Rounding
    // takes the place of rounding down half a week later.
    int leapYear = 1904;
    while (std::chrono::weekday(FirstOfMarch(leapYear)) != weekday) {
        leapYear += 4;
    }
    const std::int64_t halfWeekLater = StartOf(FirstOfMarch(leapYear)) + secondOfDay + DAYS_A_WEEK * DAY / 2;
    return fmt::format("7*round((x-{})/7)\\365.25", ValueText(halfWeekLater));
}

std::string YearlyChange::Words() const {
    const year_month_day first = CalendarDay(firstDay);
    const year_month_day last = CalendarDay(firstDay + DAYS_A_WEEK - 1);
    const std::string month = first.month() == last.month() ? "" : fmt::format(" {}", MonthName(first));
    return fmt::format("the {} of {}{} to {} {}, {}:{:02}", WEEKDAYS[weekday.c_encoding()],
                       static_cast<unsigned>(first.day()), month, static_cast<unsigned>(last.day()), MonthName(last),
                       secondOfDay / HOUR, secondOfDay % HOUR / 60);
}

std::optional<YearlyChange> FitYearlyChange(const std::vector<std::int64_t>& times) {
    YearlyChange change{weekday(DayOf(times.front())), times.front() - StartOf(DayOf(times.front()))};
    int earliest = 366;
    int latest = 0;
    for (const std::int64_t time : times) {
        const sys_days day = DayOf(time);
        if (weekday(day) != change.weekday || time - StartOf(day) != change.secondOfDay) {
            return std::nullopt;
        }
        const int afterFirstOfMarch = static_cast<int>((day - FirstOfMarch(MarchYear(time))).count());
        earliest = std::min(earliest, afterFirstOfMarch);
        latest = std::max(latest, afterFirstOfMarch);
    }
    change.firstDay = latest - DAYS_A_WEEK + 1;
    while (change.firstDay < earliest && !BeginsUsualWeek(change.firstDay)) {
        ++change.firstDay;
    }
    return change.firstDay <= earliest ? std::optional(change) : std::nullopt;
}

}  // namespace velm::zones
