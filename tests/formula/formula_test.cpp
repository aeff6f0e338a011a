#include "formula/formula.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "formula/evaluate.h"
#include "formula/tokenizer.h"
#include "platform/saturate.h"
#include "support/table.h"

namespace velm::test {
namespace {

TEST(Formula, GivesTheValuesOfTheTableOrFailsWithoutTouchingTheResult) {
    for (const auto& row : ReadTable(VELMORA_TESTS "/formula/values.txt")) {
        Evaluator evaluate;
        evaluate.context.BindX(4);
        const CVelmString text = FromUtf8(row.at(0));
        const bool fails = row.at(1) == "fails";
        const double expected = fails ? 42.0 : std::strtod(row.at(1).c_str(), nullptr);
        double ofText = 42.0;
        double ofFormula = 42.0;
        EXPECT_EQ(EvaluateFormula(evaluate.context, text, ofText), !fails) << row.at(0);
        EXPECT_EQ(CVelmFormula(text).Evaluate(evaluate.context, ofFormula), !fails) << row.at(0);
        EXPECT_TRUE(fails || CVelmFormula(text).Parses()) << row.at(0);
        EXPECT_DOUBLE_EQ(ofText, expected) << row.at(0);
        EXPECT_DOUBLE_EQ(ofFormula, expected) << row.at(0);
    }
    Evaluator evaluate;
    EXPECT_EQ(evaluate(u""), std::nullopt);
    EXPECT_EQ(evaluate(u"  "), std::nullopt);
    EXPECT_EQ(evaluate(Repeat(u"0", TOKEN_MAX_LENGTH - 1) + u"1"), 1.0) << "only a token's length is bounded";
    EXPECT_EQ(evaluate(Repeat(u"0", TOKEN_MAX_LENGTH) + u"1"), std::nullopt);
    EXPECT_TRUE(DefineVariable(evaluate.context, Repeat(u"v", TOKEN_MAX_LENGTH), 7));
    EXPECT_EQ(evaluate(Repeat(u"v", TOKEN_MAX_LENGTH)), 7.0);
    EXPECT_EQ(evaluate(Repeat(u"v", TOKEN_MAX_LENGTH + 1)), std::nullopt);
    for (const double unusable : {2e301, std::numeric_limits<double>::infinity(), std::nan("")}) {
        evaluate.context.BindX(unusable);
        DefineVariable(evaluate.context, u"y", unusable);
        for (const char16_t* text : {u"x", u"x*2", u"x>0", u"x*0", u"iif(1,x,2)", u"x&1", u"y", u"iif(y,1,2)"}) {
            EXPECT_EQ(evaluate(text), std::nullopt) << ToUtf8(text) << " of " << unusable;
        }
        EXPECT_EQ(evaluate(u"iif(0,x,0,y,3)"), 3.0);
    }
    EXPECT_EQ(ToInt32(std::nan("")), 0);
    EXPECT_EQ(ToInt32(-std::numeric_limits<double>::infinity()), std::numeric_limits<std::int32_t>::min());
}

TEST(Formula, GivesTheSameAgainAsTheTextAndForEveryX) {
    const char16_t* texts[] = {u"x*2.54",
                               u"(x-32)*5/9",
                               u"x*9/5+32",
                               u"5*x",
                               u"2+x",
                               u"x/3-1",
                               u"x+1+2",
                               u"x-1*2",
                               u"x/0",
                               u"x*0",
                               u"x+0",
                               u"x/9*5",
                               u"(x*2)*3",
                               u"x*x",
                               u"x*2+x",
                               u"3-x",
                               u"3/x",
                               u"x/7/7",
                               u"x*1e200+1",
                               u"x+1e301",
                               u"(x+1)*1e300",
                               u"x*2/1e300",
                               u"x-0",
                               u"x^2+3*x-7/(x+1)",
                               u"2^x^2",
                               u"x^2",
                               u"x\u00B2",
                               u"-x*2",
                               u"x+a",
                               u"a*x+b",
                               u"sin(x)*cos(x)+sqrt(abs(x))",
                               u"iif(x>0, 1, x<0, -1, 0)"};
    Evaluator evaluate;
    DefineVariable(evaluate.context, u"a", 0.1);
    DefineVariable(evaluate.context, u"b", -7.0);
    for (const char16_t* text : texts) {
        const CVelmFormula formula(text);
        for (const double x : {0.0, -0.0, 1.0, -1.0, 98.6, -40.0, 1e-320, 1e150, -9.9e300, 1e301, 1.7e308}) {
            evaluate.context.BindX(x);
            const std::optional<double> expected = evaluate(text);
            double result = 0.0;
            ASSERT_EQ(formula.Evaluate(evaluate.context, result), expected.has_value()) << ToUtf8(text) << " of " << x;
            EXPECT_EQ(std::bit_cast<std::uint64_t>(result), std::bit_cast<std::uint64_t>(expected.value_or(0.0)))
                << ToUtf8(text) << " of " << x << ": " << result;
        }
    }
}

TEST(Formula, TakesNoStackInProportionToItsLength) {
    static constexpr std::size_t DEPTH = 1000000;  // times the smallest frame there is: more than a thread's stack
    const struct {
        CVelmStringView before, inside, after;
        std::optional<double> value;
    } cases[] = {
        {u"-", u"x", u"", 1.0},         {u"(", u"x", u")", 1.0},           {u"(", u"", u"", std::nullopt},
        {u"abs(", u"x", u")", 1.0},     {u"1+(", u"x", u")", DEPTH + 1.0}, {u"iif(0,err,", u"x", u")", 1.0},
        {u"iif(", u"x", u",1,0)", 1.0}, {u"x+", u"x", u"", DEPTH + 1.0},   {u"nosuch(1,", u"x", u")", std::nullopt}};
    Evaluator evaluate;
    evaluate.context.BindX(1);
    for (const auto& [before, inside, after, value] : cases) {
        EXPECT_EQ(evaluate(Repeat(before, DEPTH) + CVelmString(inside) + Repeat(after, DEPTH)), value)
            << ToUtf8(before);
    }
}

}  // namespace
}  // namespace velm::test
