#pragma once

#include <optional>

#include "platform/calendar_time.h"
#include "platform/text.h"

namespace velm {

/// The user's regional settings for dates and times. Every call returns nothing when the platform has no answer (a year
/// outside its range, say).
class CVelmLocale {
public:
    virtual ~CVelmLocale() = default;

    /// Full name of a day of the week, 1 = Sunday to 7 = Saturday.
    virtual std::optional<CVelmString> DayName(int weekday) const = 0;
    virtual std::optional<CVelmString> ShortDate(const CVelmCalendarTime& time) const = 0;
    virtual std::optional<CVelmString> TimeOfDay(const CVelmCalendarTime& time) const = 0;

    /// The short-date pattern in the form "M/d/yyyy". Nothing for one of more than 19 characters.
    virtual std::optional<CVelmString> ShortDatePattern() const = 0;

    /// The pattern, cached on first use: later changes of the settings are not seen.
    const std::optional<CVelmString>& FirstShortDatePattern() const {
        if (!patternAsked_) {
            firstPattern_ = ShortDatePattern();
            patternAsked_ = true;
        }
        return firstPattern_;
    }

private:
    mutable bool patternAsked_ = false;
    mutable std::optional<CVelmString> firstPattern_;
};

/// The locale of the current user; lives as long as the process.
const CVelmLocale& SystemLocale();

}  // namespace velm
