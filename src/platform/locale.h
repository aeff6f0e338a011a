#pragma once

#include <optional>

#include "platform/calendar_time.h"
#include "platform/text.h"

namespace velm {

/// The regional settings of the user, as far as dates and times need them.
/// Every call gives nothing when the platform cannot answer (a year outside its range, say).
class CVelmLocale {
public:
    virtual ~CVelmLocale() = default;

    /// Full name of a day of the week, 1 = Sunday to 7 = Saturday.
    virtual std::optional<CVelmString> DayName(int weekday) const = 0;
    virtual std::optional<CVelmString> ShortDate(const CVelmCalendarTime& time) const = 0;
    virtual std::optional<CVelmString> TimeOfDay(const CVelmCalendarTime& time) const = 0;

    /// The short-date pattern in the form "M/d/yyyy". Nothing for one of more than 19 characters.
    virtual std::optional<CVelmString> ShortDatePattern() const = 0;

    /// The pattern as it was when first asked for: a change of settings during the run is not seen.
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
