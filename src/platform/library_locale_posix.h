#pragma once

#include <clocale>
#include <ctime>
#include <optional>
#include <string_view>

#include "platform/locale.h"

namespace velm {

/// A locale of the C library.
class CVelmLibraryLocale : public CVelmLocale {
public:
    /// Takes ownership of the locale.
    explicit CVelmLibraryLocale(locale_t locale) : locale_(locale) {}
    ~CVelmLibraryLocale() override { freelocale(locale_); }
    CVelmLibraryLocale(const CVelmLibraryLocale&) = delete;
    CVelmLibraryLocale& operator=(const CVelmLibraryLocale&) = delete;

    /// True for "C" and its variants, which have no language.
    bool IsUnnamed() const;

    std::optional<CVelmString> DayName(int weekday) const override;
    std::optional<CVelmString> ShortDate(const CVelmCalendarTime& time) const override;
    std::optional<CVelmString> TimeOfDay(const CVelmCalendarTime& time) const override;
    std::optional<CVelmString> ShortDatePattern() const override;

private:
    std::optional<CVelmString> Write(const wchar_t* pattern, const std::tm& fields) const;

    locale_t locale_;
};

/// Converts a date pattern of the C library ("%d.%m.%Y") to the form of ShortDatePattern ("dd.MM.yyyy"). Nothing when
/// the result is too long.
std::optional<CVelmString> TranslateDatePattern(std::string_view pattern);

}  // namespace velm
