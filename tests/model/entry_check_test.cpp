#include "model/entry_check.h"

#include <gtest/gtest.h>

#include "support/sample_documents.h"

namespace velm::test {
namespace {

TEST(EntryCheck, IdentifiersAndFormulasOfItems) {
    TestServices services;
    const auto conversion = MakeConversionDoc(services.Services(), u"Data", {u"Mb"});
    CVelmCalculationDoc calculation(services.Services());
    calculation.AddItem(CreateItem(ITEM_FORMULA))->identifier = u"bill";
    CVelmFormulaItem added;
    added.format.SetAllowedFormats(FMT_DECIMAL | FMT_COMPOUND);
    const struct {
        const CVelmDocument& document;
        EntryFault fault;
        bool isOutput;
        std::vector<CVelmString> entries;  ///< identifiers, or formulas of outputs
    } cases[] = {
        {calculation, EntryFault::None, false, {u"", u"total", u"T2", u"sum_of", u"sin"}},
        {calculation, EntryFault::IdentifierIsNoName, false, {u"two words", u"2nd", u"a+b", u"f(x)", u"1", u" "}},
        {calculation, EntryFault::IdentifierIsBuiltIn, false, {u"PI"}},
        {calculation, EntryFault::IdentifierIsTaken, false, {u"Bill"}},
        {*conversion, EntryFault::None, false, {u"sq. ft/2", u"pi", u"MB"}},
        {*conversion, EntryFault::IdentifierIsTaken, false, {u"Mb"}},
        {calculation, EntryFault::None, true, {u"bill*2", u"Unknown + 1", u"[5 3]", u"{2000-01-01}+1"}},
        {calculation, EntryFault::FormulaDoesNotParse, true, {u"", u" ", u"(1", u"1 2", u"1+", u"a $ b"}},
    };
    for (const auto& [document, fault, isOutput, entries] : cases) {
        for (const CVelmString& entry : entries) {
            const CVelmItemEntry typed{isOutput ? u"total" : entry, isOutput ? entry : u"", isOutput};
            EXPECT_EQ(CheckItemEntry(document, added, typed, services.clock), fault) << ToUtf8(entry);
        }
    }
    const CVelmItem& bill = *calculation.GetItem(0);
    EXPECT_EQ(CheckItemEntry(calculation, bill, {u"bill", u"", false}, services.clock), EntryFault::None);
}

TEST(EntryCheck, FactorsAndFormulasOfConversions) {
    TestServices services;
    FormulaContext context(services.clock);
    const auto document = MakeConversionDoc(services.Services(), u"Data", {u"a", u"b"});
    CVelmConversion& conversion = Join(*document, 0, 1, 7.0, 8.0);
    EXPECT_EQ(TakeLinearEntry({u"1/0", u"0"}, context, conversion), EntryFault::FactorDoesNotEvaluate);
    EXPECT_EQ(TakeLinearEntry({u"2", u"x"}, context, conversion), EntryFault::OffsetDoesNotEvaluate);
    EXPECT_EQ(conversion.factor, 7.0) << "nothing is taken unless both are good";
    EXPECT_EQ(TakeLinearEntry({u"1/4", u"-32"}, context, conversion), EntryFault::None);
    EXPECT_EQ(conversion.factor, 0.25);
    EXPECT_EQ(conversion.offset, -32.0);

    EXPECT_EQ(CheckFormulaPair(u"x^2", u""), EntryFault::None);
    EXPECT_EQ(CheckFormulaPair(u"x^2", u"sqrt(x)"), EntryFault::None);
    EXPECT_EQ(CheckFormulaPair(u"", u"x"), EntryFault::ForwardFormulaDoesNotParse);
    EXPECT_EQ(CheckFormulaPair(u"x", u"sqrt("), EntryFault::ReverseFormulaDoesNotParse);
}

}  // namespace
}  // namespace velm::test
