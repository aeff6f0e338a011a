#include "formula/tokenizer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace velm {
namespace {

std::vector<std::string> Words(CVelmStringView text) {
    std::vector<std::string> words;
    std::size_t position = 0;
    CVelmStringView word;
    while (NextToken(text, position, word)) {
        words.push_back(ToUtf8(word));
    }
    return words;
}

std::optional<double> Scan(CVelmStringView word) {
    double value = 0.0;
    return ScanNumber(word, value) ? std::optional(value) : std::nullopt;
}

using Strings = std::vector<std::string>;

TEST(Tokenizer, SplitsIntoNamesNumberWordsAndSingleCharacters) {
    EXPECT_EQ(Words(u"2+3 * x_1"), (Strings{"2", "+", "3", "*", "x_1"}));
    EXPECT_EQ(Words(u"\t1e-5\r\n2.5e-3 0ffh "), (Strings{"1e-5", "2.5e-3", "0ffh"}));
    EXPECT_EQ(Words(u"1e+5"), (Strings{"1e", "+", "5"}));
    EXPECT_EQ(Words(u"1-2 x-1 .5.5"), (Strings{"1", "-", "2", "x", "-", "1", ".5.5"}));
    EXPECT_EQ(Words(u"\u00B2\u00E9(,"), (Strings{"\u00B2", "\u00E9", "(", ","}));
    EXPECT_EQ(Words(u" \n"), Strings{});
}

TEST(Tokenizer, ReadsNumbersOfFourRadixes) {
    EXPECT_EQ(Scan(u"12.25"), 12.25);
    EXPECT_EQ(Scan(u"-3"), -3.0);
    EXPECT_EQ(Scan(u"1."), 1.0);
    EXPECT_EQ(Scan(u"."), 0.0);
    EXPECT_EQ(Scan(u"1e-3"), 1e-3);
    EXPECT_EQ(Scan(u"2E3"), 2000.0);
    EXPECT_EQ(Scan(u"1e300"), 1e300);
    EXPECT_EQ(Scan(u"1e-400"), 0.0);
    EXPECT_EQ(Scan(u"1e-99999999999999999999"), 0.0);
    EXPECT_EQ(Scan(u"0ffh"), 255.0);
    EXPECT_EQ(Scan(u"101b"), 5.0);
    EXPECT_EQ(Scan(u"17o"), 15.0);
    EXPECT_EQ(Scan(u"0ffffffffffffh"), 281474976710655.0);
    ASSERT_EQ(Scan(u"-"), 0.0);
    EXPECT_TRUE(std::signbit(*Scan(u"-")));
}

TEST(Tokenizer, RejectsWordsThatAreNoNumber) {
    for (const char16_t* word : {u"", u"x", u"ffh", u"-0fh", u"12b", u"18o", u"0gh", u"0FFh", u"1e301", u"1e", u"1e-",
                                 u"1e+3", u"1.2.3", u"+1", u"1e5.0", u"1e99999999999999999999", u".b", u"--1"}) {
        EXPECT_EQ(Scan(word), std::nullopt) << ToUtf8(word);
    }
}

TEST(Tokenizer, TakesACharacterAsTheOperatorThatSharesItsLowByte) {
    std::int32_t code = -1;
    EXPECT_TRUE(IsOperatorToken(u"-", code));
    EXPECT_EQ(code, 1);
    EXPECT_TRUE(IsOperatorToken(u"\u00B3", code));
    EXPECT_EQ(code, 15);
    EXPECT_TRUE(IsOperatorToken(u"\u012B", code));  // low byte 0x2B, "+"
    EXPECT_EQ(code, 0);
    EXPECT_FALSE(IsOperatorToken(u"\u0128", code));  // low byte 0x28, "(", which is no operator
    EXPECT_FALSE(IsOperatorToken(u"--", code));
    EXPECT_FALSE(IsOperatorToken(u"", code));
}

}  // namespace
}  // namespace velm
