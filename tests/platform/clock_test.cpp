#include "platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

#include "platform/file_time.h"

namespace velm {
namespace {

/// Seconds from 1970 to a date and time, by the standard library's calendar.
std::int64_t SecondsOf(const CVelmCalendarTime& time) {
    using namespace std::chrono;
    const sys_days days = year(time.year) / time.month / time.day;
    return ((days.time_since_epoch().count() * 24LL + time.hour) * 60 + time.minute) * 60 + time.second;
}

TEST(Clock, LocalTimeUtcAndFileTimeAgree) {
    const CVelmClock& clock = SystemClock();
    const std::int64_t utc = SecondsOf(clock.UtcTime());
    const auto local = static_cast<double>(SecondsOf(clock.LocalTime()));
    const auto ticks = static_cast<std::int64_t>(clock.LocalFileTime());
    EXPECT_NEAR(static_cast<double>(ticks / TICKS_PER_SECOND - SECONDS_1601_TO_1970), local, 2);
    const CVelmCalendarTime sameMoment = clock.ToLocalCalendar(ToFileTime(utc, 0));
    EXPECT_NEAR(static_cast<double>(SecondsOf(sameMoment)), local, 2);
    EXPECT_EQ((SecondsOf(sameMoment) / 86400 + 4) % 7 + 1, sameMoment.weekday);

    // The offset from UTC is the machine's own, so the moment is compared with it taken away.
    constexpr std::int64_t BILLION = 1'000'000'000;
    const std::int64_t offset = SecondsOf(clock.ToLocalCalendar(ToFileTime(BILLION, 999'999'999))) - BILLION;
    EXPECT_EQ(offset % 900, 0) << "zones differ from UTC by quarters of an hour";
    EXPECT_LE(std::abs(offset), 14 * 3600);
    EXPECT_EQ(ToFileTime(-SECONDS_1601_TO_1970 - 5, 0), 0U);
}

}  // namespace
}  // namespace velm
