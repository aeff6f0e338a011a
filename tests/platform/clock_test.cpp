#include "platform/clock.h"

#include <gtest/gtest.h>

#include "platform/file_time.h"

namespace velm {
namespace {

/// Seconds from 1970 to a date and time, by the count of days of the Gregorian calendar.
std::int64_t SecondsOf(const CVelmCalendarTime& time) {
    const std::int64_t year = time.month > 2 ? time.year : time.year - 1;
    const std::int64_t era = year / 400;
    const std::int64_t yearOfEra = year % 400;
    const std::int64_t dayOfYear = (153 * (time.month + (time.month > 2 ? -3 : 9)) + 2) / 5 + time.day - 1;
    const std::int64_t days = era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
    return ((days * 24 + time.hour) * 60 + time.minute) * 60 + time.second;
}

TEST(Clock, LocalTimeUtcAndFileTimeAgree) {
    const CVelmClock& clock = SystemClock();
    const std::int64_t utc = SecondsOf(clock.UtcTime());
    const std::int64_t local = SecondsOf(clock.LocalTime());
    const auto ticks = static_cast<std::int64_t>(clock.LocalFileTime());
    EXPECT_NEAR(static_cast<double>(ticks / TICKS_PER_SECOND - SECONDS_1601_TO_1970), static_cast<double>(local), 2);
    const CVelmCalendarTime sameMoment = clock.ToLocalCalendar(ToFileTime(utc, 0));
    EXPECT_NEAR(static_cast<double>(SecondsOf(sameMoment)), static_cast<double>(local), 2);
    EXPECT_EQ((SecondsOf(sameMoment) / 86400 + 4) % 7 + 1, sameMoment.weekday);
}

TEST(Clock, AFileTimeBecomesItsCalendarTime) {
    // The offset from UTC is the machine's own, so the moment is compared with it taken away.
    const std::int64_t seconds = SecondsOf({2001, 9, 9, 1, 46, 40, 1});
    EXPECT_EQ(seconds, 1'000'000'000);
    const std::int64_t local = SecondsOf(SystemClock().ToLocalCalendar(ToFileTime(seconds, 999'999'999)));
    EXPECT_EQ((local - seconds) % 900, 0) << "zones differ from UTC by quarters of an hour";
    EXPECT_LE(std::abs(local - seconds), 14 * 3600);
    EXPECT_EQ(ToFileTime(-SECONDS_1601_TO_1970 - 5, 0), 0U);
}

}  // namespace
}  // namespace velm
