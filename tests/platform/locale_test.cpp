#include "platform/locale.h"

#include <gtest/gtest.h>

namespace velm {
namespace {

// The tests run with the C locale in their environment, which writes as in the United States.
TEST(Locale, WritesTheDatesAndTimesThatEverySystemCanWrite) {
    const CVelmLocale& locale = SystemLocale();
    const std::pair<CVelmCalendarTime, std::optional<CVelmString>> dates[] = {
        {{2024, 7, 5}, u"7/5/2024"},       {{1752, 12, 31}, u"12/31/1752"},   {{1601, 1, 1}, u"1/1/1601"},
        {{30827, 12, 31}, u"12/31/30827"}, {{2024, 2, 29, 24}, u"2/29/2024"}, {{1600, 12, 31}, std::nullopt},
        {{30828, 1, 1}, std::nullopt},     {{-44, 3, 15}, std::nullopt},      {{0, 0, 0}, std::nullopt},
        {{2023, 2, 29}, std::nullopt},     {{1900, 2, 29}, std::nullopt},     {{2024, 13, 1}, std::nullopt},
        {{2024, 4, 31}, std::nullopt}};
    for (const auto& [date, text] : dates) {
        EXPECT_EQ(locale.ShortDate(date), text) << date.year << "-" << date.month << "-" << date.day;
    }
    std::string lengths;
    for (int month = 1; month <= 12; ++month) {
        int days = 0;
        while (locale.ShortDate({2023, month, days + 1})) {
            ++days;
        }
        lengths += std::to_string(days) + " ";
    }
    EXPECT_EQ(lengths, "31 28 31 30 31 30 31 31 30 31 30 31 ");
    const std::pair<CVelmCalendarTime, std::optional<CVelmString>> times[] = {
        {{2024, 7, 5, 9, 5, 3}, u"9:05:03 AM"},
        {{2024, 7, 5, 0, 0, 0}, u"12:00:00 AM"},
        {{2024, 7, 5, 12, 30, 0}, u"12:30:00 PM"},
        {{-44, 3, 15, 23, 59, 59}, u"11:59:59 PM"},
        {{2024, 7, 5, 24, 0, 0}, std::nullopt}};
    for (const auto& [time, text] : times) {
        EXPECT_EQ(locale.TimeOfDay(time), text) << time.hour << ":" << time.minute;
    }
    const std::optional<CVelmString> days[] = {std::nullopt, u"Sunday", u"Monday",   u"Tuesday",  u"Wednesday",
                                               u"Thursday",  u"Friday", u"Saturday", std::nullopt};
    for (int day = 0; day <= 8; ++day) {
        EXPECT_EQ(locale.DayName(day), days[day]);
    }
    EXPECT_EQ(locale.ShortDatePattern(), u"M/d/yyyy");
}

}  // namespace
}  // namespace velm
