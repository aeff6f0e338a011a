#include <gtest/gtest.h>

#include "model/calculation_document.h"
#include "support/fixed_clock.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

class CalculationEngine : public testing::Test {
protected:
    CVelmItem& Add(CVelmStringView identifier, CVelmStringView text, bool output) {
        auto item = std::make_unique<CVelmFormulaItem>();
        item->identifier = identifier;
        item->valueText = text;
        item->output = output ? 1 : 0;
        return *document.AddItem(std::move(item));
    }

    /// Items as they read: "total = net + tax; net: 80" is an output and an input.
    void Add(CVelmStringView items) {
        while (!items.empty()) {
            const CVelmStringView item = items.substr(0, items.find(u"; "));
            items.remove_prefix(std::min(items.size(), item.size() + 2));
            const std::size_t mark = item.find_first_of(u"=:");
            const CVelmStringView identifier = item.substr(0, item[mark] == u'=' ? mark - 1 : mark);
            Add(identifier, item.substr(mark + 1), item[mark] == u'=');
        }
    }

    std::string Computed() {
        document.Recalculate(context);
        return Values(document, 15);
    }

    CVelmCalculationDoc document{SystemServices()};
    FormulaContext context{SystemClock()};
};

TEST_F(CalculationEngine, ComputesInputsAndOutputsInWhateverOrderTheyCome) {
    const struct {
        CVelmStringView items;
        const char* values;
    } cases[] = {
        {u"total = net + tax; tax = net * rate%; net: 80; rate: net / 4", "96 16 80 20"},
        // Outputs that never get a value end in an error, the others do not.
        {u"a = b + 1; b = a + 1; c = nowhere; d =; f = iif(1, 7, a); h: 1/0; g: 2; i = 3 * g; j = h + 1",
         "error error error error 7 error 2 6 error"},
        // A later binding of the same name holds for what follows.
        {u"a: 1; b = a; a = a + 1; c = a", "1 1 2 2"},
        {u"mine = in; in: 1; lost = err", "1 1 error"},
        // A failed formula is retried whenever a name that it reads is bound.
        {u"c = 1 / a; d = x * 2; f = iif(1, x, 0); a: 0; a = 2; x = 3", "0.5 6 3 0 2 3"},
        // One that has a value keeps it.
        {u"c = a + 1; a = 1; a = c + 1", "2 1 3"},
    };
    for (const auto& [items, values] : cases) {
        document.RemoveItems(0, document.ItemCount());
        Add(items);
        DefineVariable(context, u"mine", 9.0);
        EXPECT_EQ(Computed(), values) << ToUtf8(items);
        for (const auto& item : document.items) {
            double value = 0.0;
            EXPECT_FALSE(EvaluateFormula(context, item->identifier, value))
                << ToUtf8(item->identifier) << " is still bound to " << value;
        }
    }
}

TEST_F(CalculationEngine, AnEnteredValueWinsOverTheTextAndAnErrorStays) {
    Add(u"a: 1; b: 1; c = A * 2; d = b * 2");
    document.items[0]->value = 5.0;
    document.items[0]->state = STATE_VALID;
    document.items[1]->state = STATE_ERROR;
    EXPECT_EQ(Computed(), "5 error 10 error");
    document.items[0]->value = 6.0;
    EXPECT_EQ(Computed(), "6 error 12 error");
}

TEST_F(CalculationEngine, FormulasOfOutputsMayHoldDatesAndCompoundGroups) {
    CVelmItem& length = Add(u"", u"-[5 3] * n", true);
    length.format.SetAllowedFormats(FMT_DECIMAL | FMT_COMPOUND);
    length.format.compoundParts[1].factor = 12.0;
    Add(u"days = {1/2/2000} - {1/1/2000} + n; notallowed = [5 3]; n: 2");
    EXPECT_EQ(Computed(), "-10.5 3 error 2");
}

TEST_F(CalculationEngine, ARandomNumberIsDrawnInEverySweep) {
    const FixedClock clock;
    FormulaContext swept(clock);
    Add(u"lost = nowhere + rand; b = c; c = 1");
    document.Recalculate(swept);
    FormulaContext same(clock);
    for (int sweep = 0; sweep < 3; ++sweep) {
        same.Random().Next();
    }
    EXPECT_EQ(swept.Random().Next(), same.Random().Next());
}

TEST_F(CalculationEngine, TwoThousandOutputsInReverseOrderAreComputed) {
    constexpr int OUTPUTS = 2000;
    const auto name = [](int i) { return FromUtf8("v" + std::to_string(i)); };
    for (int i = 0; i < OUTPUTS; ++i) {
        Add(name(i), name(i + 1) + u" + 1", true);
    }
    Add(name(OUTPUTS), u"0", false);
    EXPECT_EQ(Computed().substr(0, 9), "2000 1999");
}

}  // namespace
}  // namespace velm::test
