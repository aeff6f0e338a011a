#pragma once

#include <cstdint>

#include "platform/calendar_time.h"

namespace velm {

/// The system's clock. Tests substitute a fixed one.
class CVelmClock {
public:
    virtual ~CVelmClock() = default;

    virtual CVelmCalendarTime LocalTime() const = 0;
    virtual CVelmCalendarTime UtcTime() const = 0;

    /// The local date and time as a file time: ticks of 100 ns since 1601-01-01 00:00.
    virtual std::uint64_t LocalFileTime() const = 0;

    /// Converts a UTC file time (ticks of 100 ns since 1601-01-01 00:00 UTC) to local calendar time.
    virtual CVelmCalendarTime ToLocalCalendar(std::uint64_t fileTime) const = 0;
};

/// The clock of this machine; lives as long as the process.
const CVelmClock& SystemClock();

}  // namespace velm
