#pragma once

#include "platform/clock.h"
#include "platform/file_time.h"

namespace velm::test {

/// A fixed clock. Local time is ahead of UTC by `offsetHours`, which must not carry into another day.
class FixedClock : public CVelmClock {
public:
    /// Friday 2024-07-05 09:05:03, the default local time.
    explicit FixedClock(CVelmCalendarTime local = {2024, 7, 5, 9, 5, 3, 6}, int offsetHours = 0)
        : now(local), offset(offsetHours) {}

    CVelmCalendarTime LocalTime() const override { return now; }

    CVelmCalendarTime UtcTime() const override {
        CVelmCalendarTime utc = now;
        utc.hour -= offset;
        return utc;
    }

    std::uint64_t LocalFileTime() const override { return fileTime; }

    /// Days count from 1601-01-01 as days of January: enough to distinguish file times.
    CVelmCalendarTime ToLocalCalendar(std::uint64_t ticks) const override {
        const auto seconds = static_cast<int>(ticks / TICKS_PER_SECOND) + offset * 3600;
        return {1601, 1, seconds / 86400 + 1, seconds / 3600 % 24, seconds / 60 % 60, seconds % 60, 1};
    }

    CVelmCalendarTime now;
    int offset;
    std::uint64_t fileTime = 0;
};

}  // namespace velm::test
