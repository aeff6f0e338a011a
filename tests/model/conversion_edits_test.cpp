#include "model/conversion_edits.h"

#include <gtest/gtest.h>

#include "support/sample_documents.h"

namespace velm::test {
namespace {

class ConversionEdits : public testing::Test {
protected:
    CVelmItem* Unit(std::size_t position) { return document->GetItem(position); }

    EntryFault AddLinear(CVelmItem* unit1, CVelmItem* unit2, const CVelmString& factor, const CVelmString& offset) {
        return AddNewConversion(*document, {unit1, unit2, false, factor, offset, u"", u""}, context);
    }

    EntryFault AddFormulas(const CVelmString& forward, const CVelmString& reverse) {
        return AddNewConversion(*document, {Unit(0), Unit(3), true, u"", u"", forward, reverse}, context);
    }

    std::unique_ptr<CVelmConversionDoc> document =
        MakeConversionDoc(SystemServices(), u"f", {u"m", u"ft", u"in", u"F"});
    FormulaContext context{SystemClock()};
};

TEST_F(ConversionEdits, AConversionThatCouldNeverWorkIsRefused) {
    document->modified = false;
    EXPECT_EQ(AddLinear(nullptr, nullptr, u"1", u"0"), EntryFault::FirstUnitIsMissing);
    EXPECT_EQ(AddLinear(Unit(0), nullptr, u"1", u"0"), EntryFault::SecondUnitIsMissing);
    EXPECT_EQ(AddLinear(Unit(0), Unit(0), u"1", u"0"), EntryFault::ConversionExists);
    EXPECT_EQ(AddLinear(Unit(0), Unit(1), u"3*", u"0"), EntryFault::FactorDoesNotEvaluate);
    EXPECT_EQ(AddLinear(Unit(0), Unit(1), u"3", u""), EntryFault::OffsetDoesNotEvaluate);
    EXPECT_EQ(AddFormulas(u"", u"x"), EntryFault::ForwardFormulaDoesNotParse);
    EXPECT_EQ(AddFormulas(u"x", u"x+"), EntryFault::ReverseFormulaDoesNotParse);
    EXPECT_FALSE(document->modified);
    EXPECT_EQ(AddLinear(Unit(0), Unit(1), u"1/4", u"2-1"), EntryFault::None);
    EXPECT_EQ(AddLinear(Unit(1), Unit(0), u"1", u"0"), EntryFault::ConversionExists) << "in the other direction";
    EXPECT_EQ(AddFormulas(u"x*9/5+32", u""), EntryFault::None);
    EXPECT_TRUE(document->modified);
    EXPECT_EQ(Conversions(*document), "m*0.25+1=ft m{x*9/5+32|}F ");
}

TEST_F(ConversionEdits, AFieldKeepsTheDigitsThatItsTextDoesNotShow) {
    CVelmConversion& linear = Join(*document, 0, 1, 1.0 / 3.0);
    CVelmConversion& formulas = JoinByFormulas(*document, 0, 3, u"x+1", u"x-1");
    document->modified = false;
    EditField(*document, linear, ConversionField::Factor, FieldText(linear, ConversionField::Factor), context);
    EditField(*document, linear, ConversionField::Factor, u"one", context);
    EditField(*document, linear, ConversionField::Forward, u"x", context);
    EditField(*document, formulas, ConversionField::Factor, u"7", context);
    EXPECT_EQ(linear.factor, 1.0 / 3.0);
    EXPECT_EQ(formulas.factor, 1.0);
    EXPECT_FALSE(document->modified);
    EditField(*document, linear, ConversionField::Factor, u"2*6", context);
    EditField(*document, linear, ConversionField::Offset, u"1/2", context);
    EditField(*document, formulas, ConversionField::Reverse, u"as it stands (", context);
    EXPECT_EQ(Conversions(*document), "m*12+0.5=ft m{x+1|as it stands (}F ");
    EXPECT_TRUE(document->modified);
    DeleteConversion(*document, linear);
    EXPECT_EQ(Conversions(*document), "m{x+1|as it stands (}F ");
}

}  // namespace
}  // namespace velm::test
