#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "zone_history.h"

namespace velm::zones {

/// A change of clocks that comes every year on the first such weekday from some day on, always at the same time.
struct YearlyChange {
    std::chrono::weekday weekday;
    std::int64_t secondOfDay = 0;
    int firstDay = 0;  ///< days after 1 March; the change is on this day or one of the six behind it

    /// The time of the change in the year that begins with March of `year`.
    std::int64_t TimeIn(int year) const;

    /// The days since 1 March, at the latest change's weekday and time of day before x: 23.25 to 24 when that was 24
    /// days after it, and so on, which is exact from 1928 to 2100.
    std::string Position() const;

    /// "the Sunday of 25 to 31 March, 2:00"
    std::string Words() const;
};

/// The change that comes at these times, each in another year; nothing when there is none.
std::optional<YearlyChange> FitYearlyChange(const std::vector<std::int64_t>& times);

/// The year whose March the time follows, within twelve months.
int MarchYear(std::int64_t time);

/// A time as a date and time value of a formula, a part of a second early, so that rounding cannot make a comparison
/// with the time itself wrong.
std::string ValueText(std::int64_t time);

/// Middle and half the length of a stretch of time in the same way: their sum and difference are its ends' values.
std::string MiddleText(std::int64_t begin, std::int64_t end);
std::string HalfLengthText(std::int64_t begin, std::int64_t end);

/// "30 October 2022"
std::string DateWords(std::int64_t time);

}  // namespace velm::zones
