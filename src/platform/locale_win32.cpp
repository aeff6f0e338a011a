#include <windows.h>

#include <array>

#include "platform/locale.h"
#include "platform/locale_limits.h"
#include "platform/wide_text_win32.h"

namespace velm {

namespace {

SYSTEMTIME DateOnly(const CVelmCalendarTime& time) {
    SYSTEMTIME date{};
    date.wYear = static_cast<WORD>(time.year);
    date.wMonth = static_cast<WORD>(time.month);
    date.wDay = static_cast<WORD>(time.day);
    return date;
}

SYSTEMTIME TimeOnly(const CVelmCalendarTime& time) {
    SYSTEMTIME result = DateOnly({2000, 1, 1, 0, 0, 0, 7});
    result.wHour = static_cast<WORD>(time.hour);
    result.wMinute = static_cast<WORD>(time.minute);
    result.wSecond = static_cast<WORD>(time.second);
    return result;
}

template <std::size_t Size>
std::optional<CVelmString> LocaleInfo(LCTYPE item) {
    std::array<wchar_t, Size> text{};
    if (GetLocaleInfoW(LOCALE_USER_DEFAULT, item, text.data(), static_cast<int>(text.size())) < 1) {
        return std::nullopt;
    }
    return FromWide(text.data());
}

class Win32Locale : public CVelmLocale {
public:
    std::optional<CVelmString> DayName(int weekday) const override {
        if (!IsWeekday(weekday)) {
            return std::nullopt;
        }
        return LocaleInfo<128>(LOCALE_SDAYNAME1 + static_cast<LCTYPE>((weekday + 5) % 7));  // DAYNAME1 is Monday
    }

    std::optional<CVelmString> ShortDate(const CVelmCalendarTime& time) const override {
        if (!IsLocaleDate(time)) {
            return std::nullopt;
        }
        const SYSTEMTIME date = DateOnly(time);
        std::array<wchar_t, 128> text{};
        if (GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &date, nullptr, text.data(),
                           static_cast<int>(text.size())) < 1) {
            return std::nullopt;
        }
        return FromWide(text.data());
    }

    std::optional<CVelmString> TimeOfDay(const CVelmCalendarTime& time) const override {
        if (!IsLocaleTime(time)) {
            return std::nullopt;
        }
        const SYSTEMTIME timeOfDay = TimeOnly(time);
        std::array<wchar_t, 128> text{};
        if (GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &timeOfDay, nullptr, text.data(), static_cast<int>(text.size())) <
            1) {
            return std::nullopt;
        }
        return FromWide(text.data());
    }

    std::optional<CVelmString> ShortDatePattern() const override { return LocaleInfo<20>(LOCALE_SSHORTDATE); }
};

}  // namespace

const CVelmLocale& SystemLocale() {
    static const Win32Locale locale;
    return locale;
}

}  // namespace velm
