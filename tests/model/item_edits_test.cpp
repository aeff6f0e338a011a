#include "model/item_edits.h"

#include <gtest/gtest.h>

#include "model/calculation_document.h"
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
    EXPECT_EQ(RiskOfDeletion(*units, metre), DeletionRisk::BreaksBridge);
    DeleteItem(*units, metre);
    EXPECT_EQ(order(), "in- ft- ");
    EXPECT_EQ(Conversions(*units), "");
    Add(calculation, {u"Bill", u"bill", u"1"});
    EXPECT_EQ(RiskOfDeletion(calculation, *calculation.GetItem(0)), DeletionRisk::BreaksOutput);
}

}  // namespace
}  // namespace velm::test
