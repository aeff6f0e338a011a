#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace velm::zones {

/// Times are seconds from 1970-01-01 00:00, offsets seconds that local time is ahead of UTC.
inline constexpr std::int64_t HOUR = 3600;
inline constexpr std::int64_t DAY = 24 * HOUR;

/// The years that the formulas are made for: from 2020-01-01 up to 2041-01-01.
inline constexpr std::int64_t FIRST_TIME = 18262 * DAY;
inline constexpr std::int64_t END_TIME = 25933 * DAY;

struct OffsetChange {
    std::int64_t time = 0;
    std::int64_t before = 0;
    std::int64_t after = 0;

    auto operator<=>(const OffsetChange&) const = default;
};

/// An offset as it changes with time.
struct ZoneHistory {
    std::int64_t firstOffset = 0;
    std::vector<OffsetChange> changes;  ///< sorted by time

    std::int64_t OffsetAt(std::int64_t time) const;
    auto operator<=>(const ZoneHistory&) const = default;
};

/// The same by the clock on the wall. The hour that comes twice is taken as the first of the two, and the hour that a
/// clock put forward leaves out as if it had not been put forward yet: the change comes once both are over.
ZoneHistory OnLocalClock(const ZoneHistory& utc);

/// The earliest time from `from` on, up to the end of the years, at which two offsets differ; END_TIME and more when
/// there is none.
std::int64_t FirstDifference(const ZoneHistory& a, const ZoneHistory& b, std::int64_t from);

/// One time zone of this machine's IANA database. The process has one zone at a time: an object must not outlive the
/// next one's making.
class ZoneClock {
public:
    /// Throws std::runtime_error when the database has no such zone.
    explicit ZoneClock(const std::string& name);

    std::int64_t OffsetAt(std::int64_t time) const;

    /// What happens in the years and a week around them.
    ZoneHistory History() const;

private:
    /// The time of the one change between two times.
    std::int64_t ChangeBetween(std::int64_t before, std::int64_t after) const;
};

/// "2026f". Throws std::runtime_error when there is no database.
std::string DatabaseVersion();

}  // namespace velm::zones
