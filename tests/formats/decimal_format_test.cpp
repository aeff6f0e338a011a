#include "formats/decimal_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace velm {
namespace {

constexpr double INF = std::numeric_limits<double>::infinity();

std::string Grouped(double value) {
    return ToUtf8(FormatDecimal(value, true));
}

std::string Plain(double value) {
    return ToUtf8(FormatDecimal(value, false));
}

std::string Number(double value) {
    return ToUtf8(NumberToText(value));
}

TEST(DecimalFormat, GroupedAndPlain) {
    const struct {
        double value;
        const char* grouped;
        const char* plain;
    } cases[] = {
        {0.0, "0", "0"},
        {-0.0, "0", "0"},
        {1, "1", "1"},
        {1234567.891, "1,234,567.891", "1234567.891"},
        {-1234567.891, "-1,234,567.891", "-1234567.891"},
        {-123456, "-123,456", "-123456"},
        {0.5, "0.5", "0.5"},
        {-0.25, "-0.25", "-0.25"},
        {0.1 + 0.2, "0.3", "0.3"},
        {1.0 / 3, "0.33333333333", "0.33333333333"},
        {2.0 / 3, "0.66666666667", "0.66666666667"},
        {0.9999999999999, "1", "1"},
        {0.001, "0.001", "0.001"},
        {0.000999, "999 e-6", "999e-6"},
        {0.0001234, "123.4 e-6", "123.4e-6"},
        {-1e-9, "-1 e-9", "-1e-9"},
        {100000000000, "100,000,000,000", "100000000000"},
        {999999999999, "999,999,999,999", "999999999999"},
        {999999999999.9, "1,000,000,000,000", "1000000000000"},
        {1e12, "1 e12", "1e12"},
        {1e13, "10 e12", "10e12"},
        {2.5e15, "2.5 e15", "2.5e15"},
        {123456789012345, "123.456789012 e12", "123.456789012e12"},
        {1.7976931348623157e308, "179.769313486 e306", "179.769313486e306"},
        {5e-324, "4.94065645841 e-324", "4.94065645841e-324"},
        {INF, "inf", "inf"},
        {-INF, "-inf", "-inf"},
        {std::nan(""), "nan", "nan"},
        {-std::nan(""), "nan", "nan"},
    };
    for (const auto& [value, grouped, plain] : cases) {
        EXPECT_EQ(Grouped(value), grouped);
        EXPECT_EQ(Plain(value), plain);
    }
}

TEST(DecimalFormat, NumbersInFormulasHaveNoExponentDownToAMillionth) {
    EXPECT_EQ(Number(0.0001234), "0.0001234");
    EXPECT_EQ(Number(-0.000001), "-0.000001");
    EXPECT_EQ(Number(0.00000099), "990e-9");
    EXPECT_EQ(Number(0.0000001234), "123.4e-9");
    EXPECT_EQ(Number(1234567.5), "1234567.5");
    EXPECT_EQ(Number(0), "0");
}

TEST(DecimalFormat, TakesTheCommasOfAGroupedNumberAway) {
    const auto ungrouped = [](CVelmStringView text) { return ToUtf8(UngroupNumber(text).value_or(u"left alone")); };
    EXPECT_EQ(ungrouped(u"1,234.5"), "1234.5");
    EXPECT_EQ(ungrouped(u" -12,345,678\r\n"), "-12345678");
    EXPECT_EQ(ungrouped(u"999,999.00"), "999999.00");
    EXPECT_EQ(ungrouped(u"1,234."), "1234.");
    for (const CVelmStringView other :
         {u"", u" ", u"-", u"1234.5", u"1,5", u"1,2345", u"1234,567", u",123", u"1,234,", u"1,234.5,678", u"1,234+1",
          u"max(1,234)", u"1,234.5.6", u"1,23a", u"--1,234", u"1,234 567", u"2.5 e15"}) {
        EXPECT_EQ(ungrouped(other), "left alone") << ToUtf8(other);
    }
}

TEST(DecimalFormat, AnyNumberReadsBackWithinTwelveDigits) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    std::uniform_real_distribution<double> exponent(-300, 300);
    for (int i = 0; i < 20000; ++i) {
        const double power = i % 2 == 0 ? std::trunc(exponent(random)) : std::trunc(exponent(random) / 20);
        const double value = mantissa(random) * std::pow(10, power);
        const std::string plain = Plain(value);
        const std::string number = Number(value);

        // Below 1 the twelve digits count from the integer position, whose 1 was only lent.
        const double lent = std::fabs(value) < 1 ? 1 : 0;
        const double smallest = std::fabs(value) * 1e-13;
        const double tolerance = std::fabs(value) * 5.01e-12 + smallest;
        ASSERT_NEAR(std::strtod(plain.c_str(), nullptr), value,
                    std::fabs(value) < 0.001 ? tolerance : std::max(tolerance, lent * 5.01e-12))
            << plain;
        ASSERT_NEAR(std::strtod(number.c_str(), nullptr), value,
                    std::fabs(value) < 0.000001 ? tolerance : std::max(tolerance, lent * 5.01e-12))
            << number;

        std::string ungrouped = Grouped(value);
        std::erase_if(ungrouped, [](char c) { return c == ',' || c == ' '; });
        ASSERT_EQ(ungrouped, plain);
    }
}

}  // namespace
}  // namespace velm
