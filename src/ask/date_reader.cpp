#include "ask/date_reader.h"

#include <algorithm>
#include <array>

#include "ask/number_reader.h"
#include "datetime/date_parser.h"
#include "datetime/date_time.h"

namespace velm {

namespace {

constexpr std::array<CVelmStringView, 12> MONTHS = {u"january",   u"february", u"march",    u"april",
                                                    u"may",       u"june",     u"july",     u"august",
                                                    u"september", u"october",  u"november", u"december"};
constexpr std::size_t SHORT_MONTH = 3;
constexpr int SECONDS_OF_HOUR = 3600;

struct NamedDay {
    CVelmStringView name;
    int days;
};
constexpr std::array NAMED_DAYS = {NamedDay{u"today", 0}, NamedDay{u"tomorrow", 1}, NamedDay{u"yesterday", -1}};

/// The word at a position, letters alone.
CVelmStringView WordAt(CVelmStringView text, std::size_t at) {
    std::size_t end = at;
    while (end < text.size() && IsLetter(text[end])) {
        ++end;
    }
    return text.substr(std::min(at, text.size()), end - at);
}

/// 1 to 12 for "dec", "sept" and "december"; 0 for any other word.
int MonthOf(CVelmStringView word) {
    for (std::size_t i = 0; i < MONTHS.size(); ++i) {
        if (word.size() >= SHORT_MONTH && StartsWithNoCase(MONTHS[i], word) &&
            (word.size() <= SHORT_MONTH + 1 || word.size() == MONTHS[i].size())) {
            return static_cast<int>(i + 1);
        }
    }
    return 0;
}

/// One to `most` digits that no further digit follows.
std::optional<int> DigitsAt(CVelmStringView text, std::size_t& at, std::size_t least, std::size_t most) {
    std::size_t end = at;
    int number = 0;
    while (end < text.size() && IsDigit(text[end]) && end - at < most) {
        number = number * 10 + (text[end++] - u'0');
    }
    if (end - at < least || (end < text.size() && IsDigit(text[end]))) {
        return std::nullopt;
    }
    at = end;
    return number;
}

char16_t At(CVelmStringView text, std::size_t at) {
    return at < text.size() ? text[at] : u'\0';
}

bool IsDay(int year, int month, int day) {
    return month >= 1 && month <= 12 && day >= 1 && day <= DateTime::FromFields(year, month, 1).DaysInMonth();
}

std::optional<TypedMoment> Date(int year, int month, int day, std::size_t end) {
    if (!IsDay(year, month, day)) {
        return std::nullopt;
    }
    return TypedMoment{end, true, DateTime::FromFields(year, month, day).value};
}

/// A year behind blanks and perhaps a comma; the clock's, and `at` as it was, when there is none.
int YearAt(CVelmStringView text, std::size_t& at, const CVelmClock& clock) {
    std::size_t next = SkipBlanks(text, at);
    next = At(text, next) == u',' ? SkipBlanks(text, next + 1) : next;
    if (const auto year = next > at ? DigitsAt(text, next, 4, 4) : std::nullopt; year && At(text, next) != u':') {
        at = next;
        return *year;
    }
    return clock.LocalTime().year;
}

/// "dec 25", "december 25, 2026"
std::optional<TypedMoment> MonthDay(CVelmStringView text, std::size_t at, const CVelmClock& clock) {
    const CVelmStringView word = WordAt(text, at);
    const int month = MonthOf(word);
    std::size_t next = at + word.size();
    next = SkipBlanks(text, At(text, next) == u'.' ? next + 1 : next);
    const auto day = month > 0 ? DigitsAt(text, next, 1, 2) : std::nullopt;
    if (!day) {
        return std::nullopt;
    }
    for (const CVelmStringView ending : {u"st", u"nd", u"rd", u"th"}) {
        next += EqualsNoCase(WordAt(text, next), ending) ? ending.size() : 0;
    }
    const int year = YearAt(text, next, clock);
    return IsLetter(At(text, next)) ? std::nullopt : Date(year, month, *day, next);
}

/// "25 dec 2026"
std::optional<TypedMoment> DayMonth(CVelmStringView text, std::size_t at, const CVelmClock& clock) {
    const auto day = DigitsAt(text, at, 1, 2);
    at = SkipBlanks(text, at);
    const CVelmStringView word = WordAt(text, at);
    const int month = day ? MonthOf(word) : 0;
    if (month == 0) {
        return std::nullopt;
    }
    at += word.size();
    const int year = YearAt(text, at, clock);
    return Date(year, month, *day, at);
}

/// "2026-12-25", "12/25/2026", "25.12.2026"
std::optional<TypedMoment> DigitDate(CVelmStringView text, std::size_t at, const CVelmClock& clock) {
    const std::size_t start = at;
    const auto first = DigitsAt(text, at, 1, 4);
    const bool yearFirst = at - start == 4;
    const char16_t separator = At(text, at);
    if (!first || (separator != u'-' && separator != u'/' && separator != u'.')) {
        return std::nullopt;
    }
    const auto second = DigitsAt(text, ++at, 1, 2);
    if (!second || At(text, at) != separator) {
        return std::nullopt;
    }
    const auto third = DigitsAt(text, ++at, yearFirst ? 1 : 4, yearFirst ? 2 : 4);
    if (!third || (yearFirst && separator != u'-')) {
        return std::nullopt;
    }
    if (separator == u'.') {
        return Date(*third, *second, *first, at);
    }
    const DateTime date = ParseDate(text.substr(start, at - start), clock);
    return Date(date.year, date.month, date.day, at);
}

std::optional<TypedMoment> NamedMoment(CVelmStringView text, std::size_t at, const CVelmClock& clock) {
    const CVelmStringView word = WordAt(text, at);
    const std::size_t end = at + word.size();
    if (At(text, end) == u'(' || IsDigit(At(text, end)) || At(text, end) == u'_') {
        return std::nullopt;
    }
    if (EqualsNoCase(word, u"now") || EqualsNoCase(word, u"time")) {
        return TypedMoment{end, true, DateTime::Now(clock).value, true};
    }
    if (EqualsNoCase(word, u"noon") || EqualsNoCase(word, u"midnight")) {
        return TypedMoment{end, false, EqualsNoCase(word, u"noon") ? 12.0 * SECONDS_OF_HOUR : 0.0, false, true};
    }
    const auto* const day =
        std::ranges::find_if(NAMED_DAYS, [word](const NamedDay& row) { return EqualsNoCase(row.name, word); });
    if (day == NAMED_DAYS.end()) {
        return std::nullopt;
    }
    const CVelmCalendarTime now = clock.LocalTime();
    DateTime date = DateTime::FromFields(now.year, now.month, now.day);
    date.AddDays(day->days);
    return TypedMoment{end, true, date.value};
}

/// "7:45", "7:45:30", "7:45 pm", "9 pm"
std::optional<TypedMoment> Clock(CVelmStringView text, std::size_t at) {
    const auto hours = DigitsAt(text, at, 1, 3);
    if (!hours) {
        return std::nullopt;
    }
    TypedMoment moment;
    double seconds = *hours * static_cast<double>(SECONDS_OF_HOUR);
    bool hasMinutes = false;
    if (At(text, at) == u':') {
        const auto minutes = DigitsAt(text, ++at, 2, 2);
        if (!minutes || *minutes > 59) {
            return std::nullopt;
        }
        seconds += *minutes * 60;
        hasMinutes = true;
        if (At(text, at) == u':') {
            const auto rest = DigitsAt(text, ++at, 2, 2);
            if (!rest || *rest > 59) {
                return std::nullopt;
            }
            seconds += *rest;
        }
    }
    const std::size_t next = SkipBlanks(text, at);
    const CVelmStringView half = WordAt(text, next);
    const bool isMorning = EqualsNoCase(half, u"am");
    if ((isMorning || EqualsNoCase(half, u"pm")) && *hours >= 1 && *hours <= 12) {
        seconds += *hours == 12 ? -12.0 * SECONDS_OF_HOUR : 0.0;
        seconds += isMorning ? 0.0 : 12.0 * SECONDS_OF_HOUR;
        moment.isTimeOfDay = true;
        at = next + half.size();
    } else if (!hasMinutes) {
        return std::nullopt;
    }
    moment.end = at;
    moment.value = seconds;
    return moment;
}

}  // namespace

std::optional<TypedMoment> ReadTypedMoment(CVelmStringView text, std::size_t position, const CVelmClock& clock) {
    auto moment = NamedMoment(text, position, clock);
    for (const auto read : {MonthDay, DayMonth, DigitDate}) {
        moment = moment ? moment : read(text, position, clock);
    }
    if (!moment) {
        return Clock(text, position);
    }
    if (!moment->isMoment || moment->hasTime) {
        return moment;
    }
    std::size_t next = SkipBlanks(text, moment->end);
    next = EqualsNoCase(WordAt(text, next), u"at") ? SkipBlanks(text, next + 2) : next;
    const auto clockTime = next > moment->end ? Clock(text, next) : std::nullopt;
    if (clockTime && clockTime->value < 24.0 * SECONDS_OF_HOUR) {
        moment->value += clockTime->value / (24.0 * SECONDS_OF_HOUR);
        moment->end = clockTime->end;
        moment->hasTime = true;
    }
    return moment;
}

std::size_t WrongDateEnd(CVelmStringView text, std::size_t position) {
    const CVelmStringView word = WordAt(text, position);
    std::size_t end = SkipBlanks(text, position + word.size());
    const bool isMonth = MonthOf(word) > 0 && end > position + word.size();
    if (!isMonth || !DigitsAt(text, end, 1, 2) || IsLetter(At(text, end))) {
        return 0;
    }
    return end;
}

}  // namespace velm
