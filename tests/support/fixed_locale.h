#pragma once

#include <array>
#include <string>

#include "platform/locale.h"
#include "platform/locale_limits.h"

namespace velm::test {

/// The same locale on every machine: "Monday", "7/5/2024", "9:05:03".
class FixedLocale : public CVelmLocale {
public:
    std::optional<CVelmString> DayName(int weekday) const override {
        static constexpr std::array<CVelmStringView, 7> NAMES = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                                                 u"Thursday", u"Friday", u"Saturday"};
        if (weekday < 1 || weekday > 7) {
            return std::nullopt;
        }
        return CVelmString(NAMES[static_cast<std::size_t>(weekday - 1)]);
    }

    std::optional<CVelmString> ShortDate(const CVelmCalendarTime& time) const override {
        if (!IsLocaleDate(time)) {
            return std::nullopt;
        }
        return FromUtf8(std::to_string(time.month) + "/" + std::to_string(time.day) + "/" + std::to_string(time.year));
    }

    std::optional<CVelmString> TimeOfDay(const CVelmCalendarTime& time) const override {
        if (!IsLocaleTime(time)) {
            return std::nullopt;
        }
        const auto twoDigits = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
        return FromUtf8(std::to_string(time.hour) + ":" + twoDigits(time.minute) + ":" + twoDigits(time.second));
    }

    std::optional<CVelmString> ShortDatePattern() const override { return pattern; }

    std::optional<CVelmString> pattern = u"M/d/yyyy";
};

}  // namespace velm::test
