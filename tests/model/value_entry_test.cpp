#include "model/value_entry.h"

#include <gtest/gtest.h>

#include <array>

#include "support/sample_documents.h"

namespace velm::test {
namespace {

TEST(ValueEntry, ATypedValueIsTheCurrentUnitsAndReachesTheOthersAndTheHiddenOnesAskedFor) {
    const auto document = MakeConversionDoc(SystemServices(), u"f", {u"m", u"cm", u"mm", u"um"});
    Join(*document, 0, 1, 100.0);
    Join(*document, 0, 2, 1000.0);
    Join(*document, 0, 3, 1e6);
    document->items[2]->shown = document->items[3]->shown = 0;
    FormulaContext context(SystemClock());
    CVelmItem* const m = document->GetItem(0);
    const std::array<const CVelmItem*, 1> asked = {document->GetItem(2)};
    std::vector<CVelmStepTaken> steps;
    EXPECT_EQ(EnterText(*document, *m, u"1/2", asked, steps, context), Entered::ByNewSteps);
    EXPECT_EQ(Values(*document, 9), "0.5 50 500 none");
    EXPECT_EQ(document->currentItem, m);
    EXPECT_EQ(document->items[2]->shown, 0);
    EXPECT_EQ(EnterText(*document, *m, u"2", asked, steps, context), Entered::BySameSteps);
    EXPECT_EQ(Values(*document, 9), "2 200 2000 none");

    CVelmItem& cm = *document->GetItem(1);
    for (const char16_t* text : {u"far", u"", u"{someday}"}) {
        EXPECT_EQ(EnterText(*document, cm, text, {}, steps, context), Entered::Nothing) << ToUtf8(text);
    }
    EXPECT_EQ(Values(*document, 9), "2 200 2000 none") << "and nothing else has changed";
    EXPECT_EQ(document->currentItem, m);
    steps.clear();
    cm.format.SetAllowedFormats(FMT_HEX);
    EXPECT_EQ(EnterText(*document, cm, u"c8", {}, steps, context), Entered::ByNewSteps);
    EXPECT_EQ(Values(*document, 9), "2 200 none none") << "typed in the unit's format, and nothing else was asked for";
}

TEST(ValueEntry, TypedInputsMayUseTheOnesBeforeThem) {
    CVelmCalculationDoc document(SystemServices());
    for (const char16_t* name : {u"a", u"b", u"sum"}) {
        CVelmItem& item = *document.AddItem(CreateItem(ITEM_FORMULA));
        item.identifier = name;
        item.valueText = u"1";
    }
    CVelmItem* const a = document.GetItem(0);
    CVelmItem* const b = document.GetItem(1);
    static_cast<CVelmFormulaItem&>(*document.GetItem(2)).output = 1;
    document.items[2]->valueText = u"a+b";
    FormulaContext context(SystemClock());
    const CVelmTypedInput good[] = {{b, u"a*2"}, {a, u"5"}};
    EXPECT_EQ(EnterTexts(document, good, context), nullptr);
    EXPECT_EQ(Values(document, 9), "5 10 15");
    const CVelmTypedInput bad[] = {{a, u"7"}, {b, u"{foo}"}};
    EXPECT_EQ(EnterTexts(document, bad, context), &bad[1]);
    const CVelmTypedInput worse[] = {{a, u"b*2"}};
    EXPECT_EQ(EnterTexts(document, worse, context), &worse[0]) << "the one behind it has no value yet";
}

}  // namespace
}  // namespace velm::test
