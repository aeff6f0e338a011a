#include "datetime/time_zones.h"

#include <gtest/gtest.h>

#include <cmath>

#include "datetime/date_time.h"
#include "support/fixed_clock.h"

namespace velm {
namespace {

constexpr double HOUR = 1.0 / 24;
constexpr double SECOND = 1.0 / 86400;

double At(int year, int month, int day, int hour = 0) {
    return DateTime::FromFields(year, month, day, hour).value;
}

/// Hours that a zone's clocks are ahead of UTC at a UTC time.
double HoursAhead(double zone, double utc) {
    double local = utc;
    EXPECT_TRUE(FromUtc(zone, local)) << zone;
    return std::round((local - utc) * 24 * 1000) / 1000;
}

TEST(TimeZones, CodesAreFoundAndOthersFail) {
    ASSERT_EQ(TimeZones().size(), 75U);
    for (const TimeZoneRow& row : TimeZones()) {
        EXPECT_EQ(FindTimeZone(row.code), &row);
    }
    double value = 2451544;
    for (const double zone : {5.0, 301.0, -1.0, 1005.0, -1004.0, 1e300}) {
        EXPECT_FALSE(FromUtc(zone, value) || ToUtc(zone, value)) << zone;
    }
    EXPECT_EQ(value, 2451544);
}

TEST(TimeZones, OffsetsFollowTheSeason) {
    const double january = At(2004, 1, 10, 12);
    const double july = At(2004, 7, 1, 12);
    const struct {
        double zone, inJanuary, inJuly;
    } cases[] = {
        {85, 0, 1},    {1085, 0, 0},      {2085, 0, 0},     {4, -8, -7},     {4.9, -8, -7},     {1004, -8, -8},
        {0, -12, -12}, {-1000, -12, -12}, {60, -3.5, -2.5}, {190, 5.5, 5.5}, {193, 5.75, 5.75}, {56, -3, -4},
        {65, -2, -3},  {255, 11, 10},     {290, 13, 12},    {300, 13, 13},   {1290, 12, 12},
    };
    for (const auto& [zone, inJanuary, inJuly] : cases) {
        EXPECT_EQ(HoursAhead(zone, january), inJanuary) << "zone " << zone << " in January";
        EXPECT_EQ(HoursAhead(zone, july), inJuly) << "zone " << zone << " in July";
        for (const double utc : {january, july}) {
            double value = utc;
            EXPECT_TRUE(FromUtc(zone, value) && ToUtc(zone, value));
            EXPECT_NEAR(value, utc, SECOND / 10) << "zone " << zone << " and back";
        }
    }
}

TEST(TimeZones, DaylightTimeLiesStrictlyBetweenItsChanges) {
    // In 2004 zone 85 changes on 28 March at 1:00 and on 31 October at 2:00.
    const TimeZoneRow& northern = *FindTimeZone(85);
    EXPECT_FALSE(IsDaylightTime(northern, At(2004, 3, 28, 1)));
    EXPECT_TRUE(IsDaylightTime(northern, At(2004, 3, 28, 1) + SECOND));
    EXPECT_TRUE(IsDaylightTime(northern, At(2004, 10, 31, 2) - SECOND));
    EXPECT_FALSE(IsDaylightTime(northern, At(2004, 10, 31, 2)));

    // Zone 265 changes on 28 March at 3:00 and on 3 October at 2:00.
    const TimeZoneRow& southern = *FindTimeZone(265);
    EXPECT_TRUE(IsDaylightTime(southern, At(2004, 3, 28, 3) - SECOND));
    EXPECT_FALSE(IsDaylightTime(southern, At(2004, 3, 28, 3)));
    EXPECT_FALSE(IsDaylightTime(southern, At(2004, 10, 3, 2)));
    EXPECT_TRUE(IsDaylightTime(southern, At(2004, 10, 3, 2) + SECOND));
}

TEST(TimeZones, AMonthThatBeginsOnTheWantedDayChangesAWeekLate) {
    // 1 April 2001 was a Sunday: zone 4's first Sunday of April becomes the 8th.
    const TimeZoneRow& row = *FindTimeZone(4);
    EXPECT_FALSE(IsDaylightTime(row, At(2001, 4, 8, 2)));
    EXPECT_TRUE(IsDaylightTime(row, At(2001, 4, 8, 2) + SECOND));
    // 1 April 2001 follows March: zone 80's last Sunday of March becomes 1 April.
    const TimeZoneRow& last = *FindTimeZone(80);
    EXPECT_FALSE(IsDaylightTime(last, At(2001, 4, 1, 2)));
    EXPECT_TRUE(IsDaylightTime(last, At(2001, 4, 1, 2) + SECOND));
}

TEST(TimeZones, ARuleWithAYearHoldsOnThatDateOnly) {
    TimeZoneRow row = *FindTimeZone(85);
    row.daylightDate = {.year = 2004, .month = 5, .day = 10, .hour = 3, .minute = 30};
    row.standardDate = {.year = 2004, .month = 6, .day = 31, .hour = 4};
    const double change = At(2004, 5, 10, 3) + HOUR / 2;
    EXPECT_FALSE(IsDaylightTime(row, change));
    EXPECT_TRUE(IsDaylightTime(row, change + SECOND));
    EXPECT_TRUE(IsDaylightTime(row, At(2004, 6, 30, 4) - SECOND)) << "the day is clamped to the month";
    EXPECT_FALSE(IsDaylightTime(row, At(2004, 6, 30, 4) + SECOND));
}

TEST(TimeZones, EveryValueHasAnAnswer) {
    for (const double value : {1e300, -1e300, std::nan(""), HUGE_VAL, -5.5e6, 1.2e7}) {
        for (const TimeZoneRow& row : TimeZones()) {
            double local = value;
            EXPECT_TRUE(FromUtc(row.code, local) && ToUtc(row.code, local)) << row.code;
        }
    }
}

TEST(TimeZones, TheTimeNowIsLocalOrThatOfAZone) {
    const test::FixedClock clock({2004, 7, 1, 14, 30, 0}, 2);
    double value = 0;
    EXPECT_TRUE(ZoneTimeNow(-1, clock, value));
    EXPECT_EQ(value, DateTime::FromFields(2004, 7, 1, 14, 30).value);
    EXPECT_TRUE(ZoneTimeNow(85, clock, value));
    EXPECT_NEAR(value, DateTime::FromFields(2004, 7, 1, 13, 30).value, SECOND / 10);
    value = 7;
    EXPECT_FALSE(ZoneTimeNow(5, clock, value));
    EXPECT_EQ(value, 7);
}

}  // namespace
}  // namespace velm
