#include <ctime>

#include "platform/clock.h"
#include "platform/file_time.h"

namespace velm {

namespace {

CVelmCalendarTime ToCalendar(const std::tm& fields) {
    return {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday,    fields.tm_hour,
            fields.tm_min,         fields.tm_sec,     fields.tm_wday + 1};
}

timespec Now() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return now;
}

class PosixClock : public CVelmClock {
public:
    PosixClock() { tzset(); }

    CVelmCalendarTime LocalTime() const override { return ToCalendar(LocalFields(Now().tv_sec)); }

    CVelmCalendarTime UtcTime() const override {
        const std::time_t seconds = Now().tv_sec;
        std::tm fields{};
        gmtime_r(&seconds, &fields);
        return ToCalendar(fields);
    }

    std::uint64_t LocalFileTime() const override {
        const timespec now = Now();
        return ToFileTime(now.tv_sec + LocalFields(now.tv_sec).tm_gmtoff, now.tv_nsec);
    }

    CVelmCalendarTime ToLocalCalendar(std::uint64_t fileTime) const override {
        const auto seconds = static_cast<std::int64_t>(fileTime / TICKS_PER_SECOND) - SECONDS_1601_TO_1970;
        return ToCalendar(LocalFields(seconds));
    }

private:
    static std::tm LocalFields(std::time_t seconds) {
        std::tm fields{};
        localtime_r(&seconds, &fields);
        return fields;
    }
};

}  // namespace

const CVelmClock& SystemClock() {
    static const PosixClock clock;
    return clock;
}

}  // namespace velm
