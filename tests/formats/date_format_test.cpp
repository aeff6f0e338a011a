#include "formats/date_format.h"

#include <gtest/gtest.h>

#include <cmath>

#include "datetime/date_time.h"
#include "support/fixed_locale.h"

namespace velm {
namespace {

double Value(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return DateTime::FromFields(year, month, day, hour, minute, second).value;
}

/// A locale that knows one name for all days and writes no times.
class OddLocale : public test::FixedLocale {
public:
    explicit OddLocale(std::optional<CVelmString> dayName) : dayName_(std::move(dayName)) {}
    std::optional<CVelmString> DayName(int) const override { return dayName_; }
    std::optional<CVelmString> TimeOfDay(const CVelmCalendarTime&) const override { return std::nullopt; }

private:
    std::optional<CVelmString> dayName_;
};

TEST(DateFormat, DatesAreWrittenAsTheLocaleDoesOrInPlainNumbers) {
    const test::FixedLocale usual;
    const OddLocale german(u"Donnerstag");
    const OddLocale chinese(u"月");
    const OddLocale nameless(std::nullopt);
    const struct {
        double value;
        bool withTime;
        const char* text;
        const CVelmLocale& locale;
    } cases[] = {{Value(2024, 7, 1), false, "Mon 7/1/2024", usual},
                 {Value(2024, 7, 7, 12), false, "Sun 7/7/2024", usual},
                 {Value(2024, 7, 5, 9, 5, 3), true, "Fri 7/5/2024 9:05:03", usual},
                 {1705426, false, "Thu 3/15/44 BC", usual},
                 {Value(1066, 10, 14, 9, 5, 3), true, "Sat 10/14/1066 9:05:03", usual},
                 {2451544 + 86399.99 / 86400, true, "Sat 1/1/2000 24:0:0", usual},
                 {Value(1900, 3, 1), false, "Thu 2/29/1900", usual},
                 {1e300, true, "Wed 6/5/32767 0:00:00", usual},
                 {Value(2024, 7, 5, 9, 5, 3), true, "Don 7/5/2024 9:5:3", german},
                 {Value(2024, 7, 1), false, "月 7/1/2024", chinese},
                 {Value(2024, 7, 1), false, " 7/1/2024", nameless}};
    for (const auto& [value, withTime, text, locale] : cases) {
        EXPECT_EQ(ToUtf8(FormatDate(value, withTime, locale)), text);
    }
    EXPECT_EQ(FormatDate(std::nan(""), true, usual), FormatDate(0, true, usual));
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
