#include "datetime/calendar_day.h"

#include <algorithm>

#include "datetime/date_parser.h"

namespace velm {
namespace {

constexpr std::size_t ISO_LENGTH = 10;
constexpr CVelmStringView ISO_FORM = u"0000-00-00";

/// The digits' value; nothing when there is none, more than four, or anything else.
std::optional<int> ReadNumber(CVelmStringView digits) {
    if (digits.empty() || digits.size() > 4 || !std::ranges::all_of(digits, IsDigit)) {
        return std::nullopt;
    }
    int number = 0;
    for (const char16_t digit : digits) {
        number = number * 10 + (digit - u'0');
    }
    return number;
}

std::optional<CVelmDay> MakeDay(std::optional<int> year, int month, std::optional<int> day) {
    constexpr int LAST_DAY = 31;
    if (!year || !day || *day > LAST_DAY) {
        return std::nullopt;
    }
    const CVelmDay made(std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(month)),
                        std::chrono::day(static_cast<unsigned>(*day)));
    return made.ok() ? std::optional(made) : std::nullopt;
}

bool IsIso(CVelmStringView text) {
    const auto fits = [](char16_t unit, char16_t form) { return form == u'0' ? IsDigit(unit) : unit == form; };
    return text.size() >= ISO_LENGTH &&
           std::equal(ISO_FORM.begin(), ISO_FORM.end(), text.begin(), [&](auto a, auto b) { return fits(b, a); }) &&
           (text.size() == ISO_LENGTH || text[ISO_LENGTH] == u' ' || text[ISO_LENGTH] == u'T');
}

/// "5 July 2024"
std::optional<CVelmDay> ReadNamedMonth(CVelmStringView text) {
    const std::size_t first = text.find(u' ');
    const std::size_t last = text.rfind(u' ');
    if (first == CVelmStringView::npos || last <= first + 1) {
        return std::nullopt;
    }
    const int month = MonthOfName(text.substr(first + 1, last - first - 1));
    return MakeDay(ReadNumber(text.substr(last + 1)), month, ReadNumber(text.substr(0, first)));
}

CVelmString Padded(int number, std::size_t digits) {
    const CVelmString text = IntegerText(number);
    return CVelmString(digits - std::min(digits, text.size()), u'0') + text;
}

}  // namespace

std::optional<CVelmDay> ReadDay(CVelmStringView text) {
    if (IsIso(text)) {
        return MakeDay(ReadNumber(text.substr(0, 4)), ReadNumber(text.substr(5, 2)).value_or(0),
                       ReadNumber(text.substr(8, 2)));
    }
    return ReadNamedMonth(text);
}

CVelmString DayText(const CVelmDay& day) {
    return Padded(static_cast<int>(day.year()), 4) + u'-' +
           Padded(static_cast<int>(static_cast<unsigned>(day.month())), 2) + u'-' +
           Padded(static_cast<int>(static_cast<unsigned>(day.day())), 2);
}

CVelmDay Today(const CVelmClock& clock) {
    const CVelmCalendarTime now = clock.LocalTime();
    return {std::chrono::year(now.year), std::chrono::month(static_cast<unsigned>(now.month)),
            std::chrono::day(static_cast<unsigned>(now.day))};
}

int DaysBetween(const CVelmDay& first, const CVelmDay& second) {
    return static_cast<int>((std::chrono::sys_days(second) - std::chrono::sys_days(first)).count());
}

}  // namespace velm
