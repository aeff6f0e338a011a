#include "datetime/date_time.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <string>

namespace velm {
namespace {

/// "2004-3-5 6:0:0", the time of day left out at midnight.
std::string Text(const DateTime& date) {
    const auto join = [](int a, int b, int c, char mark) {
        return std::to_string(a) + mark + std::to_string(b) + mark + std::to_string(c);
    };
    const std::string time = join(date.hour, date.minute, date.second, ':');
    return join(date.year, date.month, date.day, '-') + (time == "0:0:0" ? "" : " " + time);
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

TEST(DateTime, DatesHaveTheirDayNumbers) {
    const struct {
        int year, month, day;
        double value;
    } cases[] = {
        {2000, 1, 1, 2451544},   {1582, 10, 15, 2299160}, {1582, 10, 4, 2299159}, {0, 0, 0, 1721422},  // a cleared date
        {-44, 3, 15, 1705425},    // the Ides of March
        {-1, 12, 31, 1721423},    // the year before year 1 counts a day too many,
        {1, 1, 1, 1721423},       // so its last day is the first of the next
        {1900, 1, 1, 2415019},    // a century year is a day off
        {1899, 12, 31, 2415019},  // up to the end of February
        {1900, 3, 1, 2415079},    //
        {2003, 2, 31, 2452701},   // fields outside the calendar count on
        {2003, 14, 5, 2453040},   //
    };
    for (const auto& [year, month, day, value] : cases) {
        EXPECT_EQ(Value(year, month, day), value) << year << "-" << month << "-" << day;
    }
    EXPECT_EQ(Value(1900, 2, 28), TrueValue(1900, 2, 27));
    EXPECT_EQ(Value(1900, 3, 1), TrueValue(1900, 3, 1));
    EXPECT_EQ(Value(2100, 1, 1), Value(2099, 12, 31));
    EXPECT_EQ(Value(2004, 2, 31), Value(2004, 3, 2));
    EXPECT_EQ(Value(2000, 1, 1) - Value(1999, 12, 31), 1);
    EXPECT_EQ(DateTime::FromFields(70000, 1, 1).year, 32767);
    EXPECT_EQ(DateTime::FromFields(-70000, 1, 1).year, -32768);
    EXPECT_EQ(DateTime::FromFields(2000, 1, 1, 6, 0, 0).value, 2451544.25);
    EXPECT_EQ(DateTime::FromFields(2000, 1, 1).weekday, 7);
    EXPECT_EQ(DateTime::FromFields(2024, 7, 1).weekday, 2);

    for (int year = 1601; year <= 2399; ++year) {
        for (unsigned month = 1; month <= 12 && (year % 100 != 0 || year % 400 == 0); ++month) {
            for (const unsigned day : {1, 15, 22}) {
                const DateTime date = DateTime::FromFields(year, static_cast<int>(month), static_cast<int>(day));
                ASSERT_EQ(date.value, TrueValue(year, month, day)) << Text(date);
                ASSERT_EQ(Text(DateTime::FromValue(date.value)), Text(date));
            }
        }
    }
}

TEST(DateTime, DayNumbersHaveTheirDates) {
    const struct {
        double value;
        const char* text;
    } cases[] = {
        {2415079, "1900-2-29"},
        {Value(2000, 12, 23), "2000-12-23"},
        {Value(2000, 12, 24), "2000-12-25"},  // the 400-year cycle ends early
        {2460673, "2024-12-29"},              // in years divisible by four
        {2460674, "2024-12-31"},              // the thirtieth of December shows as the thirty-first
        {2460675, "2024-12-31"},
        {2460676, "2025-1-1"},
        {Value(2023, 12, 30), "2023-12-30"},
        {Value(2023, 12, 31), "2023-12-31"},
        {2451544.5, "2000-1-1 12:0:0"},
        {2451544 + 3725.0 / 86400, "2000-1-1 1:2:5"},
        {2451544 + 3724.95 / 86400, "2000-1-1 1:2:5"},  // a tenth of a second is made up
        {2451544 + 3724.85 / 86400, "2000-1-1 1:2:4"},
        {2451544 + 86399.99 / 86400, "2000-1-1 24:0:0"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(Text(DateTime::FromValue(value)), text);
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
        EXPECT_TRUE(date.month >= 1 && date.month <= 12);
        EXPECT_TRUE(date.day >= 1 && date.day <= 31);
        EXPECT_TRUE(date.hour >= 0 && date.hour <= 24);
        EXPECT_TRUE(date.minute >= 0 && date.minute <= 59);
        EXPECT_TRUE(date.second >= 0 && date.second <= 59);
        EXPECT_TRUE(date.weekday >= 1 && date.weekday <= 7);
    }
    EXPECT_EQ(DateTime::FromValue(1e300).year, 32767);
    EXPECT_EQ(DateTime::FromValue(-1e300).year, -32768);
    EXPECT_EQ(Text(DateTime::FromValue(std::nan(""))), Text(DateTime::FromValue(0.0)));
}

TEST(DateTime, DaysWeeksMonthsAndYearsAreAdded) {
    DateTime date = DateTime::FromFields(2004, 2, 28, 12);
    date.AddDays(1.5);
    EXPECT_EQ(Text(date), "2004-3-1");
    date.AddWeeks(-1);
    EXPECT_EQ(Text(date++), "2004-2-23");
    EXPECT_EQ(Text(date--), "2004-2-24");
    EXPECT_EQ(Text(++date), "2004-2-24");
    EXPECT_EQ(Text(--date), "2004-2-23");

    const struct {
        int year, month, day;
        std::int16_t months, years;
        const char* text;
    } cases[] = {
        {2003, 1, 31, 1, 0, "2003-3-3"},   {2004, 1, 31, 1, 0, "2004-3-2"}, {2004, 1, 15, -1, 0, "2003-12-15"},
        {2004, 1, 15, 25, 0, "2006-2-15"}, {2004, 5, 31, 1, 0, "2004-7-1"}, {2004, 1, 15, 32767, 0, "4734-8-15"},
        {2004, 2, 29, 0, 1, "2005-3-1"},
    };
    for (const auto& [year, month, day, months, years, text] : cases) {
        date = DateTime::FromFields(year, month, day);
        date.AddMonths(months);
        date.AddYears(years);
        EXPECT_EQ(Text(DateTime::FromValue(date.value)), text);
        EXPECT_EQ(date.value, Value(date.year, date.month, date.day));
    }
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
}

TEST(DateTime, LengthsOfMonthsAndYears) {
    EXPECT_EQ(DateTime::FromFields(2004, 12, 31).DayOfYear(), 366);
    EXPECT_EQ(DateTime::FromFields(2003, 12, 31, 23, 59, 59).DayOfYear(), 365);
    EXPECT_EQ(DateTime::FromFields(2000, 2, 1).DaysInMonth(), 29);
    EXPECT_EQ(DateTime::FromFields(1900, 2, 1).DaysInMonth(), 28);
    EXPECT_EQ(DateTime::FromFields(1500, 2, 1).DaysInMonth(), 29);
    EXPECT_EQ(DateTime().DaysInMonth(), 31);
    EXPECT_TRUE(IsLeapYear(1500) && IsLeapYear(2000) && IsLeapYear(2004) && IsLeapYear(-4));
    EXPECT_FALSE(IsLeapYear(1501) || IsLeapYear(1700) || IsLeapYear(1900) || IsLeapYear(2003));
}

}  // namespace
}  // namespace velm
