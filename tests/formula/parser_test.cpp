#include "formula/parser.h"

#include <gtest/gtest.h>

#include "formula/evaluate.h"
#include "formula/operators.h"
#include "formula/tokenizer.h"
#include "support/table.h"

namespace velm::test {
namespace {

/// The tokens from the head, a call as name/arguments; "unary" tells the two meanings of "-" apart.
std::string Prefix(const FormulaTokenList& list) {
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

TEST(Parser, GivesPrefixOrderWithTheRightOperandFirstOrOneErrorAtTheHead) {
    for (const auto& row : ReadTable(VELMORA_TESTS "/formula/tokens.txt")) {
        const FormulaTokenList list = ParseFormula(FromUtf8(row.at(0)));
        ASSERT_FALSE(list.IsEmpty()) << row.at(0);
        EXPECT_EQ(list.Head().kind != FormulaTokenKind::Error ? Prefix(list)
                                                              : "error at " + std::to_string(list.Head().position),
                  row.at(1))
            << row.at(0);
    }
    EXPECT_TRUE(ParseFormula(u"  ").IsEmpty());
    EXPECT_EQ(ParseFormula(u"2*-").FindError()->position, 3U) << "a trailing operator leaves its error inside";
    EXPECT_FALSE(CVelmFormula(u"2*-").Parses());
}

TEST(Parser, BoundsTheLengthOfATokenOnly) {
    EXPECT_FALSE(ParseFormula(Repeat(u"x", TOKEN_MAX_LENGTH)).HasError());
    EXPECT_TRUE(ParseFormula(Repeat(u"x", TOKEN_MAX_LENGTH + 1)).HasError());
    EXPECT_TRUE(ParseFormula(Repeat(u"1", TOKEN_MAX_LENGTH + 1)).HasError());
    EXPECT_FALSE(ParseFormula(Repeat(u"xyz+", 100000) + u"1").HasError());
}

}  // namespace
}  // namespace velm::test
