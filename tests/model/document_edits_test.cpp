#include "model/document_edits.h"

#include <gtest/gtest.h>

#include <tuple>

#include "model/calculation_document.h"
#include "model/catalog.h"
#include "model/file_names.h"
#include "support/memory_files.h"
#include "support/sample_documents.h"

namespace velm::test {
namespace {

class ItemEdits : public testing::Test {
protected:
    EntryFault Add(CVelmDocument& document, const CVelmItemEntry& entry) {
        document.updatedText.clear();
        document.modified = false;
        const EntryFault fault = AddNewItem(document, entry, SystemClock());
        EXPECT_EQ(document.modified, fault == EntryFault::None);
        EXPECT_EQ(document.updatedText.empty(), fault != EntryFault::None);
        return fault;
    }

    CVelmCalculationDoc calculation{SystemServices()};
    std::unique_ptr<CVelmConversionDoc> units = MakeConversionDoc(SystemServices(), u"f", {u"m", u"ft", u"in"});
};

TEST_F(ItemEdits, AnEntryIsCheckedByTheRulesOfTheFilesKind) {
    const struct {
        CVelmItemEntry entry;
        EntryFault inCalculation;
        EntryFault inConversion;
    } cases[] = {
        {{u"", u"a", u"1"}, EntryFault::NameIsEmpty, EntryFault::NameIsEmpty},
        {{u"Bill", u"bill", u"1"}, EntryFault::None, EntryFault::None},
        {{u"Net", u"2 b", u"1"}, EntryFault::IdentifierIsNoName, EntryFault::None},
        {{u"Net", u"Pi", u"1"}, EntryFault::IdentifierIsBuiltIn, EntryFault::None},
        {{u"Net", u"BILL", u"1"}, EntryFault::IdentifierIsTaken, EntryFault::None},
        {{u"Net", u"bill", u"1"}, EntryFault::IdentifierIsTaken, EntryFault::IdentifierIsTaken},
        {{u"Tip", u"tip", u"bill*(", 1}, EntryFault::FormulaDoesNotParse, EntryFault::FormulaDoesNotParse},
        {{u"Tip", u"", u"{1/2/2000} + bill*(", 0}, EntryFault::None, EntryFault::None},
        {{u"Tip", u"", u"bill*0.15", 1}, EntryFault::None, EntryFault::None},
    };
    for (const auto& [entry, inCalculation, inConversion] : cases) {
        EXPECT_EQ(Add(calculation, entry), inCalculation) << ToUtf8(entry.name + u" " + entry.identifier);
        EXPECT_EQ(Add(*units, entry), inConversion) << ToUtf8(entry.name + u" " + entry.identifier);
    }
    EXPECT_EQ(Describe(&calculation), " (): Bill|bill|1, Tip||{1/2/2000} + bill*(, Tip||bill*0.15 -output");
    EXPECT_EQ(units->items.back()->GetType(), ITEM_VALUE) << "units have no outputs";
}

TEST_F(ItemEdits, AnInputStartsFromItsNewText) {
    Add(calculation, {u"Bill", u"bill", u"1"});
    CVelmItem& bill = *calculation.GetItem(0);
    FormulaContext context(SystemClock());
    bill.SetValue(9.0);
    CVelmItemEntry entry = EntryOf(bill);
    entry.name = u"The bill";
    EXPECT_EQ(EditItem(calculation, bill, entry, SystemClock()), EntryFault::None) << "its identifier is its own";
    calculation.Recalculate(context);
    EXPECT_EQ(bill.value, 9.0);
    entry.valueText = u"2";
    EditItem(calculation, bill, entry, SystemClock());
    calculation.Recalculate(context);
    EXPECT_EQ(bill.value, 2.0);

    CVelmItem& metre = *units->GetItem(0);
    metre.SetValue(9.0);
    EXPECT_EQ(EditItem(*units, metre, {u"Metre", u"m", u"5"}, SystemClock()), EntryFault::None);
    EXPECT_EQ(metre.state, STATE_VALID) << "a unit's text is what it is restored to";
}

TEST_F(ItemEdits, ALongTextIsCutUnlessItIsTheOneThatTheFileHolds) {
    const CVelmString formula = CVelmString(126, u'1') + u"+20";
    Add(calculation, {u"Sum", u"sum", u"1", 1});
    CVelmItem& sum = *calculation.GetItem(0);
    sum.valueText = formula;
    CVelmItemEntry entry = EntryOf(sum);
    entry.name = CVelmString(130, u'n');
    EXPECT_EQ(EditItem(calculation, sum, entry, SystemClock()), EntryFault::None);
    EXPECT_EQ(sum.name.size(), 127U);
    EXPECT_EQ(sum.valueText, formula);
    entry.valueText = u"9" + formula;
    EXPECT_EQ(EditItem(calculation, sum, entry, SystemClock()), EntryFault::None);
    EXPECT_EQ(sum.valueText, u"9" + formula.substr(0, 126));
    EXPECT_EQ(EditItem(calculation, sum, {u"Sum", u"", formula, 1}, SystemClock()), EntryFault::FormulaDoesNotParse)
        << "cut behind its plus sign";
}

TEST_F(ItemEdits, PartsOfACompoundFormatAreReadAsTheyAreTyped) {
    CVelmValueFormat format;
    std::size_t part = 9;
    EXPECT_EQ(EntryOf(format).parts[1].first, u"0") << "parts that are not in use";
    CVelmFormatEntry entry{FMT_COMPOUND, {{{u"1", u"yd"}, {u"3", u"ft"}, {u"12", u"inches each"}, {u"", u"lost"}}}};
    EXPECT_EQ(EditFormats(format, entry, part), EntryFault::None);
    EXPECT_EQ(format.displayFormat, FMT_COMPOUND);
    EXPECT_EQ(format.compoundParts[2].label, u"inches each") << "the third has no limit";
    EXPECT_EQ(format.compoundParts[3].label, u"") << "a factor of 0 ends the parts";

    format.compoundParts[1].factor = 1.0 / 3.0;
    entry = EntryOf(format);
    entry.parts[2].first = u"0ch";
    EXPECT_EQ(EditFormats(format, entry, part), EntryFault::None);
    EXPECT_EQ(format.compoundParts[1].factor, 1.0 / 3.0);
    EXPECT_EQ(format.compoundParts[2].factor, 12.0);
    for (const char16_t* factor : {u"-1", u"2e20", u"many"}) {
        entry.parts[2].first = factor;
        EXPECT_EQ(EditFormats(format, entry, part), EntryFault::FactorIsOutOfRange) << ToUtf8(factor);
        EXPECT_EQ(part, 2U);
    }
    entry = EntryOf(format);
    entry.parts[1].second = u"nine char";
    entry.allowed = FMT_DECIMAL;
    EXPECT_EQ(EditFormats(format, entry, part), EntryFault::LabelIsTooLong);
    EXPECT_EQ(part, 1U);
    EXPECT_EQ(format.allowedFormats, FMT_COMPOUND);
}

TEST_F(ItemEdits, ItemsAreMovedHiddenAndDeleted) {
    const auto order = [this] {
        CVelmString names;
        for (const auto& item : units->items) {
            names += item->identifier + (item->shown != 0 ? u" " : u"- ");
        }
        return ToUtf8(names);
    };
    const std::tuple<std::size_t, std::size_t, const char*> moves[] = {
        {0, 2, "ft in m "}, {2, 0, "m ft in "}, {1, 1, "m ft in "}, {2, 1, "m in ft "}};
    for (const auto& [from, to, expected] : moves) {
        MoveItem(*units, from, to);
        EXPECT_EQ(order(), expected);
    }
    EXPECT_TRUE(ShowItems(*units, {true, false, true}));
    EXPECT_EQ(order(), "m in- ft ");
    units->modified = false;
    EXPECT_FALSE(ShowItems(*units, {true, false, true}));
    EXPECT_FALSE(units->modified);
    HideItem(*units, *units->GetItem(2));
    EXPECT_EQ(order(), "m in- ft- ");
    EXPECT_TRUE(units->modified);

    CVelmItem& metre = *units->GetItem(0);
    Join(*units, 0, 1);
    EXPECT_EQ(DeletionQuestion(*units, metre), u"Do you want to delete \"m unit\"?");
    Join(*units, 2, 0);
    EXPECT_EQ(DeletionQuestion(*units, metre).substr(0, 19), u"\"m unit\" has multip");
    DeleteItem(*units, metre);
    EXPECT_EQ(order(), "in- ft- ");
    EXPECT_EQ(Conversions(*units), "");
    Add(calculation, {u"Bill", u"bill", u"1"});
    EXPECT_EQ(DeletionQuestion(calculation, *calculation.GetItem(0)).substr(0, 19), u"\"Bill\" may be used ");
}

class ConversionEdits : public testing::Test {
protected:
    CVelmItem* Unit(std::size_t position) { return document->GetItem(position); }

    EntryFault AddLinear(CVelmItem* unit1, CVelmItem* unit2, const CVelmString& factor, const CVelmString& offset) {
        return AddNewConversion(*document, unit1, unit2, {false, factor, offset, u"", u""}, context);
    }

    EntryFault AddFormulas(CVelmItem* unit2, const CVelmString& forward, const CVelmString& reverse) {
        return AddNewConversion(*document, Unit(0), unit2, {true, u"", u"", forward, reverse}, context);
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
    EXPECT_EQ(AddFormulas(Unit(3), u"x+", u"x"), EntryFault::ForwardFormulaDoesNotParse);
    EXPECT_EQ(AddFormulas(Unit(3), u"x", u"x+"), EntryFault::ReverseFormulaDoesNotParse);
    EXPECT_FALSE(document->modified);
    EXPECT_EQ(AddLinear(Unit(0), Unit(1), u"1/4", u"2-1"), EntryFault::None);
    EXPECT_EQ(AddLinear(Unit(1), Unit(0), u"1", u"0"), EntryFault::ConversionExists) << "in the other direction";
    EXPECT_EQ(AddFormulas(Unit(3), u"x*9/5+32", u""), EntryFault::None);
    EXPECT_EQ(AddFormulas(Unit(2), u"", u"x"), EntryFault::None);
    EXPECT_TRUE(document->modified);
    EXPECT_EQ(Conversions(*document), "m*0.25+1=ft m{x*9/5+32|}F m{|x}in ");
}

TEST_F(ConversionEdits, ANumberKeepsTheDigitsThatItsTextDoesNotShow) {
    CVelmConversion& linear = Join(*document, 0, 1, 1.0 / 3.0);
    CVelmConversion& formulas = JoinByFormulas(*document, 0, 3, u"x+1", u"x-1");
    CVelmConversionEntry entry = EntryOf(linear);
    entry.offset = u"1/2";
    EditConversion(*document, linear, entry, context);
    EXPECT_EQ(linear.factor, 1.0 / 3.0);
    entry.factor = u"2*6";
    entry.offset = u"none";
    EditConversion(*document, linear, entry, context);
    EditConversion(*document, formulas, {true, u"7", u"7", u"as it stands (", u""}, context);
    EXPECT_EQ(Conversions(*document), "m*12+0.5=ft m{as it stands (|}F ");
    EXPECT_EQ(formulas.factor, 1.0);
    DeleteConversion(*document, linear);
    EXPECT_EQ(Conversions(*document), "m{as it stands (|}F ");
}

TEST(FileEdits, ANewFileGetsANameThatNoOtherHasAndKeepsIt) {
    MemoryFiles files;
    TestServices services{files};
    CVelmCatalog catalog(services.Services());
    catalog.SetFolder(u"data");
    catalog.AddDocument(MakeConversionDoc(services.Services(), u"Length"));
    files.AddText(catalog.Folder() + u"length_NEW.cnv", "no data file, but there");

    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, u"Length"), u"Length_new_new");
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CALCULATION, u"Length"), u"Length");
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, CVelmString(70, u'x')).size(), 63U);
    EXPECT_EQ(MakeNewFileName(catalog, KIND_CONVERSION, u"con"), u"con");

    CVelmConversionDoc document(services.Services());
    const std::pair<CVelmFileEntry, EntryFault> cases[] = {
        {{u"", u"c", u"Mine"}, EntryFault::TitleIsEmpty},
        {{u"T", u"c", u""}, EntryFault::FileNameIsNotAllowed},
        {{u"T", u"c", u"con"}, EntryFault::FileNameIsNotAllowed},
        {{u"T", u"c", u"LENGTH"}, EntryFault::FileNameIsTaken},
        {{u"T", u"c", u"Mine"}, EntryFault::None},
        {{u"Title", u"", u"con"}, EntryFault::None},
    };
    for (const auto& [entry, fault] : cases) {
        document.modified = false;
        EXPECT_EQ(EditFile(document, entry, catalog), fault) << ToUtf8(entry.fileName);
        EXPECT_EQ(document.modified, fault == EntryFault::None);
    }
    EXPECT_EQ(document.title + u"|" + document.category + u"|" + document.fileName, u"Title||Mine");
    document.category = CVelmString(130, u'c');
    EditFile(document, {CVelmString(130, u't'), document.category, u""}, catalog);
    EXPECT_EQ(document.title.size() + document.category.size(), 127U + 130U);
}

}  // namespace
}  // namespace velm::test
