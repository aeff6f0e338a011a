#include "datetime/date_time.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace velm {
namespace {

std::string DateText(const DateTime& date) {
    std::ostringstream text;
    text << date.year << '-' << date.month << '-' << date.day;
    return text.str();
}

std::string TimeText(const DateTime& date) {
    std::ostringstream text;
    text << date.hour << ':' << date.minute << ':' << date.second;
    return text.str();
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

TEST(DateTime, LandmarksHaveTheirDayNumbers) {
    EXPECT_EQ(Value(2000, 1, 1), 2451544);
    EXPECT_EQ(Value(1582, 10, 15), 2299160);
    EXPECT_EQ(Value(1582, 10, 4), 2299159);
    EXPECT_EQ(Value(0, 0, 0), 1721422) << "a cleared date";
    EXPECT_EQ(Value(-1, 12, 31), Value(1, 1, 1)) << "the year before year 1 counts a day too many";
    EXPECT_EQ(Value(-44, 3, 15), 1705425) << "the Ides of March";
    EXPECT_EQ(DateTime::FromFields(2000, 1, 1, 6, 0, 0).value, 2451544.25);
    EXPECT_EQ(DateTime::FromFields(2000, 1, 1).weekday, 7);
    EXPECT_EQ(DateTime::FromFields(2024, 7, 1).weekday, 2);
}

TEST(DateTime, OrdinaryYearsFollowTheTrueCalendarBothWays) {
    for (int year = 1601; year <= 2399; ++year) {
        if (year % 100 == 0 && year % 400 != 0) {
            continue;
        }
        for (unsigned month = 1; month <= 12; ++month) {
            for (const unsigned day : {1, 15, 22}) {
                const DateTime date = DateTime::FromFields(year, static_cast<int>(month), static_cast<int>(day));
                ASSERT_EQ(date.value, TrueValue(year, month, day)) << DateText(date);
                ASSERT_EQ(DateText(DateTime::FromValue(date.value)), DateText(date));
            }
        }
    }
}

TEST(DateTime, CenturyYearsAreADayOff) {
    EXPECT_EQ(Value(1900, 1, 1), Value(1899, 12, 31));
    EXPECT_EQ(Value(1900, 2, 28), TrueValue(1900, 2, 27));
    EXPECT_EQ(Value(1900, 3, 1), TrueValue(1900, 3, 1));
    EXPECT_EQ(Value(2100, 1, 1), Value(2099, 12, 31));
    EXPECT_EQ(DateText(DateTime::FromValue(Value(1900, 3, 1))), "1900-2-29");
    EXPECT_EQ(Value(2000, 1, 1) - Value(1999, 12, 31), 1);
    EXPECT_EQ(DateText(DateTime::FromValue(Value(2000, 12, 23))), "2000-12-23");
    EXPECT_EQ(DateText(DateTime::FromValue(Value(2000, 12, 24))), "2000-12-25") << "the 400-year cycle ends early";
}

TEST(DateTime, ThirtiethOfDecemberShowsAsTheThirtyFirstInYearsDivisibleByFour) {
    EXPECT_EQ(DateText(DateTime::FromValue(2460673)), "2024-12-29");
    EXPECT_EQ(DateText(DateTime::FromValue(2460674)), "2024-12-31");
    EXPECT_EQ(DateText(DateTime::FromValue(2460675)), "2024-12-31");
    EXPECT_EQ(DateText(DateTime::FromValue(2460676)), "2025-1-1");
    EXPECT_EQ(DateText(DateTime::FromValue(Value(2023, 12, 30))), "2023-12-30");
    EXPECT_EQ(DateText(DateTime::FromValue(Value(2023, 12, 31))), "2023-12-31");
}

TEST(DateTime, TimeOfDayComesFromTheFraction) {
    EXPECT_EQ(TimeText(DateTime::FromValue(2451544.5)), "12:0:0");
    EXPECT_EQ(TimeText(DateTime::FromValue(2451544 + 3725.0 / 86400)), "1:2:5");
    EXPECT_EQ(TimeText(DateTime::FromValue(2451544 + 3724.95 / 86400)), "1:2:5") << "a tenth of a second is made up";
    EXPECT_EQ(TimeText(DateTime::FromValue(2451544 + 3724.85 / 86400)), "1:2:4");
    const DateTime almostMidnight = DateTime::FromValue(2451544 + 86399.99 / 86400);
    EXPECT_EQ(DateText(almostMidnight) + " " + TimeText(almostMidnight), "2000-1-1 24:0:0");
    for (int second = 0; second < 86400; second += 7) {
        const DateTime date = DateTime::FromFields(2004, 3, 5, second / 3600, second / 60 % 60, second % 60);
        ASSERT_EQ(TimeText(DateTime::FromValue(date.value)), TimeText(date));
    }
}

TEST(DateTime, EveryDoubleHasFieldsInTheirRanges) {
    constexpr double INF = std::numeric_limits<double>::infinity();
    const double values[] = {0.0,  0.5,    -0.5,    -1.0,  -1.25,  -365.0, -1096.5, -1e6,
                             -1e9, 2.2e9,  -2.2e9,  1e300, -1e300, INF,    -INF,    std::nan(""),
                             1e17, 5e-324, -5e-324, 400.0, 1.7e7,  -4e7,   -1e-9,   1721422.0};
    for (const double value : values) {
        const DateTime date = DateTime::FromValue(value);
        SCOPED_TRACE(std::to_string(value) + " is " + DateText(date) + " " + TimeText(date));
        EXPECT_TRUE(date.month >= 1 && date.month <= 12);
        EXPECT_TRUE(date.day >= 1 && date.day <= 31);
        EXPECT_TRUE(date.hour >= 0 && date.hour <= 24);
        EXPECT_TRUE(date.minute >= 0 && date.minute <= 59);
        EXPECT_TRUE(date.second >= 0 && date.second <= 59);
        EXPECT_TRUE(date.weekday >= 1 && date.weekday <= 7);
    }
    EXPECT_EQ(DateTime::FromValue(1e300).year, 32767);
    EXPECT_EQ(DateTime::FromValue(-1e300).year, -32768);
    EXPECT_EQ(DateText(DateTime::FromValue(std::nan(""))), DateText(DateTime::FromValue(0.0)));
}

TEST(DateTime, FieldsOutsideTheCalendarCountOn) {
    EXPECT_EQ(Value(2003, 2, 31), Value(2003, 3, 3));
    EXPECT_EQ(Value(2004, 2, 31), Value(2004, 3, 2));
    EXPECT_EQ(Value(2003, 14, 5), Value(2004, 2, 5));
    EXPECT_EQ(DateTime::FromFields(70000, 1, 1).year, 32767);
    EXPECT_EQ(DateTime::FromFields(-70000, 1, 1).year, -32768);
}

TEST(DateTime, DaysAndWeeksMoveTheValue) {
    DateTime date = DateTime::FromFields(2004, 2, 28, 12);
    date.AddDays(1.5);
    EXPECT_EQ(DateText(date) + " " + TimeText(date), "2004-3-1 0:0:0");
    date.AddWeeks(-1);
    EXPECT_EQ(DateText(date), "2004-2-23");
    EXPECT_EQ(DateText(date++), "2004-2-23");
    EXPECT_EQ(DateText(date), "2004-2-24");
    EXPECT_EQ(DateText(--date), "2004-2-23");
    EXPECT_EQ(DateText(date--), "2004-2-23");
    EXPECT_EQ(DateText(++date), "2004-2-23");
}

TEST(DateTime, MonthsAndYearsMoveTheFields) {
    const auto plusMonths = [](int year, int month, int day, std::int16_t months) {
        DateTime date = DateTime::FromFields(year, month, day);
        date.AddMonths(months);
        EXPECT_EQ(date.value, Value(date.year, date.month, date.day));
        return DateText(date);
    };
    EXPECT_EQ(plusMonths(2003, 1, 31, 1), "2003-3-3");
    EXPECT_EQ(plusMonths(2004, 1, 31, 1), "2004-3-2");
    EXPECT_EQ(plusMonths(2004, 1, 15, -1), "2003-12-15");
    EXPECT_EQ(plusMonths(2004, 1, 15, 25), "2006-2-15");
    EXPECT_EQ(plusMonths(2004, 5, 31, 1), "2004-7-1");
    EXPECT_EQ(plusMonths(2004, 1, 15, 32767), "4734-8-15");

    DateTime leapDay = DateTime::FromFields(2004, 2, 29);
    leapDay.AddYears(1);
    EXPECT_EQ(leapDay.value, Value(2005, 3, 1));
}

TEST(DateTime, SettersClampTheDayAndKeepTheOtherHalf) {
    DateTime date = DateTime::FromFields(2004, 2, 10, 9, 8, 7);
    date.SetDate(4, 31, 2004);
    EXPECT_EQ(DateText(date) + " " + TimeText(date), "2004-4-30 0:0:0");
    date.SetTime(6, 0, 0);
    EXPECT_EQ(date.value, Value(2004, 4, 30) + 0.25);
    EXPECT_EQ(DateText(date) + " " + TimeText(date), "2004-4-30 6:0:0");
    date.SetDate(2, 30, 1900);
    EXPECT_EQ(DateText(date), "1900-2-28");
    date.SetDate(1, 1, 10000);
    EXPECT_EQ(DateText(date), "0-1-1");
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
