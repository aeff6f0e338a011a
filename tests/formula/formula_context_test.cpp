#include "formula/formula_context.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "formula/evaluate.h"

namespace velm {
namespace {

using test::Evaluator;

TEST(FormulaContext, BindsAndUnbindsPlainNames) {
    Evaluator evaluate;
    FormulaContext& context = evaluate.context;
    for (const char16_t* name : {u"x", u"Total_1"}) {
        const CVelmString twice = CVelmString(name) + u" * 2";
        EXPECT_EQ(evaluate(twice), std::nullopt);
        EXPECT_FALSE(UndefineVariable(context, name));
        EXPECT_TRUE(DefineVariable(context, name, 3));
        EXPECT_TRUE(DefineVariable(context, u" " + CVelmString(name) + u" ", 4));
        EXPECT_EQ(evaluate(twice), 8.0);
        EXPECT_EQ(evaluate(CVelmString(name) + u"(1)"), std::nullopt);
        EXPECT_TRUE(UndefineVariable(context, ToLowerAscii(name)));
        EXPECT_FALSE(UndefineVariable(context, name));
        EXPECT_EQ(evaluate(twice), std::nullopt);
    }
    for (const char16_t* name : {u"", u"1", u"a b", u"a+b", u"f(1)", u"2a", u"a-"}) {
        EXPECT_FALSE(DefineVariable(context, name, 1)) << ToUtf8(name);
        EXPECT_FALSE(UndefineVariable(context, name)) << ToUtf8(name);
    }
}

TEST(FormulaContext, PrefersBuiltInNames) {
    Evaluator evaluate;
    EXPECT_TRUE(DefineVariable(evaluate.context, u"PI", 3));
    EXPECT_TRUE(DefineVariable(evaluate.context, u"sin", 5));
    EXPECT_TRUE(DefineVariable(evaluate.context, u"iif", 6));
    EXPECT_EQ(evaluate(u"pi"), 3.141592653589793);
    EXPECT_EQ(evaluate(u"sin"), 5.0);  // no built-in function of that name has no arguments
    EXPECT_EQ(evaluate(u"iif"), std::nullopt);
}

TEST(FormulaContext, StepsThroughTheAngleModes) {
    Evaluator evaluate;
    FormulaContext& context = evaluate.context;
    EXPECT_EQ(CVelmStringView(AngleModeLabel(context)), u"Rad");
    EXPECT_EQ(CVelmStringView(CycleAngleMode(context)), u"Deg");
    EXPECT_NEAR(*evaluate(u"sin(30)"), 0.5, 1e-15);
    EXPECT_NEAR(*evaluate(u"cos(300)"), 0.5, 1e-15);
    EXPECT_NEAR(*evaluate(u"tan(225)"), 1.0, 1e-14);
    EXPECT_NEAR(*evaluate(u"acos(0.5)"), 60.0, 1e-13);
    EXPECT_EQ(evaluate(u"tan(90)"), std::nullopt);
    EXPECT_EQ(CVelmStringView(CycleAngleMode(context)), u"Gra");
    EXPECT_NEAR(*evaluate(u"sin(50)"), std::sqrt(0.5), 1e-15);
    EXPECT_NEAR(*evaluate(u"atan(1)"), 50.0, 1e-13);
    EXPECT_EQ(CVelmStringView(CycleAngleMode(context)), u"Rad");
}

TEST(FormulaContext, InvertsTheSignOfASineBeyondTheFold) {
    Evaluator evaluate;
    evaluate.context.SetAngle(AngleMode::Degrees);
    for (const auto& [text, value] : {std::pair(u"sin(315)", 0.5), {u"sin(-135)", 0.5}, {u"sin(225)", -0.5}}) {
        EXPECT_NEAR(*evaluate(text) * std::fabs(*evaluate(text)), value, 1e-14) << ToUtf8(text);
    }
    EXPECT_NEAR(*evaluate(u"sin(-45)"), -std::sqrt(0.5), 1e-15);
    EXPECT_NEAR(*evaluate(u"cos(315)"), std::sqrt(0.5), 1e-15);
    EXPECT_NEAR(*evaluate(u"sin(390)"), -0.5, 1e-14);
}

TEST(FormulaContext, DrawsEveryStepFromZeroToOne) {
    Evaluator evaluate;
    std::set<double> drawn;
    const CVelmFormula rand(u"rand");
    for (int i = 0; i < 1000000; ++i) {
        double value = -1.0;
        ASSERT_TRUE(rand.Evaluate(evaluate.context, value));
        const double step = value * 32767;
        ASSERT_NEAR(step, std::round(step), 1e-9);
        drawn.insert(value);
    }
    EXPECT_EQ(drawn.size(), 32768U);
    EXPECT_EQ(*drawn.begin(), 0.0);
    EXPECT_EQ(*drawn.rbegin(), 1.0);

    test::FixedClock later;
    later.fileTime = 12345678;
    FormulaContext other(later);
    double first = 0.0;
    EXPECT_TRUE(EvaluateFormula(other, u"rand", first));
    EXPECT_NE(Evaluator()(u"rand"), first);
    EXPECT_EQ(Evaluator()(u"rand"), Evaluator()(u"rand"));
}

TEST(FormulaContext, TellsTheTimeOfItsClock) {
    const test::FixedClock clock({2024, 7, 5, 9, 5, 3, 6}, 3);
    FormulaContext context(clock);
    const double localTime = 2460496 + (9 * 3600 + 5 * 60 + 3) / 86400.0;
    double value = 0.0;
    EXPECT_TRUE(EvaluateFormula(context, u"time", value));
    EXPECT_NEAR(value, localTime, 1e-9);
    EXPECT_TRUE(EvaluateFormula(context, u"inttime(-1)", value));
    EXPECT_NEAR(value, localTime, 1e-9);
    EXPECT_TRUE(EvaluateFormula(context, u"inttime(85)", value));  // one hour ahead of UTC in July
    EXPECT_NEAR(value, localTime - 2 / 24.0, 1e-9);
    EXPECT_TRUE(EvaluateFormula(context, u"inttime(1085.9)", value));
    EXPECT_NEAR(value, localTime - 3 / 24.0, 1e-9);
}

}  // namespace
}  // namespace velm
