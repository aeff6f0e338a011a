#include "model/entry_check.h"

#include <gtest/gtest.h>

#include "support/sample_documents.h"
#include "support/test_services.h"

namespace velm::test {
namespace {

class EntryCheckTest : public testing::Test {
protected:
    EntryCheckTest() : calculation(services.Services()) {
        auto item = std::make_unique<CVelmFormulaItem>();
        item->identifier = u"bill";
        calculation.AddItem(std::move(item));
        added.format.SetAllowedFormats(FMT_DECIMAL | FMT_COMPOUND);
    }

    EntryFault CheckIdentifier(const CVelmDocument& document, const CVelmString& identifier) {
        return CheckItemEntry(document, added, {identifier, u"", false}, services.clock);
    }

    EntryFault CheckOutput(const CVelmString& formula) {
        return CheckItemEntry(calculation, added, {u"total", formula, true}, services.clock);
    }

    TestServices services;
    CVelmCalculationDoc calculation;
    CVelmFormulaItem added;
};

TEST_F(EntryCheckTest, IdentifiersOfCalculationsAreFreePlainNames) {
    for (const char16_t* name : {u"", u"total", u"T2", u"sum_of"}) {
        EXPECT_EQ(CheckIdentifier(calculation, name), EntryFault::None) << ToUtf8(name);
    }
    for (const char16_t* name : {u"two words", u"2nd", u"a+b", u"f(x)", u"1", u" "}) {
        EXPECT_EQ(CheckIdentifier(calculation, name), EntryFault::IdentifierIsNoName) << ToUtf8(name);
    }
    EXPECT_EQ(CheckIdentifier(calculation, u"PI"), EntryFault::IdentifierIsBuiltIn);
    EXPECT_EQ(CheckIdentifier(calculation, u"sin"), EntryFault::None) << "a function is told apart by its arguments";
    EXPECT_EQ(CheckIdentifier(calculation, u"Bill"), EntryFault::IdentifierIsTaken);
    const CVelmItem& bill = *calculation.GetItem(0);
    EXPECT_EQ(CheckItemEntry(calculation, bill, {u"bill", u"", false}, services.clock), EntryFault::None);
}

TEST_F(EntryCheckTest, ConversionFilesNameUnitsFreely) {
    const auto document = MakeConversionDoc(services.Services(), u"Data", {u"Mb"});
    EXPECT_EQ(CheckIdentifier(*document, u"sq. ft/2"), EntryFault::None);
    EXPECT_EQ(CheckIdentifier(*document, u"pi"), EntryFault::None);
    EXPECT_EQ(CheckIdentifier(*document, u"MB"), EntryFault::None) << "letter case tells units apart";
    EXPECT_EQ(CheckIdentifier(*document, u"Mb"), EntryFault::IdentifierIsTaken);
}

TEST_F(EntryCheckTest, OutputsNeedAFormula) {
    for (const char16_t* formula : {u"bill*2", u"Unknown + 1", u"[5 3]", u"{2000-01-01}+1"}) {
        EXPECT_EQ(CheckOutput(formula), EntryFault::None) << ToUtf8(formula);
    }
    for (const char16_t* formula : {u"", u" ", u"(1", u"1 2", u"1+", u"a $ b"}) {
        EXPECT_EQ(CheckOutput(formula), EntryFault::FormulaDoesNotParse) << ToUtf8(formula);
    }
}

TEST_F(EntryCheckTest, LinearConversionsTakeFormulas) {
    FormulaContext context(services.clock);
    const auto document = MakeConversionDoc(services.Services(), u"Data", {u"a", u"b"});
    CVelmConversion& conversion = Join(*document, 0, 1, 7.0, 8.0);
    EXPECT_EQ(TakeLinearEntry({u"1/0", u"0"}, context, conversion), EntryFault::FactorDoesNotEvaluate);
    EXPECT_EQ(TakeLinearEntry({u"2", u"x"}, context, conversion), EntryFault::OffsetDoesNotEvaluate);
    EXPECT_EQ(conversion.factor, 7.0) << "nothing is taken unless both are good";
    EXPECT_EQ(TakeLinearEntry({u"1/4", u"-32"}, context, conversion), EntryFault::None);
    EXPECT_EQ(conversion.factor, 0.25);
    EXPECT_EQ(conversion.offset, -32.0);
}

TEST_F(EntryCheckTest, FormulaPairsMayLackTheReverse) {
    EXPECT_EQ(CheckFormulaPair(u"x^2", u""), EntryFault::None);
    EXPECT_EQ(CheckFormulaPair(u"x^2", u"sqrt(x)"), EntryFault::None);
    EXPECT_EQ(CheckFormulaPair(u"", u"x"), EntryFault::ForwardFormulaDoesNotParse);
    EXPECT_EQ(CheckFormulaPair(u"x", u"sqrt("), EntryFault::ReverseFormulaDoesNotParse);
}

}  // namespace
}  // namespace velm::test
