#include <array>
#include <clocale>
#include <memory>
#include <optional>
#include <string>

#include "platform/library_locale_posix.h"
#include "platform/locale.h"
#include "platform/locale_limits.h"

namespace velm {

namespace {

CVelmString Digits(int number, std::size_t width = 1) {
    const CVelmString digits = IntegerText(number);
    return CVelmString(width > digits.size() ? width - digits.size() : 0, u'0') + digits;
}

/// United States English, the fallback where the user has chosen no language.
class DefaultLocale : public CVelmLocale {
public:
    std::optional<CVelmString> DayName(int weekday) const override {
        static constexpr std::array<CVelmStringView, 7> NAMES = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                                                 u"Thursday", u"Friday", u"Saturday"};
        if (!IsWeekday(weekday)) {
            return std::nullopt;
        }
        return CVelmString(NAMES[static_cast<std::size_t>(weekday - 1)]);
    }

    std::optional<CVelmString> ShortDate(const CVelmCalendarTime& time) const override {
        if (!IsLocaleDate(time)) {
            return std::nullopt;
        }
        return Digits(time.month) + u"/" + Digits(time.day) + u"/" + Digits(time.year);
    }

    std::optional<CVelmString> TimeOfDay(const CVelmCalendarTime& time) const override {
        if (!IsLocaleTime(time)) {
            return std::nullopt;
        }
        const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
        return Digits(hour) + u":" + Digits(time.minute, 2) + u":" + Digits(time.second, 2) +
               (time.hour < 12 ? u" AM" : u" PM");
    }

    std::optional<CVelmString> ShortDatePattern() const override { return u"M/d/yyyy"; }
};

std::unique_ptr<CVelmLocale> CreateUserLocale() {
    const locale_t locale = newlocale(LC_TIME_MASK | LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr) {
        return std::make_unique<DefaultLocale>();
    }
    auto user = std::make_unique<CVelmLibraryLocale>(locale);
    if (user->IsUnnamed()) {
        return std::make_unique<DefaultLocale>();
    }
    return user;
}

}  // namespace

const CVelmLocale& SystemLocale() {
    static const std::unique_ptr<CVelmLocale> locale = CreateUserLocale();
    return *locale;
}

}  // namespace velm
