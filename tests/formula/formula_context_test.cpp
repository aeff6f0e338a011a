#include "formula/formula_context.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "formula/evaluate.h"

namespace velm::test {
namespace {

TEST(FormulaContext, BindsAndUnbindsPlainNamesAndPrefersBuiltInOnes) {
    Evaluator evaluate;
    FormulaContext& context = evaluate.context;
    for (const CVelmString name : {u"x", u"Total_1"}) {
        EXPECT_EQ(evaluate(name + u" * 2"), std::nullopt);
        EXPECT_FALSE(UndefineVariable(context, name));
        EXPECT_TRUE(DefineVariable(context, name, 3));
        EXPECT_TRUE(DefineVariable(context, u" " + name + u" ", 4));
        EXPECT_EQ(evaluate(name + u" * 2"), 8.0);
        EXPECT_EQ(evaluate(name + u"(1)"), std::nullopt);
        EXPECT_TRUE(UndefineVariable(context, ToLowerAscii(name)));
        EXPECT_FALSE(UndefineVariable(context, name));
        EXPECT_EQ(evaluate(name + u" * 2"), std::nullopt);
    }
    for (const char16_t* name : {u"", u"1", u"a b", u"a+b", u"f(1)", u"2a", u"a-"}) {
        EXPECT_FALSE(DefineVariable(context, name, 1)) << ToUtf8(name);
        EXPECT_FALSE(UndefineVariable(context, name)) << ToUtf8(name);
    }
    EXPECT_TRUE(DefineVariable(context, u"PI", 3) && DefineVariable(context, u"sin", 5) &&
                DefineVariable(context, u"iif", 6));
    EXPECT_EQ(evaluate(u"pi"), 3.141592653589793);
    EXPECT_EQ(evaluate(u"sin"), 5.0) << "no built-in function of that name has no arguments";
    EXPECT_EQ(evaluate(u"iif"), std::nullopt);
}

TEST(FormulaContext, GoesRoundThreeAngleModes) {
    Evaluator evaluate;
    EXPECT_EQ(CVelmStringView(AngleModeLabel(evaluate.context)), u"Rad");
    EXPECT_EQ(CVelmStringView(CycleAngleMode(evaluate.context)), u"Deg");
    EXPECT_NEAR(evaluate(u"sin(30)").value_or(NAN), 0.5, 1e-14);
    EXPECT_EQ(CVelmStringView(CycleAngleMode(evaluate.context)), u"Gra");
    EXPECT_EQ(CVelmStringView(CycleAngleMode(evaluate.context)), u"Rad");
}

TEST(FormulaContext, DrawsEveryStepFromZeroToOne) {
    Evaluator evaluate;
    std::set<double> drawn;
    const CVelmFormula rand(u"rand");
    for (int i = 0; i < 1000000; ++i) {
        double value = -1.0;
        ASSERT_TRUE(rand.Evaluate(evaluate.context, value));
        ASSERT_NEAR(value * 32767, std::round(value * 32767), 1e-9);
        drawn.insert(value);
    }
    EXPECT_EQ(drawn.size(), 32768U);
    EXPECT_EQ(*drawn.begin(), 0.0);
    EXPECT_EQ(*drawn.rbegin(), 1.0);

    Evaluator later;
    later.clock.fileTime = 12345678;
    FormulaContext other(later.clock);
    double first = 0.0;
    EXPECT_TRUE(EvaluateFormula(other, u"rand", first));
    EXPECT_NE(Evaluator()(u"rand"), first);
    EXPECT_EQ(Evaluator()(u"rand"), Evaluator()(u"rand"));
}

TEST(FormulaContext, TellsTheTimeOfItsClock) {
    const FixedClock clock({2024, 7, 5, 9, 5, 3, 6}, 3);
    FormulaContext context(clock);
    // Zone 85 is one hour ahead of UTC in July.
    const std::pair<const char16_t*, double> cases[] = {
        {u"time", 0}, {u"inttime(-1)", 0}, {u"inttime(85)", -2}, {u"inttime(1085.9)", -3}};
    for (const auto& [text, hours] : cases) {
        double value = 0.0;
        EXPECT_TRUE(EvaluateFormula(context, text, value));
        EXPECT_NEAR(value, 2460496 + (9 * 3600 + 5 * 60 + 3) / 86400.0 + hours / 24, 1e-9) << ToUtf8(text);
    }
}

}  // namespace
}  // namespace velm::test
