#pragma once

#include <cstdint>

#include "platform/clock.h"

namespace velm {

/// A date and time of day on a day-number scale: the Julian Day Number minus one at 00:00 (2000-01-01 is
/// 2451544) plus the fraction of the day. Julian calendar before 1582-10-15, Gregorian from it.
/// A cleared date has year, month and day 0 and the value 1721422.
class DateTime {
public:
    /// One second as a fraction of a day.
    static constexpr double SECOND = 1.1574074074074073e-5;

    DateTime() = default;

    /// Fields to value. A day beyond the month's end counts on into the next month, a month beyond 12 into the
    /// next year; the fields keep what was given, saturated to their 16 bits.
    static DateTime FromFields(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);

    /// Value to fields, for any double: days outside the 32-bit range and years outside the 16-bit one saturate,
    /// a NaN counts as 0 in every field. The time of day of a negative value counts up to the day's end.
    static DateTime FromValue(double value);

    /// The time's own weekday is not read; it follows from the value.
    static DateTime FromSystemTime(const CVelmCalendarTime& time);
    static DateTime Now(const CVelmClock& clock);

    double value = 0.0;
    std::int16_t year = 0;    ///< -1 is 1 B.C.E.; there is no year 0 but in a cleared date
    std::int16_t month = 0;   ///< 1 to 12
    std::int16_t day = 0;     ///< 1 to 31
    std::int16_t hour = 0;    ///< 0 to 23, and 24 for a fraction just below one day
    std::int16_t minute = 0;  ///< 0 to 59
    std::int16_t second = 0;  ///< 0 to 59
    std::int8_t weekday = 1;  ///< 1 = Sunday to 7 = Saturday

    /// The fields as a platform calendar time.
    CVelmCalendarTime ToSystemTime() const;

    /// Days and weeks move the value and recompute the fields.
    void AddDays(double days);
    void AddWeeks(std::int32_t weeks);

    /// Months and years move the fields and recompute the value. A day past the end of the new month carries over:
    /// January 31 plus one month is March 2 or 3.
    void AddMonths(std::int16_t months);
    void AddYears(std::int16_t years);
    DateTime& operator++();
    DateTime& operator--();
    DateTime operator++(int);
    DateTime operator--(int);

    /// Clamps the day to the month, takes a year above 9999 as 0 and clears the time of day.
    void SetDate(int newMonth, int newDay, int newYear);
    void SetTime(int newHour, int newMinute, int newSecond);

    /// 28 to 31; 31 in a cleared date.
    int DaysInMonth() const;

    /// 1 to 366.
    int DayOfYear() const;

private:
    void SetFields(int newYear, int newMonth, int newDay, int newHour, int newMinute, int newSecond);
    void SetValue(double newValue);
    void ComputeValue();
    void ComputeWeekday();
};

/// From 1582 on divisible by 4 and not by 100, or by 400; before 1582 divisible by 4.
bool IsLeapYear(int year);

}  // namespace velm
