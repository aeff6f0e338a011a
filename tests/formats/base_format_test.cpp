#include "formats/base_format.h"

#include <gtest/gtest.h>

#include <cmath>

#include "formats/format_codes.h"

namespace velm {
namespace {

TEST(BaseFormat, GroupedAndPlain) {
    const struct {
        double value;
        std::uint32_t code;
        const char* grouped;
        const char* plain;
    } cases[] = {
        {0, FMT_HEX, "0", "0"},
        {0x1F, FMT_HEX, "001F", "001F"},
        {0x12345, FMT_HEX, "0001 2345", "000012345"},
        {0x12345678, FMT_HEX, "1234 5678", "012345678"},
        {-1, FMT_HEX, "FFFF FFFF", "0FFFFFFFF"},
        {2147483647, FMT_HEX, "7FFF FFFF", "07FFFFFFF"},
        {-2147483648.0, FMT_HEX, "8000 0000", "080000000"},
        {8, FMT_OCTAL, "0010", "0010"},
        {-1, FMT_OCTAL, "0377 7777 7777", "00037777777777"},
        {5, FMT_BINARY, "0101", "0101"},
        {21, FMT_BINARY, "0001 0101", "000010101"},
        {1.5, FMT_HEX, "Dec: 1.5", ""},
        {2147483648.0, FMT_BINARY, "Dec: 2,147,483,648", ""},
        {-1e300, FMT_OCTAL, "Dec: -1 e300", ""},
        {HUGE_VAL, FMT_HEX, "Dec: inf", ""},
        {std::nan(""), FMT_HEX, "Dec: nan", ""},
    };
    for (const auto& [value, code, grouped, plain] : cases) {
        EXPECT_EQ(ToUtf8(FormatBase(value, code, true)), grouped) << "code " << code;
        EXPECT_EQ(ToUtf8(FormatBase(value, code, false)), plain) << "code " << code;
    }
}

}  // namespace
}  // namespace velm
