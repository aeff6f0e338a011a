#include "formula/tokenizer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>

namespace velm {
namespace {

TEST(Tokenizer, ReadsNumbersOfFourRadixes) {
    const std::pair<CVelmStringView, double> numbers[] = {{u"12.25", 12.25},
                                                          {u"-3", -3},
                                                          {u"1.", 1},
                                                          {u".", 0},
                                                          {u"1e-3", 1e-3},
                                                          {u"2E3", 2000},
                                                          {u"1e300", 1e300},
                                                          {u"1e-400", 0},
                                                          {u"1e-99999999999999999999", 0},
                                                          {u"0ffh", 255},
                                                          {u"101b", 5},
                                                          {u"17o", 15},
                                                          {u"0ffffffffffffh", 281474976710655.0},
                                                          {u"-", -0.0}};
    for (const auto& [word, number] : numbers) {
        double value = 1.0;
        EXPECT_TRUE(ScanNumber(word, value)) << ToUtf8(word);
        EXPECT_EQ(value, number) << ToUtf8(word);
        EXPECT_EQ(std::signbit(value), std::signbit(number)) << ToUtf8(word);
    }
    for (const char16_t* word : {u"", u"x", u"ffh", u"-0fh", u"12b", u"18o", u"0gh", u"0FFh", u"1e301", u"1e", u"1e-",
                                 u"1e+3", u"1.2.3", u"+1", u"1e5.0", u"1e99999999999999999999", u".b", u"--1"}) {
        double value = 1.0;
        EXPECT_FALSE(ScanNumber(word, value)) << ToUtf8(word);
    }
}

}  // namespace
}  // namespace velm
