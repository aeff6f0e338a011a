#include "datetime/time_zones.h"

#include <gtest/gtest.h>

#include <cmath>

#include "datetime/date_time.h"
#include "support/table.h"

namespace velm {
namespace {

constexpr double SECOND = 1.0 / 86400;

double At(int year, int month, int day, int hour = 0, int minute = 0) {
    return DateTime::FromFields(year, month, day, hour, minute).value;
}

TEST(TimeZones, CodesAreFoundAndOthersFail) {
    ASSERT_EQ(TimeZones().size(), 75U);
    for (double local : {1e300, -1e300, std::nan(""), HUGE_VAL, -5.5e6, 1.2e7}) {
        EXPECT_TRUE(FromUtc(85, local) && ToUtc(85, local)) << local;
    }
    // Standard time only, and codes with a fraction.
    for (const auto& [zone, hours] : {std::pair(4.9, -7.0), {1004.0, -8.0}, {2085.0, 0.0}, {-1000.0, -12.0}}) {
        double local = At(2004, 7, 1);
        EXPECT_TRUE(FromUtc(zone, local));
        EXPECT_NEAR((local - At(2004, 7, 1)) * 24, hours, 1e-4) << zone;
    }
    double value = 2451544;
    for (const double zone : {5.0, 301.0, -1.0, 1005.0, -1004.0, 1e300}) {
        EXPECT_FALSE(FromUtc(zone, value) || ToUtc(zone, value)) << zone;
    }
    EXPECT_EQ(value, 2451544);
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

TEST(TimeZones, AreThoseOfTheTableBothWays) {
    const auto rows = test::ReadTable(VELMORA_TESTS "/datetime/zones.txt");
    ASSERT_EQ(rows.size(), TimeZones().size());
    for (const auto& row : rows) {
        const TimeZoneRow* zone = FindTimeZone(std::stoi(row.at(0)));
        ASSERT_NE(zone, nullptr) << row.at(0);
        for (const double utc : {At(2004, 1, 10, 12), At(2004, 7, 1, 12)}) {
            double local = utc;
            EXPECT_TRUE(FromUtc(zone->code, local));
            const double hours = std::stod(row.at(1)) + (!row.at(2).empty() && IsDaylightTime(*zone, local) ? 1 : 0);
            EXPECT_NEAR((local - utc) * 24, hours, 1e-4) << row.at(0);
            EXPECT_TRUE(ToUtc(zone->code, local));
            EXPECT_NEAR(local, utc, SECOND / 10) << row.at(0) << " and back";
        }
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

}  // namespace
}  // namespace velm
