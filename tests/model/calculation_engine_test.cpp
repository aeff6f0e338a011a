#include <gtest/gtest.h>

#include <string>

#include "model/document.h"

namespace velm {
namespace {

class CalculationEngine : public testing::Test {
protected:
    CVelmItem& Add(CVelmStringView identifier, CVelmStringView text, bool output) {
        auto item = std::make_unique<CVelmFormulaItem>();
        item->identifier = identifier;
        item->valueText = text;
        item->output = output ? 1 : 0;
        return *document_.AddItem(std::move(item));
    }
    CVelmItem& Input(CVelmStringView identifier, CVelmStringView text) { return Add(identifier, text, false); }
    CVelmItem& Output(CVelmStringView identifier, CVelmStringView text) { return Add(identifier, text, true); }

    void Recalculate() { document_.Recalculate(context_); }

    static void ExpectValue(const CVelmItem& item, double expected) {
        EXPECT_EQ(item.state, STATE_VALID) << ToUtf8(item.identifier);
        EXPECT_EQ(item.value, expected) << ToUtf8(item.identifier);
    }

    void ExpectUnbound(CVelmStringView name) {
        double value = 0.0;
        EXPECT_FALSE(EvaluateFormula(context_, name, value)) << ToUtf8(name) << " is still bound to " << value;
    }

    CVelmCalculationDoc document_{SystemServices()};
    FormulaContext context_{SystemClock()};
};

TEST_F(CalculationEngine, OutputsMayUseInputsAndOutputsListedLater) {
    const CVelmItem& total = Output(u"total", u"net + tax");
    const CVelmItem& tax = Output(u"tax", u"net * rate%");
    const CVelmItem& net = Input(u"net", u"80");
    const CVelmItem& rate = Input(u"rate", u"net / 4");
    Recalculate();
    ExpectValue(net, 80.0);
    ExpectValue(rate, 20.0);
    ExpectValue(tax, 16.0);
    ExpectValue(total, 96.0);
}

TEST_F(CalculationEngine, OutputsThatNeverGetAValueEndInErrorAndTheOthersDoNot) {
    const CVelmItem& circular1 = Output(u"a", u"b + 1");
    const CVelmItem& circular2 = Output(u"b", u"a + 1");
    const CVelmItem& unknown = Output(u"c", u"nowhere");
    const CVelmItem& empty = Output(u"d", u"");
    const CVelmItem& notTaken = Output(u"f", u"iif(1, 7, a)");
    const CVelmItem& fine = Output(u"", u"3 * g");
    const CVelmItem& failing = Input(u"h", u"1/0");
    Input(u"g", u"2");
    Recalculate();
    for (const CVelmItem* item : {&circular1, &circular2, &unknown, &empty, &failing}) {
        EXPECT_EQ(item->state, STATE_ERROR) << ToUtf8(item->identifier);
    }
    ExpectValue(notTaken, 7.0);
    ExpectValue(fine, 6.0);
}

TEST_F(CalculationEngine, AnEnteredValueWinsOverTheTextAndAnErrorStays) {
    CVelmItem& entered = Input(u"a", u"1");
    entered.value = 5.0;
    entered.state = STATE_VALID;
    CVelmItem& wrong = Input(u"b", u"1");
    wrong.state = STATE_ERROR;
    const CVelmItem& usesEntered = Output(u"c", u"A * 2");
    const CVelmItem& usesWrong = Output(u"d", u"b * 2");
    Recalculate();
    ExpectValue(usesEntered, 10.0);
    EXPECT_EQ(wrong.state, STATE_ERROR);
    EXPECT_EQ(usesWrong.state, STATE_ERROR);

    entered.value = 6.0;
    Recalculate();
    ExpectValue(usesEntered, 12.0);
}

TEST_F(CalculationEngine, FormulasOfOutputsMayHoldDatesAndCompoundGroups) {
    CVelmItem& length = Output(u"len", u"-[5 3] * n");
    length.format.SetAllowedFormats(FMT_DECIMAL | FMT_COMPOUND);
    length.format.compoundParts[1].factor = 12.0;
    const CVelmItem& days = Output(u"days", u"{1/2/2000} - {1/1/2000} + n");
    const CVelmItem& notAllowed = Output(u"no", u"[5 3]");
    Input(u"n", u"2");
    Recalculate();
    ExpectValue(length, -10.5);
    ExpectValue(days, 3.0);
    EXPECT_EQ(notAllowed.state, STATE_ERROR);
}

TEST_F(CalculationEngine, ALaterBindingOfTheSameNameHoldsForWhatFollows) {
    Input(u"a", u"1");
    const CVelmItem& before = Output(u"b", u"a");
    const CVelmItem& counts = Output(u"a", u"a + 1");
    const CVelmItem& after = Output(u"c", u"a");
    Recalculate();
    ExpectValue(before, 1.0);
    ExpectValue(counts, 2.0);
    ExpectValue(after, 2.0);
}

TEST_F(CalculationEngine, NoNameStaysBound) {
    DefineVariable(context_, u"mine", 1.0);
    Input(u"in", u"1");
    Output(u"mine", u"in");
    Output(u"lost", u"err");
    Recalculate();
    for (const char16_t* name : {u"in", u"mine", u"lost"}) {
        ExpectUnbound(name);
    }
}

TEST_F(CalculationEngine, TwoThousandOutputsInReverseOrderAreComputed) {
    constexpr int outputs = 2000;
    const auto name = [](int i) { return FromUtf8("v" + std::to_string(i)); };
    for (int i = 0; i < outputs; ++i) {
        Output(name(i), name(i + 1) + u" + 1");
    }
    Input(name(outputs), u"0");
    Recalculate();
    ExpectValue(*document_.GetItem(0), outputs);
}

}  // namespace
}  // namespace velm
