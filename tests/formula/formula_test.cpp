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
    Evaluator evaluate;
    DefineVariable(evaluate.context, u"a", 0.1);
    DefineVariable(evaluate.context, u"b", -7.0);
    for (const auto& row : ReadTable(VELMORA_TESTS "/formula/values.txt")) {
        const CVelmFormula ready(FromUtf8(row.at(0)));
        const bool fails = row.at(1) == "fails";
        evaluate.context.BindX(4);
        EXPECT_EQ(evaluate(FromUtf8(row.at(0))).has_value(), !fails) << row.at(0);
        EXPECT_DOUBLE_EQ(evaluate(FromUtf8(row.at(0))).value_or(42.0),
                         fails ? 42.0 : std::strtod(row.at(1).c_str(), nullptr))
            << row.at(0);
        for (const double x : {4.0, 0.0, -0.0, 1.0, -1.0, 98.6, 1e-320, 1e150, -9.9e300, 1e301, 1.7e308}) {
            evaluate.context.BindX(x);
            const std::optional<double> expected = evaluate(FromUtf8(row.at(0)));
            double result = 42.0;
            ASSERT_EQ(ready.Evaluate(evaluate.context, result), expected.has_value()) << row.at(0) << " of " << x;
            EXPECT_EQ(std::bit_cast<std::uint64_t>(result), std::bit_cast<std::uint64_t>(expected.value_or(42.0)))
                << row.at(0) << " of " << x << ": " << result;
        }
    }
}

TEST(Formula, BoundsItsTokensAndWhatXMayBe) {
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
