#include "datetime/date_time.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <sstream>
#include <string>

#include "support/table.h"

namespace velm {
namespace {

/// "2004-3-5 6:0:0", the time of day left out at midnight.
std::string Text(const DateTime& date) {
    const std::string time = test::Print(" %d:%d:%d", date.hour, date.minute, date.second);
    return test::Print("%d-%d-%d", date.year, date.month, date.day) + (time == " 0:0:0" ? "" : time);
}

double Value(int year, int month, int day) {
    return DateTime::FromFields(year, month, day).value;
}

/// The day number by the standard library's calendar, which is Gregorian throughout.
double TrueValue(int year, unsigned month, unsigned day) {
    using namespace std::chrono;
    const auto days = sys_days(std::chrono::year(year) / month / day) - sys_days(2000y / January / 1);
    return 2451544.0 + static_cast<double>(days.count());
}

/// What the table asks of a date, or of a day number and seconds.
std::string Answer(const std::string& asked, const std::string& numbers) {
    std::istringstream words(numbers);
    if (asked == "date of") {
        double day = 0.0;
        double seconds = 0.0;
        words >> day >> seconds;
        return Text(DateTime::FromValue(day + seconds / 86400));
    }
    int year = 0, month = 0, day = 0;
    double later = 0.0;
    words >> year >> month >> day >> later;
    DateTime date = DateTime::FromFields(year, month, day);
    const auto count = static_cast<std::int16_t>(later);
    const std::map<std::string, std::function<double()>> numbersOf = {
        {"number of", [&] { return date.value; }},
        {"year", [&] { return date.year; }},
        {"weekday", [&] { return date.weekday; }},
        {"day of year", [&] { return date.DayOfYear(); }},
        {"month length", [&] { return date.DaysInMonth(); }},
    };
    const std::map<std::string, std::function<void()>> additions = {
        {"months later", [&] { date.AddMonths(count); }},
        {"years later", [&] { date.AddYears(count); }},
        {"weeks later", [&] { date.AddWeeks(count); }},
        {"days later", [&] { date.AddDays(later); }},
    };
    if (const auto number = numbersOf.find(asked); number != numbersOf.end()) {
        return test::Print("%.12g", number->second());
    }
    additions.at(asked)();
    EXPECT_EQ(std::floor(date.value), Value(date.year, date.month, date.day));
    return Text(date);
}

TEST(DateTime, AnswersAsTheTableDoes) {
    for (const auto& row : test::ReadTable(VELMORA_TESTS "/datetime/day_numbers.txt")) {
        EXPECT_EQ(Answer(row.at(0), row.at(1)), row.at(2)) << row.at(0) << " " << row.at(1);
    }
    EXPECT_EQ(DateTime::FromFields(2000, 1, 1, 6, 0, 0).value, 2451544.25);
}

TEST(DateTime, OrdinaryYearsFollowTheTrueCalendarBothWays) {
    for (int year = 1601; year <= 2399; ++year) {
        for (unsigned month = 1; month <= 12 && (year % 100 != 0 || year % 400 == 0); ++month) {
            for (const unsigned day : {1, 15, 22}) {
                const DateTime date = DateTime::FromFields(year, static_cast<int>(month), static_cast<int>(day));
                ASSERT_EQ(date.value, TrueValue(year, month, day)) << Text(date);
                ASSERT_EQ(Text(DateTime::FromValue(date.value)), Text(date));
            }
        }
    }
    for (int second = 0; second < 86400; second += 7) {
        const DateTime date = DateTime::FromFields(2004, 3, 5, second / 3600, second / 60 % 60, second % 60);
        ASSERT_EQ(Text(DateTime::FromValue(date.value)), Text(date));
    }
}

TEST(DateTime, EveryDoubleHasFieldsInTheirRanges) {
    constexpr double INF = std::numeric_limits<double>::infinity();
    for (const double value :
         {0.0, 0.5,    -0.5, -1.0, -1.25,        -365.0, -1096.5, -1e6,  -1e9,  2.2e9, -2.2e9, 1e300,
          INF, -1e300, -INF, 1e17, std::nan(""), 5e-324, -5e-324, 400.0, 1.7e7, -4e7,  -1e-9,  1721422.0}) {
        const DateTime date = DateTime::FromValue(value);
        SCOPED_TRACE(std::to_string(value) + " is " + Text(date));
        EXPECT_TRUE(date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= 31);
        EXPECT_TRUE(date.hour >= 0 && date.hour <= 24 && date.minute >= 0 && date.minute <= 59);
        EXPECT_TRUE(date.second >= 0 && date.second <= 59 && date.weekday >= 1 && date.weekday <= 7);
    }
    EXPECT_EQ(DateTime::FromValue(1e300).year, 32767);
    EXPECT_EQ(DateTime::FromValue(-1e300).year, -32768);
    EXPECT_EQ(Text(DateTime::FromValue(std::nan(""))), Text(DateTime::FromValue(0.0)));
}

TEST(DateTime, SettersClampTheDayAndKeepTheOtherHalf) {
    DateTime date = DateTime::FromFields(2004, 2, 10, 9, 8, 7);
    date.SetDate(4, 31, 2004);
    EXPECT_EQ(Text(date), "2004-4-30");
    date.SetTime(6, 0, 0);
    EXPECT_EQ(date.value, Value(2004, 4, 30) + 0.25);
    EXPECT_EQ(Text(date), "2004-4-30 6:0:0");
    date.SetDate(2, 30, 1900);
    EXPECT_EQ(Text(date).substr(0, 9), "1900-2-28");
    date.SetDate(1, 1, 10000);
    EXPECT_EQ(Text(date).substr(0, 5), "0-1-1");
    date.SetDate(2, 23, 2004);
    EXPECT_EQ(Text(date++), "2004-2-23");
    EXPECT_EQ(Text(date--), "2004-2-24");
    EXPECT_EQ(Text(++date), "2004-2-24");
    EXPECT_EQ(Text(--date), "2004-2-23");
}

}  // namespace
}  // namespace velm
