#include "datetime/calendar_day.h"

#include <gtest/gtest.h>

#include "support/fixed_clock.h"

namespace velm::test {
namespace {

std::string Read(CVelmStringView text) {
    const auto day = ReadDay(text);
    return day ? ToUtf8(DayText(*day)) : "none";
}

TEST(CalendarDay, IsReadFromTheFormsOfTables) {
    for (const CVelmStringView text :
         {u"2024-07-05", u"2024-07-05 16:00", u"2024-07-05T16:00", u"5 July 2024", u"05 Jul 2024"}) {
        EXPECT_EQ(Read(text), "2024-07-05") << ToUtf8(text);
    }
    EXPECT_EQ(Read(u"2024-02-29"), "2024-02-29");
    for (const CVelmStringView text :
         {u"", u"2023-02-29", u"2024-13-01", u"2024-00-01", u"2024-1-1", u"2024-07-051", u"x2024-07-05", u"July 2024",
          u"261 July 2024", u"5 Juli", u"5  2024", u"5 Foo 2024", u"-5 July 2024", u"5 July 20245", u"at noon"}) {
        EXPECT_EQ(Read(text), "none") << ToUtf8(text);
    }
}

TEST(CalendarDay, CountsDays) {
    const CVelmDay today = Today(FixedClock({2024, 3, 1, 23, 59, 59}));
    EXPECT_EQ(ToUtf8(DayText(today)), "2024-03-01");
    EXPECT_EQ(DaysBetween(*ReadDay(u"2024-02-28"), today), 2);
    EXPECT_EQ(DaysBetween(today, *ReadDay(u"2023-03-01")), -366);
    EXPECT_LT(*ReadDay(u"2023-12-31"), today);
}

}  // namespace
}  // namespace velm::test
