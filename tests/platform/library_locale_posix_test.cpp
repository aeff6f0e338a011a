#include "platform/library_locale_posix.h"

#include <gtest/gtest.h>

namespace velm {
namespace {

TEST(LibraryLocale, WritesAsTheLibraryDoesAndTranslatesDatePatternsPieceByPiece) {
    const std::pair<const char*, std::optional<CVelmString>> patterns[] = {
        {"%d.%m.%Y", u"dd.MM.yyyy"},
        {"%-d.%-m.%y", u"d.M.yy"},
        {"%a %e %b", u"ddd d MMM"},
        {"%F", u"yyyy-MM-dd"},
        {"%Y年%m月%d日", u"yyyy年MM月dd日"},
        {"%A, %d de %B %Y", std::nullopt},  // longer than 19 characters
        {"%", u""}};
    for (const auto& [pattern, translated] : patterns) {
        EXPECT_EQ(TranslateDatePattern(pattern), translated) << pattern;
    }
    const CVelmLibraryLocale locale(newlocale(LC_ALL_MASK, "C", nullptr));
    const CVelmCalendarTime time{2024, 7, 5, 9, 5, 3, 6};
    EXPECT_TRUE(locale.IsUnnamed());
    EXPECT_EQ(locale.DayName(1), u"Sunday");
    EXPECT_EQ(locale.DayName(7), u"Saturday");
    EXPECT_EQ(locale.DayName(8), std::nullopt);
    EXPECT_EQ(locale.ShortDate(time), u"07/05/24");
    EXPECT_EQ(locale.TimeOfDay(time), u"09:05:03");
    EXPECT_EQ(locale.ShortDatePattern(), u"MM/dd/yy");
    EXPECT_EQ(locale.ShortDate({1600, 12, 31, 0, 0, 0, 1}), std::nullopt);
}

}  // namespace
}  // namespace velm
