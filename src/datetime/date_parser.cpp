#include "datetime/date_parser.h"

#include <algorithm>
#include <array>
#include <limits>

namespace velm {
namespace {

constexpr CVelmStringView NO_TEXT;
constexpr int LAST_MONTH = 12;
constexpr int LAST_DAY = 31;

constexpr std::array<CVelmStringView, 12> MONTH_PREFIXES = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                                                            u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};

struct ParsedDate {
    int year = 0;
    int month = 0;
    int day = 0;
};

/// The integer that the text begins with, after blanks and a sign. 0 when there is none; stops growing at the top of
/// its range.
int LeadingNumber(CVelmStringView text) {
    constexpr int LIMIT = std::numeric_limits<int>::max() / 10 - 1;
    text.remove_prefix(std::min(text.find_first_not_of(u" \t"), text.size()));
    const bool negative = text.starts_with(u'-');
    if (negative || text.starts_with(u'+')) {
        text.remove_prefix(1);
    }
    int number = 0;
    for (const char16_t unit : text) {
        if (!IsDigit(unit)) {
            break;
        }
        number = std::min(number, LIMIT) * 10 + (unit - u'0');
    }
    return negative ? -number : number;
}

/// What follows the first `separator`; empty when there is none.
CVelmStringView After(CVelmStringView text, char16_t separator) {
    const std::size_t position = text.find(separator);
    return position == CVelmStringView::npos ? NO_TEXT : text.substr(position + 1);
}

/// "Friday, March 05, 2004"
ParsedDate ReadWeekdayMonthDayYear(CVelmStringView text) {
    const CVelmStringView month = After(text, u' ');
    const CVelmStringView day = After(month, u' ');
    return {LeadingNumber(After(day, u' ')), MonthOfName(month), LeadingNumber(day)};
}

/// "05 March 2004"
ParsedDate ReadDayMonthYear(CVelmStringView text) {
    const CVelmStringView month = After(text, u' ');
    return {LeadingNumber(After(month, u' ')), MonthOfName(month), LeadingNumber(text)};
}

/// "20040305"
ParsedDate ReadDigits(CVelmStringView text) {
    const auto number = [text](std::size_t position, std::size_t count) {
        return position < text.size() ? LeadingNumber(text.substr(position, count)) : 0;
    };
    return {number(0, 4), number(4, 2), number(6, 2)};
}

/// "3/5/2004", "3-5"; what cannot begin with a month begins with a year of four digits or with the day.
ParsedDate ReadSeparated(CVelmStringView text, const CVelmClock& clock) {
    constexpr std::size_t YEAR_DIGITS = 4;
    const std::size_t separatorAt = static_cast<std::size_t>(std::ranges::find_if_not(text, IsDigit) - text.begin());
    const char16_t separator = text[separatorAt];
    const CVelmStringView secondText = text.substr(separatorAt + 1);
    const int first = LeadingNumber(text);
    const int second = LeadingNumber(secondText);
    const int third = LeadingNumber(After(secondText, separator));
    if (first > LAST_MONTH && separatorAt == YEAR_DIGITS) {
        return {first, second, third};
    }
    const bool hasYear = secondText.find(separator) != CVelmStringView::npos;
    const int year = hasYear ? third : clock.LocalTime().year;
    if (first <= LAST_MONTH) {
        return {year, first, second};
    }
    return first <= LAST_DAY ? ParsedDate{year, second, first} : ParsedDate{};
}

ParsedDate ReadFields(CVelmStringView text, const CVelmClock& clock) {
    if (!text.empty() && IsLetter(text.front())) {
        return ReadWeekdayMonthDayYear(text);
    }
    if (text.size() == 20 || (text.size() == 13 && IsLetter(text[5]))) {
        return ReadDayMonthYear(text);
    }
    if (std::ranges::all_of(text, IsDigit)) {
        return ReadDigits(text);
    }
    return ReadSeparated(text, clock);
}

int WithCentury(int year) {
    if (year < 1 || year > 99) {
        return year;
    }
    return year < 51 ? 2000 + year : 1900 + year;
}

}  // namespace

int MonthOfName(CVelmStringView name) {
    const auto month = std::ranges::find_if(
        MONTH_PREFIXES, [name](CVelmStringView prefix) { return EqualsNoCase(name.substr(0, 3), prefix); });
    return month == MONTH_PREFIXES.end() ? 0 : static_cast<int>(month - MONTH_PREFIXES.begin()) + 1;
}

DateTime ParseDate(CVelmStringView text, const CVelmClock& clock) {
    if (text.starts_with(u'.') || EqualsNoCase(text, u"TODAY")) {
        const CVelmCalendarTime now = clock.LocalTime();
        return DateTime::FromFields(now.year, now.month, now.day);
    }
    if (EqualsNoCase(text, u"NOW")) {
        return DateTime::Now(clock);
    }
    ParsedDate date = ReadFields(text, clock);
    if (text.find(u'.') != CVelmStringView::npos) {
        date.year = -date.year;
    }
    if (date.month < 1 || date.month > LAST_MONTH || date.day < 1) {
        return DateTime::FromFields(0, 0, 0);
    }
    return DateTime::FromFields(WithCentury(date.year), date.month, date.day);
}

}  // namespace velm
