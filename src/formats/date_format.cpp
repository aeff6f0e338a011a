#include "formats/date_format.h"

#include <cstdlib>

#include "datetime/date_time.h"

namespace velm {
namespace {

/// For dates that the platform cannot format, in the user's field order.
CVelmString PlainDate(const DateTime& date, const CVelmLocale& locale) {
    const CVelmString month = IntegerText(date.month);
    const CVelmString day = IntegerText(date.day);
    const CVelmString year = IntegerText(std::abs(date.year)) + (date.year < 0 ? u" BC" : u"");
    return (IsMonthFirstLocale(locale) ? month + u'/' + day : day + u'/' + month) + u'/' + year;
}

CVelmString PlainTime(const DateTime& date) {
    return IntegerText(date.hour) + u':' + IntegerText(date.minute) + u':' + IntegerText(date.second);
}

}  // namespace

CVelmString FormatDate(double value, bool withTime, const CVelmLocale& locale) {
    const DateTime date = DateTime::FromValue(value);
    const CVelmCalendarTime time = date.ToSystemTime();

    // The full name cut to three characters, not the regional short name. Deliberate.
    CVelmString text = locale.DayName(date.weekday).value_or(CVelmString()).substr(0, 3) + u' ';
    const auto shortDate = locale.ShortDate(time);
    text += shortDate ? *shortDate : PlainDate(date, locale);
    if (withTime) {
        const auto timeOfDay = locale.TimeOfDay(time);
        text += u' ' + (timeOfDay ? *timeOfDay : PlainTime(date));
    }
    return text;
}

bool IsMonthFirstLocale(const CVelmLocale& locale) {
    const auto& pattern = locale.FirstShortDatePattern();
    if (!pattern) {
        return true;
    }
    const std::size_t field = pattern->find_first_not_of(u' ');
    return field == CVelmString::npos || ((*pattern)[field] != u'd' && (*pattern)[field] != u'D');
}

}  // namespace velm
