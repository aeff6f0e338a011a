#include "formula/formula.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <string>

#include "formula/evaluate.h"
#include "platform/saturate.h"

namespace velm {
namespace {

using test::Evaluator;
using test::Repeat;

TEST(Formula, ComputesOperatorsInTheirOrder) {
    const std::pair<const char16_t*, double> formulas[] = {
        {u"2+3 * 4", 14},
        {u"2^3^2", 64},
        {u"-2^2", 4},
        {u"-3\u00B2", -9},
        {u"2\u00B3", 8},
        {u"2 * -3", -6},
        {u"8-3-2", 3},
        {u"5\\3", 2},
        {u"-5\\3", -2},
        {u"5.5\\2", 1.5},
        {u"3>2", -1},
        {u"(3>2) * 5", -5},
        {u"2<2", 0},
        {u"1+1=2", -1},
        {u"50%", 0.5},
        {u"6 & 3", 2},
        {u"6 | 3", 7},
        {u"6 # 3", 5},
        {u"~5", -6},
        {u"~0", -1},
        {u"-6.9 | 0", -6},
        {u"3!", 6},
        {u"0!", 1},
        {u"-1!", -1},
        {u"(1+2)!!", 720},
        {u"0FFH + 101B", 260},
        {u"10/4/5", 0.5},
        {u"7-2*3", 1},
        {u"2*(3-x)/(x+1)", -0.4},
        {u"12/(x-(1+2))", 12},
        {u"2-x^2", -14},
    };
    Evaluator evaluate;
    evaluate.context.BindX(4);
    for (const auto& [text, value] : formulas) {
        EXPECT_EQ(evaluate(text), value) << ToUtf8(text);
    }
    EXPECT_NEAR(*evaluate(u"149!"), 3.8089226376305658e260, 1e247);
}

TEST(Formula, ComputesFunctions) {
    const std::pair<const char16_t*, double> formulas[] = {
        {u"round(2.5)", 3},
        {u"round(-2.5)", -2},
        {u"abs(-3)", 3},
        {u"sqrt(2)", 1.4142135623730951},
        {u"ln(e)", 1},
        {u"lg(1000)", 3},
        {u"neg(2)", -2},
        {u"sin(pi/6)", 0.5},
        {u"cos(pi/3)", 0.5},
        {u"tan(pi/4)", 1},
        {u"asin(1)+acos(1)", 1.5707963267948966},
        {u"atan(1)*4", 3.141592653589793},
        {u"sinh(1)", 1.1752011936438014},
        {u"cosh(1)", 1.5430806348152437},
        {u"tanh(1)", 0.7615941559557649},
        {u"SIN(1)*sin(1)+cos(1)*COS(1)", 1},
        {u"fromutc(85, 2451544.5)", 2451544.5},
        {u"toutc(1004, 2451544)", 2451544 + 8 / 24.0},
    };
    Evaluator evaluate;
    for (const auto& [text, value] : formulas) {
        const std::optional<double> result = evaluate(text);
        ASSERT_TRUE(result) << ToUtf8(text);
        EXPECT_NEAR(*result, value, 1e-14 * std::fmax(1.0, std::fabs(value))) << ToUtf8(text);
    }
}

TEST(Formula, FailsWithoutTouchingTheResult) {
    const char16_t* failing[] = {
        u"",
        u"  ",
        u"1/0",
        u"0/0",
        u"5\\0",
        u"150!",
        u"3.5!",
        u"(-1)!",
        u"sqrt(-1)",
        u"ln(0)",
        u"lg(-1)",
        u"asin(1.1)",
        u"acos(-2)",
        u"tan(pi/2)",
        u"1e300*100",
        u"-1e300*100",
        u"(-8)^(1/3)",
        u"cosh(1000)",
        u"err",
        u"rand(1)",
        u"pi()",
        u"unknown",
        u"nosuch(1,2)",
        u"sin(1,2)",
        u"sin",
        u"iif",
        u"iif(1)",
        u"iif(1,2)",
        u"iif(1,2,3,4)",
        u"2+",
        u"fromutc(5,0)",
        u"inttime(1e30)",
        u"iif(err,1,2)",
        u"0^(-1)",
        u"9999999999999999e300",
    };
    Evaluator evaluate;
    for (const char16_t* text : failing) {
        double result = 42.0;
        EXPECT_FALSE(EvaluateFormula(evaluate.context, text, result)) << ToUtf8(text);
        EXPECT_FALSE(CVelmFormula(text).Evaluate(evaluate.context, result)) << ToUtf8(text);
        EXPECT_EQ(result, 42.0) << ToUtf8(text);
    }
}

TEST(Formula, ChecksTheRangeOfEveryStep) {
    Evaluator evaluate;
    EXPECT_EQ(evaluate(u"1e300*10"), 1e301);
    EXPECT_EQ(evaluate(u"1e300*11-1e300*11"), std::nullopt);
    EXPECT_EQ(evaluate(u"1/(1e300*11)"), std::nullopt);
    EXPECT_EQ(evaluate(u"1e300*11 > 0"), std::nullopt);
    for (const double unusable : {2e301, std::numeric_limits<double>::infinity(), std::nan("")}) {
        evaluate.context.BindX(unusable);
        DefineVariable(evaluate.context, u"y", unusable);
        for (const char16_t* text : {u"x", u"x*2", u"x>0", u"x*0", u"iif(1,x,2)", u"x&1", u"y", u"iif(y,1,2)"}) {
            EXPECT_EQ(evaluate(text), std::nullopt) << ToUtf8(text) << " of " << unusable;
        }
        EXPECT_EQ(evaluate(u"iif(0,x,0,y,3)"), 3.0);
    }
}

TEST(Formula, SaturatesIntegers) {
    Evaluator evaluate;
    EXPECT_EQ(evaluate(u"3e9 | 0"), 2147483647.0);
    EXPECT_EQ(evaluate(u"-3e9 | 0"), -2147483648.0);
    EXPECT_EQ(evaluate(u"~1e300"), -2147483648.0);
    EXPECT_EQ(ToInt32(std::nan("")), 0);
    EXPECT_EQ(ToInt32(-std::numeric_limits<double>::infinity()), std::numeric_limits<std::int32_t>::min());
}

TEST(Formula, EvaluatesOnlyTheArgumentsThatAConditionalNeeds) {
    Evaluator evaluate;
    const CVelmFormula sign(u"iif(x>0, 1, x<0, -1, 0)");
    for (const double x : {-2.5, 0.0, 7.0}) {
        evaluate.context.BindX(x);
        double result = 99.0;
        EXPECT_TRUE(sign.Evaluate(evaluate.context, result));
        EXPECT_EQ(result, (x > 0) - (x < 0));
    }
    EXPECT_EQ(evaluate(u"iif(1, 2, err)"), 2.0);
    EXPECT_EQ(evaluate(u"iif(0, err, 1/0, err, 3)"), std::nullopt);
    EXPECT_EQ(evaluate(u"iif(0, iif(1,2), 5)"), 5.0);
    EXPECT_EQ(evaluate(u"iif(0, nosuch(1), 1, 6, unknown)"), 6.0);
    EXPECT_EQ(evaluate(u"1 + iif(0, 1, 2)*10 - iif(3, 4+iif(0,1,1), 5)"), 16.0);
    EXPECT_EQ(evaluate(u"iif(iif(0,1,0), err, iif(1,1,0), 7, 8)²"), 49.0);
    EXPECT_EQ(evaluate(u"2^iif(1, 3, 4) > 7 & iif(0, 0, 6)"), evaluate(u"2^3 > 7&6"));
}

TEST(Formula, GivesTheSameAgainAsTheTextAndForEveryX) {
    const char16_t* texts[] = {
        u"x*2.54",
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
    };
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
    Evaluator evaluate;
    evaluate.context.BindX(1);
    EXPECT_EQ(evaluate(Repeat(u"-", DEPTH) + u"x"), 1.0);
    EXPECT_EQ(evaluate(Repeat(u"(", DEPTH) + u"x" + Repeat(u")", DEPTH)), 1.0);
    EXPECT_EQ(evaluate(Repeat(u"(", DEPTH)), std::nullopt);
    EXPECT_EQ(evaluate(Repeat(u"abs(", DEPTH) + u"x" + Repeat(u")", DEPTH)), 1.0);
    EXPECT_EQ(evaluate(Repeat(u"1+(", DEPTH) + u"x" + Repeat(u")", DEPTH)), DEPTH + 1.0);
    EXPECT_EQ(evaluate(Repeat(u"iif(0,err,", DEPTH) + u"x" + Repeat(u")", DEPTH)), 1.0);
    EXPECT_EQ(evaluate(Repeat(u"iif(", DEPTH) + u"x" + Repeat(u",1,0)", DEPTH)), 1.0);
    EXPECT_EQ(evaluate(Repeat(u"nosuch(1,", DEPTH) + u"x" + Repeat(u")", DEPTH)), std::nullopt);
    EXPECT_EQ(evaluate(Repeat(u"x+", DEPTH) + u"x"), DEPTH + 1.0);
}

}  // namespace
}  // namespace velm
