#include <windows.h>

#include "platform/clock.h"

namespace velm {

namespace {

CVelmCalendarTime ToCalendar(const SYSTEMTIME& time) {
    return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond, time.wDayOfWeek + 1};
}

class Win32Clock : public CVelmClock {
public:
    CVelmCalendarTime LocalTime() const override {
        SYSTEMTIME time{};
        GetLocalTime(&time);
        return ToCalendar(time);
    }

    CVelmCalendarTime UtcTime() const override {
        SYSTEMTIME time{};
        GetSystemTime(&time);
        return ToCalendar(time);
    }

    std::uint64_t LocalFileTime() const override {
        SYSTEMTIME time{};
        FILETIME ticks{};
        GetLocalTime(&time);
        SystemTimeToFileTime(&time, &ticks);
        return (static_cast<std::uint64_t>(ticks.dwHighDateTime) << 32) | ticks.dwLowDateTime;
    }

    CVelmCalendarTime ToLocalCalendar(std::uint64_t fileTime) const override {
        const FILETIME ticks{static_cast<DWORD>(fileTime), static_cast<DWORD>(fileTime >> 32)};
        SYSTEMTIME utc{};
        SYSTEMTIME local{};
        // Applies the daylight saving rules of the file's date, not today's.
        if (!FileTimeToSystemTime(&ticks, &utc) || !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local)) {
            return {};
        }
        return ToCalendar(local);
    }
};

}  // namespace

const CVelmClock& SystemClock() {
    static const Win32Clock clock;
    return clock;
}

}  // namespace velm
