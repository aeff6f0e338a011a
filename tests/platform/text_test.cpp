#include "platform/text.h"

#include <gtest/gtest.h>

namespace velm {
namespace {

TEST(Text, LetterCaseIsFoldedUnitByUnitAsFileNamesAreCompared) {
    EXPECT_TRUE(EqualsNoCase(u"LENGTH.CNV", u"length.cnv"));
    EXPECT_TRUE(EqualsNoCase(u"LÄNGE ДЛИНА ΜΉΚΟΣ", u"länge длина μήκοσ"));
    EXPECT_FALSE(EqualsNoCase(u"STRASSE", u"straße"));
    EXPECT_FALSE(EqualsNoCase(u"ab", u"abc"));
    EXPECT_EQ(FoldCase(u'['), u'[');
    EXPECT_EQ(FoldCase(0xD801), 0xD801) << "a surrogate is half a letter and stays";

    EXPECT_TRUE(StartsWithNoCase(u"HTTP://host", u"http://"));
    EXPECT_FALSE(StartsWithNoCase(u"http", u"http://"));
    EXPECT_TRUE(EndsWithNoCase(u"Größe.CNV", u".cnv"));
    EXPECT_FALSE(EndsWithNoCase(u"cnv", u".cnv"));
}

TEST(Text, FormulaLetterCaseIsAsciiOnly) {
    EXPECT_EQ(ToLowerAscii(u"SIN(Ä)+0XFF[Z"), u"sin(Ä)+0xff[z");
}

TEST(Text, WellFormedUtf8MakesTheRoundTrip) {
    const std::string text = "a\u00e9\u0394\uffff\U00010000\U0010ffff";
    EXPECT_EQ(FromUtf8(text), u"a\u00e9\u0394\uffff\U00010000\U0010ffff");
    EXPECT_EQ(ToUtf8(FromUtf8(text)), text);
    EXPECT_EQ(FromUtf8(std::string_view("a\0b", 3)).size(), 3U);
}

TEST(Text, WhatIsNotUtf8BecomesTheReplacementCharacter) {
    const std::pair<std::string_view, CVelmStringView> cases[] = {{"a\xffz", u"a\ufffdz"},
                                                                  {"\x80", u"\ufffd"},
                                                                  {"\xe2\x82", u"\ufffd"},
                                                                  {"\xe2\x82z", u"\ufffdz"},
                                                                  {"\xc0\x80", u"\ufffd\ufffd"},
                                                                  {"\xed\xa0\x80", u"\ufffd\ufffd\ufffd"},
                                                                  {"\xf4\x90\x80\x80", u"\ufffd\ufffd\ufffd\ufffd"}};
    for (const auto& [bytes, expected] : cases) {
        EXPECT_EQ(FromUtf8(bytes), expected);
    }
    const CVelmString lone = {u'x', 0xD800, u'y', 0xDC00};
    EXPECT_EQ(ToUtf8(lone), "x\uFFFDy\uFFFD");
}

}  // namespace
}  // namespace velm
