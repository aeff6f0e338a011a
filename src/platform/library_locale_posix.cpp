#include "platform/library_locale_posix.h"

#include <langinfo.h>

#include <array>
#include <cwchar>
#include <string>
#include <utility>

#include "platform/locale_limits.h"

namespace velm {

namespace {

constexpr std::size_t MAX_PATTERN_LENGTH = 19;

CVelmString FromWide(std::wstring_view text) {
    CVelmString result;
    for (const wchar_t wide : text) {
        AppendCodePoint(result, static_cast<char32_t>(wide));
    }
    return result;
}

std::tm ToFields(const CVelmCalendarTime& time) {
    std::tm fields{};
    fields.tm_year = time.year - 1900;
    fields.tm_mon = time.month - 1;
    fields.tm_mday = time.day;
    fields.tm_hour = time.hour;
    fields.tm_min = time.minute;
    fields.tm_sec = time.second;
    fields.tm_wday = IsWeekday(time.weekday) ? time.weekday - 1 : 0;
    return fields;
}

/// Translates one conversion specifier of the C library to the notation of "M/d/yyyy"; empty for unsupported ones.
std::string_view PatternOf(char conversion, bool unpadded) {
    switch (conversion) {
        case 'd':
            return unpadded ? "d" : "dd";
        case 'e':
            return "d";
        case 'm':
            return unpadded ? "M" : "MM";
        case 'y':
            return "yy";
        case 'Y':
        case 'G':
            return "yyyy";
        case 'b':
        case 'h':
            return "MMM";
        case 'B':
            return "MMMM";
        case 'a':
            return "ddd";
        case 'A':
            return "dddd";
        case 'D':
            return "MM/dd/yy";
        case 'F':
            return "yyyy-MM-dd";
        default:
            return {};
    }
}

}  // namespace

std::optional<CVelmString> TranslateDatePattern(std::string_view pattern) {
    std::string result;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '%') {
            result += pattern[i];
            continue;
        }
        bool unpadded = false;
        while (i + 1 < pattern.size() && std::string_view("-_0^#EO").find(pattern[i + 1]) != std::string_view::npos) {
            unpadded = unpadded || pattern[i + 1] == '-' || pattern[i + 1] == '_';
            ++i;
        }
        if (i + 1 < pattern.size()) {
            result += PatternOf(pattern[++i], unpadded);
        }
    }
    CVelmString translated = FromUtf8(result);
    return translated.size() <= MAX_PATTERN_LENGTH ? std::optional(std::move(translated)) : std::nullopt;
}

bool CVelmLibraryLocale::IsUnnamed() const {
    const std::string_view name = nl_langinfo_l(NL_LOCALE_NAME(LC_TIME), locale_);
    return name == "C" || name == "POSIX" || name.starts_with("C.");
}

std::optional<CVelmString> CVelmLibraryLocale::DayName(int weekday) const {
    if (!IsWeekday(weekday)) {
        return std::nullopt;
    }
    std::tm fields{};
    fields.tm_mday = 1;
    fields.tm_wday = weekday - 1;
    return Write(L"%A", fields);
}

std::optional<CVelmString> CVelmLibraryLocale::ShortDate(const CVelmCalendarTime& time) const {
    return IsLocaleDate(time) ? Write(L"%x", ToFields(time)) : std::nullopt;
}

std::optional<CVelmString> CVelmLibraryLocale::TimeOfDay(const CVelmCalendarTime& time) const {
    return IsLocaleTime(time) ? Write(L"%X", ToFields(time)) : std::nullopt;
}

std::optional<CVelmString> CVelmLibraryLocale::ShortDatePattern() const {
    return TranslateDatePattern(nl_langinfo_l(D_FMT, locale_));
}

std::optional<CVelmString> CVelmLibraryLocale::Write(const wchar_t* pattern, const std::tm& fields) const {
    std::array<wchar_t, 128> text{};
    const std::size_t length = wcsftime_l(text.data(), text.size(), pattern, &fields, locale_);
    return length > 0 ? std::optional(FromWide({text.data(), length})) : std::nullopt;
}

}  // namespace velm
