#include "datetime/date_parser.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/fixed_clock.h"

namespace velm {
namespace {

const test::FixedClock CLOCK;  // 2024-07-05 09:05:03

double Parse(CVelmStringView text) {
    return ParseDate(text, CLOCK).value;
}

double Value(int year, int month, int day) {
    return DateTime::FromFields(year, month, day).value;
}

struct DateCase {
    CVelmStringView text;
    int year, month, day;
};

void ExpectDates(std::initializer_list<DateCase> cases) {
    for (const auto& [text, year, month, day] : cases) {
        EXPECT_EQ(Parse(text), Value(year, month, day)) << '"' << ToUtf8(text) << '"';
    }
}

TEST(DateParser, WordsForTodayAndNow) {
    ExpectDates({{u"TODAY", 2024, 7, 5}, {u"today", 2024, 7, 5}, {u".", 2024, 7, 5}, {u".5", 2024, 7, 5}});
    EXPECT_EQ(Parse(u"Now"), DateTime::FromFields(2024, 7, 5, 9, 5, 3).value);
    EXPECT_EQ(Parse(u"TODAY"), std::trunc(Parse(u"NOW")));
}

TEST(DateParser, MonthDayAndYearBetweenSeparators) {
    ExpectDates({{u"3/5/2004", 2004, 3, 5},
                 {u"3/5/04", 2004, 3, 5},
                 {u"3-5-1999", 1999, 3, 5},
                 {u"03 05 2004", 2004, 3, 5},
                 {u"3/ 5/ 2004 ", 2004, 3, 5},
                 {u"3-5", 2024, 3, 5},
                 {u"2/31/2003", 2003, 3, 3},
                 {u"2/31/2004", 2004, 3, 2},
                 {u"13/1/2003", 2004, 1, 1},
                 {u"3/5/99999999999999999999", 32767, 3, 5}});
}

TEST(DateParser, TwoDigitYearsLieAroundTheTurnOfTheMillennium) {
    ExpectDates({{u"3/5/1", 2001, 3, 5},
                 {u"3/5/50", 2050, 3, 5},
                 {u"3/5/51", 1951, 3, 5},
                 {u"3/5/99", 1999, 3, 5},
                 {u"3/5/100", 100, 3, 5},
                 {u"3/5/0", 0, 3, 5}});
}

TEST(DateParser, MonthNames) {
    ExpectDates({{u"Friday, March 05, 2004", 2004, 3, 5},
                 {u"fri, mar 5, 04", 2004, 3, 5},
                 {u"x DECEMBER 31 1999", 1999, 12, 31},
                 {u"05 March 2004, 10:00", 2004, 3, 5},
                 {u"5 Oct 2004  noon, so", 2004, 10, 5},
                 {u"05   Mar 2004", 0, 0, 0},
                 {u"Friday, Foo 05, 2004", 0, 0, 0},
                 {u"Friday", 0, 0, 0},
                 {u"today ", 0, 0, 0}});
    // 13 characters with a letter at the sixth: the month is still found behind the first blank.
    ExpectDates({{u"05 June, 2004", 2004, 6, 5}, {u"5 Sept., 2004", -2004, 9, 5}});
}

TEST(DateParser, DigitsOnlyAreYearMonthDay) {
    ExpectDates({{u"20040305", 2004, 3, 5},
                 {u"00510305", 1951, 3, 5},
                 {u"200403059", 2004, 3, 5},
                 {u"2004", 0, 0, 0},
                 {u"200403", 0, 0, 0}});
}

TEST(DateParser, APointMakesTheYearOneBeforeTheCommonEra) {
    ExpectDates({{u"3/15/44 B.C.E.", -44, 3, 15},
                 {u"Friday, March 15, 44 B.C.E.", -44, 3, 15},
                 {u"3.5.2004", -2004, 3, 5},
                 {u"3/15/-44", -44, 3, 15}});
}

TEST(DateParser, WhatCannotBeReadIsTheClearedDate) {
    for (const CVelmStringView text : {u"", u" ", u"/5/2004", u"0/5/2004", u"3/0/2004", u"-3/5/2004", u"[]", u"3,"}) {
        const DateTime date = ParseDate(text, CLOCK);
        EXPECT_EQ(date.value, 1721422) << '"' << ToUtf8(text) << '"';
        EXPECT_TRUE(date.year == 0 && date.month == 0 && date.day == 0) << ToUtf8(text);
    }
}

}  // namespace
}  // namespace velm
