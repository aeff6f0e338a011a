#include "datetime/date_time.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <sstream>
#include <string>

#include "support/table.h"

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

TEST(DateTime, DatesAndDayNumbersAreThoseOfTheTable) {
    for (const auto& row : test::ReadTable(VELMORA_TESTS "/datetime/day_numbers.txt")) {
        SCOPED_TRACE(row.at(0) + " " + row.at(1));
        std::istringstream asked(row.at(1));
        double number = 0.0;
        asked >> number;
        if (row.at(0) == "date of") {
            double seconds = 0.0;
            asked >> seconds;
            EXPECT_EQ(Text(DateTime::FromValue(number + seconds / 86400)), row.at(2));
            continue;
        }
        int month = 0, day = 0;
        std::int16_t later = 0;
        asked >> month >> day >> later;
        DateTime date = DateTime::FromFields(static_cast<int>(number), month, day);
        if (row.at(0) == "number of") {
            EXPECT_EQ(date.value, std::strtod(row.at(2).c_str(), nullptr));
        } else {
            date.AddMonths(later);
            EXPECT_EQ(Text(date), row.at(2));
            EXPECT_EQ(date.value, Value(date.year, date.month, date.day));
        }
    }
    EXPECT_EQ(DateTime::FromFields(70000, 1, 1).year, 32767);
    EXPECT_EQ(DateTime::FromFields(-70000, 1, 1).year, -32768);
    EXPECT_EQ(DateTime::FromFields(2000, 1, 1, 6, 0, 0).value, 2451544.25);
    EXPECT_EQ(DateTime::FromFields(2000, 1, 1).weekday, 7);
    EXPECT_EQ(DateTime::FromFields(2024, 7, 1).weekday, 2);
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

TEST(DateTime, DaysWeeksAndYearsAreAdded) {
    DateTime date = DateTime::FromFields(2004, 2, 28, 12);
    date.AddDays(1.5);
    EXPECT_EQ(Text(date), "2004-3-1");
    date.AddWeeks(-1);
    EXPECT_EQ(Text(date++), "2004-2-23");
    EXPECT_EQ(Text(date--), "2004-2-24");
    EXPECT_EQ(Text(++date), "2004-2-24");
    EXPECT_EQ(Text(--date), "2004-2-23");

    date = DateTime::FromFields(2004, 2, 29);
    date.AddYears(1);
    EXPECT_EQ(date.value, Value(2005, 3, 1));
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
    std::string lengths;
    for (int month = 1; month <= 12; ++month) {
        lengths += std::to_string(DateTime::FromFields(2003, month, 1).DaysInMonth()) + " ";
    }
    EXPECT_EQ(lengths, "31 28 31 30 31 30 31 31 30 31 30 31 ");
    EXPECT_EQ(DateTime::FromFields(2000, 2, 1).DaysInMonth(), 29);
    EXPECT_EQ(DateTime::FromFields(1900, 2, 1).DaysInMonth(), 28);
    EXPECT_EQ(DateTime::FromFields(1500, 2, 1).DaysInMonth(), 29);
    EXPECT_EQ(DateTime().DaysInMonth(), 31);
    EXPECT_TRUE(IsLeapYear(1500) && IsLeapYear(2000) && IsLeapYear(2004) && IsLeapYear(-4));
    EXPECT_FALSE(IsLeapYear(1501) || IsLeapYear(1700) || IsLeapYear(1900) || IsLeapYear(2003));
}

}  // namespace
}  // namespace velm
