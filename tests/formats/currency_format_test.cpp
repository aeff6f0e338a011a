#include "formats/currency_format.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velm {
namespace {

TEST(CurrencyFormat, GroupedAndPlain) {
    const struct {
        double value;
        const char* grouped;
        const char* plain;
    } cases[] = {
        {0, "0.00", "0.00"},
        {0.00499, "0.00", "0.00"},
        {-0.00499, "0.00", "0.00"},
        {0.005, "0.01", "0.01"},
        {-0.01, "(0.01)", "-0.01"},
        {2.675, "2.67", "2.67"},
        {999.999, "1,000.00", "1000.00"},
        {1234.5, "1,234.50", "1234.50"},
        {-1234.5, "(1,234.50)", "-1234.50"},
        {-123456, "(123,456.00)", "-123456.00"},
        {1e18, "1,000,000,000,000,000,000.00", "1000000000000000000.00"},
        {2e18, "2 e18", "2e18"},
        {-2e18, "-2 e18", "-2e18"},
        {-HUGE_VAL, "-inf", "-inf"},
        {std::nan(""), "nan", "nan"},
    };
    for (const auto& [value, grouped, plain] : cases) {
        EXPECT_EQ(ToUtf8(FormatCurrency(value, true)), grouped);
        EXPECT_EQ(ToUtf8(FormatCurrency(value, false)), plain);
    }
}

}  // namespace
}  // namespace velm
