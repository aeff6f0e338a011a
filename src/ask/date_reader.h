#pragma once

#include <cstddef>
#include <optional>

#include "platform/clock.h"
#include "platform/text.h"

namespace velm {

/// A date or a time of day as people type it.
struct TypedMoment {
    std::size_t end = 0;
    bool isMoment = false;     ///< a date, with or without a time; otherwise a clock time, which may be a duration too
    double value = 0.0;        ///< a DateTime value, or seconds
    bool hasTime = false;      ///< of a moment
    bool isTimeOfDay = false;  ///< of a clock time: never a duration
};

/// Reads "today", "now", "dec 25", "25 december 2026", "2026-12-25 18:00", "12/25/2026", "7:45:00" or "9 pm" at a
/// position. A date without a year is in the clock's year. Nothing when there is none.
std::optional<TypedMoment> ReadTypedMoment(CVelmStringView text, std::size_t position, const CVelmClock& clock);

/// The end of what looks like a date but is none, such as "feb 30"; 0 when nothing at the position does.
std::size_t WrongDateEnd(CVelmStringView text, std::size_t position);

}  // namespace velm
