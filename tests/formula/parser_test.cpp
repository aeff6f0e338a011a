#include "formula/parser.h"

#include <gtest/gtest.h>

#include <string>

#include "formula/evaluate.h"
#include "formula/operators.h"
#include "formula/tokenizer.h"

namespace velm {
namespace {

using test::Repeat;

/// The tokens from the head, a call as name/arguments; "unary" tells the two meanings of "-" apart.
std::string Prefix(CVelmStringView text) {
    const FormulaTokenList list = ParseFormula(text);
    std::string shown;
    for (auto token = list.tokens.rbegin(); token != list.tokens.rend(); ++token) {
        shown += shown.empty() ? "" : " ";
        switch (token->kind) {
            case FormulaTokenKind::Number:
                shown += std::to_string(token->number).substr(0, 3);
                break;
            case FormulaTokenKind::Operator:
                shown += token->index == OP_NEGATE ? "unary" : ToUtf8(list.Name(*token));
                break;
            case FormulaTokenKind::Identifier:
                shown += ToUtf8(list.Name(*token)) + "/" + std::to_string(token->operandCount);
                break;
            default:
                shown += "error";
        }
    }
    return shown;
}

TEST(Parser, GivesPrefixOrderWithTheRightOperandFirst) {
    EXPECT_EQ(Prefix(u"2+3 * x"), "+ * x/0 3.0 2.0");
    EXPECT_EQ(Prefix(u"8-3-2"), "- 2.0 - 3.0 8.0");
    EXPECT_EQ(Prefix(u"2^3^2"), "^ 2.0 ^ 3.0 2.0");
    EXPECT_EQ(Prefix(u"-2^2"), "^ 2.0 unary 2.0");
    EXPECT_EQ(Prefix(u"-3\u00B2"), "unary \u00B2 3.0");
    EXPECT_EQ(Prefix(u"2^3!"), "^ ! 3.0 2.0");
    EXPECT_EQ(Prefix(u"~x>1"), "> 1.0 ~ x/0");
    EXPECT_EQ(Prefix(u"max(1,x)%"), "% max/2 x/0 1.0");
    EXPECT_EQ(Prefix(u"f(g(1),(2))"), "f/2 2.0 g/1 1.0");
    EXPECT_EQ(Prefix(u"  "), "");
}

TEST(Parser, PutsOneErrorAtTheHeadAndSaysWhere) {
    const std::pair<const char16_t*, std::uint32_t> broken[] = {
        {u"+3", 0},     {u"x<=3", 2},    {u"1e+3", 0},  {u"f()", 2},     {u"()", 1},  {u"(1,2)", 2},
        {u"1,2", 1},    {u"((1)", 0},    {u"1)", 1},    {u"2 3", 2},     {u"2x", 0},  {u"x y", 2},
        {u"(2)(3)", 3}, {u"x?", 1},      {u"f(1,)", 4}, {u"!3", 0},      {u"x~1", 1}, {u"a.b", 1},
        {u"2(3)", 1},   {u"f(1)(2)", 4}, {u"1e301", 0}, {u"x\u0100", 1}, {u"f(2", 1},
    };
    for (const auto& [text, position] : broken) {
        const FormulaTokenList list = ParseFormula(text);
        ASSERT_FALSE(list.IsEmpty()) << ToUtf8(text);
        EXPECT_EQ(list.Head().kind, FormulaTokenKind::Error) << ToUtf8(text);
        EXPECT_EQ(list.Head().position, position) << ToUtf8(text);
    }
}

TEST(Parser, LeavesTheErrorOfATrailingOperatorInsideTheList) {
    EXPECT_EQ(Prefix(u"2*-"), "* unary error 2.0");
    EXPECT_EQ(ParseFormula(u"2*-").FindError()->position, 3U);
    EXPECT_FALSE(CVelmFormula(u"2*-").Parses());
}

TEST(Parser, BoundsTheLengthOfATokenOnly) {
    EXPECT_FALSE(ParseFormula(Repeat(u"x", TOKEN_MAX_LENGTH)).HasError());
    EXPECT_TRUE(ParseFormula(Repeat(u"x", TOKEN_MAX_LENGTH + 1)).HasError());
    EXPECT_TRUE(ParseFormula(Repeat(u"1", TOKEN_MAX_LENGTH + 1)).HasError());
    EXPECT_FALSE(ParseFormula(Repeat(u"xyz+", 100000) + u"1").HasError());
}

}  // namespace
}  // namespace velm
