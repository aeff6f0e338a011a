#include "zone_history.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace velm::zones {
namespace {

constexpr const char* DATABASE = "/usr/share/zoneinfo/";
constexpr std::int64_t MARGIN = 7 * DAY;

/// No two changes of a zone are as close together.
constexpr std::int64_t STEP = 6 * HOUR;

}  // namespace

std::int64_t ZoneHistory::OffsetAt(std::int64_t time) const {
    const auto next = std::ranges::upper_bound(changes, time, {}, &OffsetChange::time);
    return next == changes.begin() ? firstOffset : std::prev(next)->after;
}

ZoneHistory OnLocalClock(const ZoneHistory& utc) {
    ZoneHistory local = utc;
    for (OffsetChange& change : local.changes) {
        change.time += std::max(change.before, change.after);
    }
    return local;
}

std::int64_t FirstDifference(const ZoneHistory& a, const ZoneHistory& b, std::int64_t from) {
    std::int64_t first = END_TIME + MARGIN;
    const auto look = [&](std::int64_t time) {
        if (time >= from && time < first && a.OffsetAt(time) != b.OffsetAt(time)) {
            first = time;
        }
    };
    look(from);
    for (const ZoneHistory* history : {&a, &b}) {
        for (const OffsetChange& change : history->changes) {
            look(change.time);
        }
    }
    return first;
}

ZoneClock::ZoneClock(const std::string& name) {
    // A name that it does not know counts as UTC for the library.
    if (!std::filesystem::is_regular_file(DATABASE + name)) {
        throw std::runtime_error(DATABASE + name + " does not exist");
    }
    setenv("TZ", (":" + name).c_str(), 1);
    tzset();
}

std::int64_t ZoneClock::OffsetAt(std::int64_t time) const {
    std::tm local{};
    localtime_r(&time, &local);
    return local.tm_gmtoff;
}

std::int64_t ZoneClock::ChangeBetween(std::int64_t before, std::int64_t after) const {
    const std::int64_t offset = OffsetAt(before);
    while (after - before > 1) {
        const std::int64_t middle = before + (after - before) / 2;
        (OffsetAt(middle) == offset ? before : after) = middle;
    }
    return after;
}

ZoneHistory ZoneClock::History() const {
    ZoneHistory history{OffsetAt(FIRST_TIME - MARGIN), {}};
    std::int64_t offset = history.firstOffset;
    for (std::int64_t time = FIRST_TIME - MARGIN; time < END_TIME + MARGIN; time += STEP) {
        if (const std::int64_t next = OffsetAt(time + STEP); next != offset) {
            history.changes.push_back({ChangeBetween(time, time + STEP), offset, next});
            offset = next;
        }
    }
    return history;
}

std::string DatabaseVersion() {
    std::ifstream file(std::string(DATABASE) + "tzdata.zi");
    std::string hash, word, version;
    if (!(file >> hash >> word >> version) || word != "version") {
        throw std::runtime_error(std::string(DATABASE) + "tzdata.zi does not tell its version");
    }
    return version;
}

}  // namespace velm::zones
