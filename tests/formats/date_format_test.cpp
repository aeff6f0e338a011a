#include "formats/date_format.h"

#include <gtest/gtest.h>

#include <cmath>

#include "datetime/date_time.h"
#include "support/fixed_locale.h"

namespace velm {
namespace {

double Value(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return DateTime::FromFields(year, month, day, hour, minute, second).value;
}

std::string Date(double value, const CVelmLocale& locale = test::FixedLocale()) {
    return ToUtf8(FormatDate(value, false, locale));
}

std::string DateAndTime(double value, const CVelmLocale& locale = test::FixedLocale()) {
    return ToUtf8(FormatDate(value, true, locale));
}

TEST(DateFormat, WeekdayDateAndTimeAsTheLocaleWritesThem) {
    EXPECT_EQ(Date(Value(2024, 7, 1)), "Mon 7/1/2024");
    EXPECT_EQ(Date(Value(2024, 7, 7, 12)), "Sun 7/7/2024");
    EXPECT_EQ(DateAndTime(Value(2024, 7, 5, 9, 5, 3)), "Fri 7/5/2024 9:05:03");
}

TEST(DateFormat, WhatTheLocaleCannotWriteIsPlainNumbers) {
    EXPECT_EQ(Date(1705426), "Thu 3/15/44 BC");
    EXPECT_EQ(DateAndTime(Value(1066, 10, 14, 9, 5, 3)), "Sat 10/14/1066 9:05:03");
    EXPECT_EQ(DateAndTime(2451544 + 86399.99 / 86400), "Sat 1/1/2000 24:0:0");
    EXPECT_EQ(Date(Value(1900, 3, 1)), "Thu 2/29/1900");
    EXPECT_EQ(DateAndTime(std::nan("")), Date(0) + " 0:00:00");
    EXPECT_EQ(DateAndTime(1e300), "Wed 6/5/32767 0:00:00");

    class NoTime : public test::FixedLocale {
        std::optional<CVelmString> TimeOfDay(const CVelmCalendarTime&) const override { return std::nullopt; }
    };
    EXPECT_EQ(DateAndTime(Value(2024, 7, 5, 9, 5, 3), NoTime()), "Fri 7/5/2024 9:5:3");
}

TEST(DateFormat, NamesOfDaysAreCutToThreeCharacters) {
    class Named : public test::FixedLocale {
    public:
        explicit Named(std::optional<CVelmString> dayName) : dayName_(std::move(dayName)) {}
        std::optional<CVelmString> DayName(int) const override { return dayName_; }

    private:
        std::optional<CVelmString> dayName_;
    };
    const double value = Value(2024, 7, 1);
    EXPECT_EQ(Date(value, Named(u"Donnerstag")), "Don 7/1/2024");
    EXPECT_EQ(Date(value, Named(u"月")), "月 7/1/2024");
    EXPECT_EQ(Date(value, Named(std::nullopt)), " 7/1/2024");
}

TEST(DateFormat, PlainDatesFollowTheOrderOfTheShortDatePattern) {
    const struct {
        std::optional<CVelmString> pattern;
        bool monthFirst;
    } cases[] = {{u"M/d/yyyy", true}, {u" dd.MM.yy", false}, {u"D/M/Y", false},   {u"yyyy-MM-dd", true},
                 {u"  ", true},       {u"", true},           {std::nullopt, true}};
    for (const auto& [pattern, monthFirst] : cases) {
        test::FixedLocale locale;
        locale.pattern = pattern;
        EXPECT_EQ(IsMonthFirstLocale(locale), monthFirst) << ToUtf8(pattern.value_or(u"none"));
        EXPECT_EQ(Date(1705426, locale), monthFirst ? "Thu 3/15/44 BC" : "Thu 15/3/44 BC");
    }
}

TEST(DateFormat, AChangeOfThePatternDuringTheRunIsNotSeen) {
    test::FixedLocale locale;
    EXPECT_TRUE(IsMonthFirstLocale(locale));
    locale.pattern = u"d.M.yyyy";
    EXPECT_TRUE(IsMonthFirstLocale(locale));
}

}  // namespace
}  // namespace velm
