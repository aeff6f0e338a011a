#include "platform/locale.h"

#include <gtest/gtest.h>

namespace velm {
namespace {

CVelmCalendarTime At(int year, int month, int day, int hour = 9, int minute = 5, int second = 3) {
    return {year, month, day, hour, minute, second, 6};
}

TEST(Locale, WritesAsInTheUnitedStatesWhereNoLanguageIsChosen) {
    // The tests run with the C locale in their environment.
    const CVelmLocale& locale = SystemLocale();
    EXPECT_EQ(locale.ShortDate(At(2024, 7, 5)), u"7/5/2024");
    EXPECT_EQ(locale.ShortDate(At(1752, 12, 31)), u"12/31/1752");
    EXPECT_EQ(locale.TimeOfDay(At(2024, 7, 5)), u"9:05:03 AM");
    EXPECT_EQ(locale.TimeOfDay(At(2024, 7, 5, 0, 0, 0)), u"12:00:00 AM");
    EXPECT_EQ(locale.TimeOfDay(At(2024, 7, 5, 12, 30, 0)), u"12:30:00 PM");
    EXPECT_EQ(locale.TimeOfDay(At(2024, 7, 5, 23, 59, 59)), u"11:59:59 PM");
    EXPECT_EQ(locale.DayName(1), u"Sunday");
    EXPECT_EQ(locale.DayName(2), u"Monday");
    EXPECT_EQ(locale.DayName(7), u"Saturday");
    EXPECT_EQ(locale.ShortDatePattern(), u"M/d/yyyy");
}

TEST(Locale, AnswersForEveryDateThatEachSystemCanWrite) {
    const CVelmLocale& locale = SystemLocale();
    EXPECT_TRUE(locale.ShortDate(At(1601, 1, 1)).has_value());
    EXPECT_TRUE(locale.ShortDate(At(30827, 12, 31)).has_value());
    EXPECT_TRUE(locale.ShortDate(At(2024, 2, 29, 24)).has_value()) << "the time of day does not matter to a date";
    for (const CVelmCalendarTime& time : {At(1600, 12, 31), At(30828, 1, 1), At(-44, 3, 15), At(0, 0, 0),
                                          At(2023, 2, 29), At(1900, 2, 29), At(2024, 13, 1), At(2024, 4, 31)}) {
        EXPECT_FALSE(locale.ShortDate(time).has_value()) << time.year << "-" << time.month << "-" << time.day;
    }
    EXPECT_TRUE(locale.TimeOfDay(At(-44, 3, 15, 23, 59, 59)).has_value()) << "the date does not matter to a time";
    EXPECT_FALSE(locale.TimeOfDay(At(2024, 7, 5, 24)).has_value());
    EXPECT_FALSE(locale.DayName(0).has_value());
    EXPECT_FALSE(locale.DayName(8).has_value());
    ASSERT_TRUE(locale.ShortDatePattern().has_value());
    EXPECT_LE(locale.ShortDatePattern()->size(), 19U);
}

}  // namespace
}  // namespace velm
