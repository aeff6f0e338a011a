#pragma once

#include <cstdint>

namespace velm {

/// A file time counts ticks of 100 ns since 1601-01-01 00:00.
constexpr std::int64_t TICKS_PER_SECOND = 10'000'000;
constexpr std::int64_t SECONDS_1601_TO_1970 = 11'644'473'600;

/// The file time of a Unix time in seconds and nanoseconds. Times before 1601 become 1601.
constexpr std::uint64_t ToFileTime(std::int64_t seconds, std::int64_t nanoseconds) {
    const std::int64_t since1601 = seconds + SECONDS_1601_TO_1970;
    return since1601 < 0 ? 0 : static_cast<std::uint64_t>(since1601 * TICKS_PER_SECOND + nanoseconds / 100);
}

}  // namespace velm
