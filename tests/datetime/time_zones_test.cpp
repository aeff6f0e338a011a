#include "datetime/time_zones.h"

#include <gtest/gtest.h>

#include <cmath>

#include "datetime/date_time.h"
#include "support/fixed_clock.h"
#include "support/table.h"

namespace velm {
namespace {

constexpr double SECOND = 1.0 / 86400;

double At(int year, int month, int day, int hour = 0, int minute = 0) {
    return DateTime::FromFields(year, month, day, hour, minute).value;
}

TEST(TimeZones, CodesAreFoundAndOthersFail) {
    ASSERT_EQ(TimeZones().size(), 75U);
    for (const TimeZoneRow& row : TimeZones()) {
        EXPECT_EQ(FindTimeZone(row.code), &row);
        for (const double value : {1e300, -1e300, std::nan(""), HUGE_VAL, -5.5e6, 1.2e7}) {
            double local = value;
            EXPECT_TRUE(FromUtc(row.code, local) && ToUtc(row.code, local)) << row.code;
        }
    }
    double value = 2451544;
    for (const double zone : {5.0, 301.0, -1.0, 1005.0, -1004.0, 1e300}) {
        EXPECT_FALSE(FromUtc(zone, value) || ToUtc(zone, value)) << zone;
    }
    EXPECT_EQ(value, 2451544);
}

TEST(TimeZones, OffsetsFollowTheSeason) {
    const struct {
        double zone, inJanuary, inJuly;
    } cases[] = {
        {85, 0, 1},    {1085, 0, 0},      {2085, 0, 0},     {4, -8, -7},     {4.9, -8, -7},     {1004, -8, -8},
        {0, -12, -12}, {-1000, -12, -12}, {60, -3.5, -2.5}, {190, 5.5, 5.5}, {193, 5.75, 5.75}, {56, -3, -4},
        {65, -2, -3},  {255, 11, 10},     {290, 13, 12},    {300, 13, 13},   {1290, 12, 12},
    };
    for (const auto& [zone, inJanuary, inJuly] : cases) {
        for (const auto& [utc, hours] : {std::pair(At(2004, 1, 10, 12), inJanuary), {At(2004, 7, 1, 12), inJuly}}) {
            double value = utc;
            EXPECT_TRUE(FromUtc(zone, value));
            EXPECT_NEAR((value - utc) * 24, hours, 1e-4) << "zone " << zone << " at " << utc;
            EXPECT_TRUE(ToUtc(zone, value));
            EXPECT_NEAR(value, utc, SECOND / 10) << "zone " << zone << " and back";
        }
    }
}

/// The hours of 2004 after which a zone's daylight time begins or ends: "4/4 2 10/31 2".
std::string ChangesOf2004(const TimeZoneRow& row) {
    std::string changes;
    bool was = IsDaylightTime(row, At(2004, 1, 1));
    for (int hour = 0; hour < 366 * 24; ++hour) {
        const DateTime date = DateTime::FromFields(2004, 1, 1 + hour / 24, hour % 24);
        if (IsDaylightTime(row, date.value + SECOND) != was) {
            was = !was;
            const DateTime shown = DateTime::FromValue(date.value);
            changes += (changes.empty() ? "" : " ") + std::to_string(shown.month) + "/" + std::to_string(shown.day) +
                       " " + std::to_string(hour % 24);
        }
    }
    return changes;
}

TEST(TimeZones, AreThoseOfTheTable) {
    const auto rows = test::ReadTable(VELMORA_TESTS "/datetime/zones.txt");
    ASSERT_EQ(rows.size(), TimeZones().size());
    for (const auto& row : rows) {
        const TimeZoneRow* zone = FindTimeZone(std::stoi(row.at(0)));
        ASSERT_NE(zone, nullptr) << row.at(0);
        double standard = 0.0;
        EXPECT_TRUE(FromUtc(zone->code + 1000, standard));
        EXPECT_NEAR(standard * 24, std::stod(row.at(1)), 1e-4) << row.at(0);
        EXPECT_EQ(ChangesOf2004(*zone), row.at(2)) << row.at(0);
    }
}

TEST(TimeZones, DaylightTimeLiesStrictlyBetweenItsChanges) {
    TimeZoneRow dated = *FindTimeZone(85);  // a rule with a year holds on that date only, its day clamped to the month
    dated.daylightDate = {.year = 2004, .month = 5, .day = 10, .hour = 3, .minute = 30};
    dated.standardDate = {.year = 2004, .month = 6, .day = 31, .hour = 4};
    const struct {
        const TimeZoneRow& row;
        double change;
        bool begins;
    } cases[] = {
        {*FindTimeZone(85), At(2004, 3, 28, 1), true},
        {*FindTimeZone(85), At(2004, 10, 31, 2), false},
        {*FindTimeZone(265), At(2004, 3, 28, 3), false},  // of the southern half
        {*FindTimeZone(265), At(2004, 10, 3, 2), true},
        {*FindTimeZone(4), At(2001, 4, 8, 2), true},   // 1 April 2001 was a Sunday: the first one becomes the 8th
        {*FindTimeZone(80), At(2001, 4, 1, 2), true},  // and the last one of March the 1 April
        {dated, At(2004, 5, 10, 3, 30), true},
        {dated, At(2004, 6, 30, 4), false},
    };
    for (const auto& [row, change, begins] : cases) {
        EXPECT_EQ(IsDaylightTime(row, change - SECOND), !begins) << row.code << " before " << change;
        EXPECT_FALSE(IsDaylightTime(row, change)) << row.code << " at " << change;
        EXPECT_EQ(IsDaylightTime(row, change + SECOND), begins) << row.code << " after " << change;
    }
}

TEST(TimeZones, TheTimeNowIsLocalOrThatOfAZone) {
    const test::FixedClock clock({2004, 7, 1, 14, 30, 0}, 2);
    double value = 0;
    EXPECT_TRUE(ZoneTimeNow(-1, clock, value));
    EXPECT_EQ(value, At(2004, 7, 1, 14, 30));
    EXPECT_TRUE(ZoneTimeNow(85, clock, value));
    EXPECT_NEAR(value, At(2004, 7, 1, 13, 30), SECOND / 10);
    value = 7;
    EXPECT_FALSE(ZoneTimeNow(5, clock, value));
    EXPECT_EQ(value, 7);
}

}  // namespace
}  // namespace velm
