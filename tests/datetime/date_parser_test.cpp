#include "datetime/date_parser.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/fixed_clock.h"
#include "support/table.h"

namespace velm {
namespace {

TEST(DateParser, ReadsDatesInManyForms) {
    const test::FixedClock clock;  // 2024-07-05 09:05:03
    for (const auto& row : test::ReadTable(VELMORA_TESTS "/datetime/dates.txt")) {
        int year = 0, month = 0, day = 0;
        std::istringstream(row.at(1)) >> year >> month >> day;
        EXPECT_EQ(ParseDate(FromUtf8(row.at(0)), clock).value, DateTime::FromFields(year, month, day).value)
            << row.at(0);
    }
    EXPECT_EQ(ParseDate(u"3/ 5/ 2004 ", clock).value, DateTime::FromFields(2004, 3, 5).value);
    EXPECT_EQ(ParseDate(u"Now", clock).value, DateTime::FromFields(2024, 7, 5, 9, 5, 3).value);

    for (const CVelmStringView text :
         {u"", u" ", u"/5/2004", u"0/5/2004", u"3/0/2004", u"-3/5/2004", u"[]", u"3,", u"2004", u"200403", u"today ",
          u"05   Mar 2004", u"Friday, Foo 05, 2004", u"Friday"}) {
        const DateTime date = ParseDate(text, clock);
        EXPECT_EQ(date.value, 1721422) << "not the cleared date: " << ToUtf8(text);
        EXPECT_TRUE(date.year == 0 && date.month == 0 && date.day == 0) << ToUtf8(text);
    }
}

}  // namespace
}  // namespace velm
