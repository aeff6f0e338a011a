#include <gtest/gtest.h>

#include <limits>

#include "model/document.h"

namespace velm {
namespace {

/// Units 0 to 3; unit 0 is the one entered, with the value 3.
class ConversionEngine : public testing::Test {
protected:
    ConversionEngine() {
        for (int i = 0; i < 4; ++i) {
            document_.AddItem(CreateItem(ITEM_VALUE));
        }
        document_.currentItem = document_.GetItem(0);
        document_.currentItem->value = 3.0;
        document_.currentItem->state = STATE_VALID;
    }

    CVelmItem& Unit(std::size_t i) { return *document_.GetItem(i); }

    CVelmConversion& Linear(std::size_t unit1, std::size_t unit2, double factor, double offset = 0.0) {
        CVelmConversion& conversion = *document_.AddConversion(std::make_unique<CVelmConversion>(document_));
        conversion.unit1 = &Unit(unit1);
        conversion.unit2 = &Unit(unit2);
        conversion.factor = factor;
        conversion.offset = offset;
        return conversion;
    }

    CVelmConversion& Formula(std::size_t unit1, std::size_t unit2, CVelmStringView forward, CVelmStringView reverse) {
        CVelmConversion& conversion = Linear(unit1, unit2, 1.0);
        conversion.formulaFlag = 1;
        conversion.forwardFormula = forward;
        conversion.reverseFormula = reverse;
        return conversion;
    }

    void Recalculate() { document_.Recalculate(context_); }

    void ExpectValue(std::size_t i, double expected) {
        EXPECT_EQ(Unit(i).state, STATE_VALID) << "unit " << i;
        EXPECT_DOUBLE_EQ(Unit(i).value, expected) << "unit " << i;
    }
    void ExpectState(std::size_t i, std::int32_t state) { EXPECT_EQ(Unit(i).state, state) << "unit " << i; }

    CVelmConversionDoc document_{SystemServices()};
    FormulaContext context_{SystemClock()};
};

TEST_F(ConversionEngine, LinearStepsWorkBothWaysAndAZeroFactorForwardOnly) {
    Linear(0, 1, 1.8, 32.0);
    Linear(2, 0, 2.0, 1.0);
    Linear(3, 0, 0.0, 1.0);
    Recalculate();
    ExpectValue(1, 37.4);
    ExpectValue(2, 1.0);
    ExpectState(3, STATE_ERROR);

    document_.currentItem = &Unit(3);
    Unit(3).state = STATE_VALID;
    Recalculate();
    ExpectValue(0, 1.0);
}

TEST_F(ConversionEngine, AResultThatIsNotFiniteIsAnError) {
    Linear(0, 1, 1e308);
    Linear(2, 0, 1e-320);
    Linear(0, 3, std::numeric_limits<double>::quiet_NaN());
    Recalculate();
    for (std::size_t unit = 1; unit <= 3; ++unit) {
        ExpectState(unit, STATE_ERROR);
    }
}

TEST_F(ConversionEngine, OnlyTheLowHalfOfTheFormulaFlagDecides) {
    Formula(0, 1, u"x^2", u"sqrt(x)").formulaFlag = 0x10000;
    Formula(0, 2, u"x^2", u"sqrt(x)").formulaFlag = 0x8000;
    Recalculate();
    ExpectValue(1, 3.0);
    ExpectValue(2, 9.0);
}

TEST_F(ConversionEngine, ADirectStepWinsOverABridgeListedBefore) {
    Linear(1, 2, 10.0);
    Linear(0, 1, 10.0);
    Linear(0, 2, 7.0);
    Unit(1).shown = 0;
    Recalculate();
    ExpectState(1, STATE_NONE);
    ExpectValue(2, 21.0);
}

TEST_F(ConversionEngine, TheBridgeListedFirstWinsAndMayBeHidden) {
    Linear(3, 1, 2.0);
    Linear(2, 3, 10.0);
    Linear(0, 1, 1.0);
    Linear(0, 2, 1.0);
    Unit(1).shown = 0;
    Unit(2).shown = 0;
    Recalculate();
    ExpectValue(3, 1.5);
    ExpectValue(1, 3.0);
    ExpectState(2, STATE_NONE);
}

TEST_F(ConversionEngine, AOneWayFormulaIsPassedOverInTheOtherDirection) {
    Formula(1, 0, u"x+1", u"");
    Formula(0, 2, u"x+1", u"");
    Linear(1, 2, 2.0);
    Recalculate();
    ExpectValue(1, 2.0);
    ExpectValue(2, 4.0);
}

TEST_F(ConversionEngine, AFailingFormulaEndsTheSearchOfItsTargetButNotThatOfTheUnitsBehindIt) {
    Formula(0, 1, u"err", u"err");
    Linear(0, 2, 1.0);
    Linear(1, 2, 1.0);
    Linear(1, 3, 1.0);
    Linear(2, 3, 5.0);
    Recalculate();
    ExpectState(1, STATE_ERROR);
    ExpectValue(2, 3.0);
    ExpectValue(3, 15.0);
}

TEST_F(ConversionEngine, UnitsThatNothingLeadsToStayEmptyWhateverTheyWere) {
    Linear(2, 3, 1.0);
    for (std::size_t unit = 1; unit <= 3; ++unit) {
        Unit(unit).state = STATE_VALID;
    }
    Recalculate();
    ExpectValue(0, 3.0);
    for (std::size_t unit = 1; unit <= 3; ++unit) {
        ExpectState(unit, STATE_NONE);
    }
}

TEST_F(ConversionEngine, AnEditedFormulaHoldsAtTheNextRecalculation) {
    CVelmConversion& conversion = Formula(1, 0, u"x", u"x+1");
    Recalculate();
    ExpectValue(1, 4.0);
    conversion.reverseFormula = u"X*10";
    Recalculate();
    ExpectValue(1, 30.0);
    conversion.reverseFormula = u"x*";
    Recalculate();
    ExpectState(1, STATE_ERROR);
}

TEST_F(ConversionEngine, XIsNotBoundAfterwards) {
    Formula(0, 1, u"x", u"x");
    DefineVariable(context_, u"x", 1.0);
    Recalculate();
    double value = 0.0;
    EXPECT_FALSE(EvaluateFormula(context_, u"x", value));
}

}  // namespace
}  // namespace velm
