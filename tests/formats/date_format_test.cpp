#include "formats/date_format.h"

#include <gtest/gtest.h>

#include "support/fixed_locale.h"

namespace velm {
namespace {

/// A locale that knows one name for all days and writes no times.
class OddLocale : public test::FixedLocale {
public:
    explicit OddLocale(std::optional<CVelmString> dayName) : dayName_(std::move(dayName)) {}
    std::optional<CVelmString> DayName(int) const override { return dayName_; }
    std::optional<CVelmString> TimeOfDay(const CVelmCalendarTime&) const override { return std::nullopt; }

private:
    std::optional<CVelmString> dayName_;
};

TEST(DateFormat, NamesAndTimesThatTheLocaleLacksAreWrittenPlainly) {
    const OddLocale german(u"Donnerstag");
    const OddLocale chinese(u"月");
    const OddLocale nameless(std::nullopt);
    EXPECT_EQ(ToUtf8(FormatDate(2460496 + (9 * 3600 + 5 * 60 + 3) / 86400.0, true, german)), "Don 7/5/2024 9:5:3");
    EXPECT_EQ(ToUtf8(FormatDate(2460492, false, chinese)), "月 7/1/2024");
    EXPECT_EQ(ToUtf8(FormatDate(2460492, false, nameless)), " 7/1/2024");
}

TEST(DateFormat, PlainDatesFollowTheOrderOfTheShortDatePattern) {
    const std::pair<std::optional<CVelmString>, bool> cases[] = {
        {u"M/d/yyyy", true}, {u" dd.MM.yy", false}, {u"D/M/Y", false},   {u"yyyy-MM-dd", true},
        {u"  ", true},       {u"", true},           {std::nullopt, true}};
    for (const auto& [pattern, monthFirst] : cases) {
        test::FixedLocale locale;
        locale.pattern = pattern;
        EXPECT_EQ(IsMonthFirstLocale(locale), monthFirst) << ToUtf8(pattern.value_or(u"none"));
        locale.pattern = u"d.M.yyyy";
        EXPECT_EQ(IsMonthFirstLocale(locale), monthFirst) << "a change during the run is not seen";
        EXPECT_EQ(ToUtf8(FormatDate(1705426, false, locale)), monthFirst ? "Thu 3/15/44 BC" : "Thu 15/3/44 BC");
    }
}

}  // namespace
}  // namespace velm
