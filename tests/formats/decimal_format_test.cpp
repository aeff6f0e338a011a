#include "formats/decimal_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>

namespace velm {
namespace {

TEST(DecimalFormat, NumbersInFormulasHaveNoExponentDownToAMillionth) {
    const std::pair<double, const char*> cases[] = {{0.0001234, "0.0001234"}, {-0.000001, "-0.000001"},
                                                    {0.00000099, "990e-9"},   {0.0000001234, "123.4e-9"},
                                                    {1234567.5, "1234567.5"}, {0, "0"}};
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(ToUtf8(NumberToText(value)), text);
    }
}

TEST(DecimalFormat, TakesTheCommasOfAGroupedNumberAway) {
    EXPECT_EQ(UngroupNumber(u"1,234.5"), u"1234.5");
    EXPECT_EQ(UngroupNumber(u" -12,345,678\r\n"), u"-12345678");
    EXPECT_EQ(UngroupNumber(u"999,999.00"), u"999999.00");
    EXPECT_EQ(UngroupNumber(u"1,234."), u"1234.");
    for (const CVelmStringView other :
         {u"", u" ", u"-", u"1234.5", u"1,5", u"1,2345", u"1234,567", u",123", u"1,234,", u"1,234.5,678", u"1,234+1",
          u"max(1,234)", u"1,234.5.6", u"1,23a", u"--1,234", u"1,234 567", u"2.5 e15"}) {
        EXPECT_EQ(UngroupNumber(other), std::nullopt) << ToUtf8(other);
    }
}

TEST(DecimalFormat, AnyNumberReadsBackWithinTwelveDigits) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    std::uniform_real_distribution<double> exponent(-300, 300);
    const auto expectNear = [](const std::string& text, double value, double smallestWithoutExponent) {
        // Below 1 the twelve digits count from the integer position, whose 1 was only lent.
        const double magnitude = std::fabs(value);
        const double lent = magnitude < 1 && magnitude >= smallestWithoutExponent ? 5.01e-12 : 0;
        ASSERT_NEAR(std::strtod(text.c_str(), nullptr), value, std::max(magnitude * 5.11e-12, lent)) << text;
    };
    for (int i = 0; i < 20000; ++i) {
        const double power = i % 2 == 0 ? std::trunc(exponent(random)) : std::trunc(exponent(random) / 20);
        const double value = mantissa(random) * std::pow(10, power);
        const std::string plain = ToUtf8(FormatDecimal(value, false));
        expectNear(plain, value, 0.001);
        expectNear(ToUtf8(NumberToText(value)), value, 0.000001);
        std::string ungrouped = ToUtf8(FormatDecimal(value, true));
        std::erase_if(ungrouped, [](char c) { return c == ',' || c == ' '; });
        ASSERT_EQ(ungrouped, plain);
    }
}

}  // namespace
}  // namespace velm
