#include <gtest/gtest.h>

#include "resource.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

/// A running program with a file of three units of which the first two are converted.
class ConversionsDialogTest : public ProgramTest {
protected:
    ConversionsDialogTest() {
        StartLength();
        auto item = CreateItem(ITEM_VALUE);
        item->name = u"a unit with quite a long name";
        Document().AddItem(std::move(item));
    }

    CVelmConversion& Conversion(std::size_t index) { return *Conversions().conversions.at(index); }

    /// Which of the two kinds of fields are visible: "factor 3.28084, offset 0" or "forward x+1, reverse ".
    static std::string Fields(const DialogDriver& dialog) {
        std::string fields;
        for (const auto& [box, label, name] : {std::tuple{IDC_FACTOR, IDC_UNIT1_LABEL, "factor "},
                                               {IDC_OFFSET, IDC_OFFSET_LABEL, "offset "},
                                               {IDC_FORWARD, IDC_FORWARD_LABEL, "forward "},
                                               {IDC_REVERSE, IDC_REVERSE_LABEL, "reverse "}}) {
            EXPECT_EQ(dialog.IsVisible(box), dialog.IsVisible(label)) << name;
            fields += dialog.IsVisible(box) ? (fields.empty() ? "" : ", ") + (name + dialog.Text(box)) : "";
        }
        return fields;
    }
};

TEST_F(ConversionsDialogTest, ShowsAndStoresTheDetailsOfTheSelectedOne) {
    auto formula = std::make_unique<CVelmConversion>(Conversions());
    formula->formulaFlag = 1;
    formula->unit1 = Document().GetItem(2);
    formula->unit2 = Document().GetItem(2);
    formula->forwardFormula = u"x+1";
    Conversions().AddConversion(std::move(formula));
    const double third = 1.0 / 3.0;
    Conversion(0).offset = third;
    const DialogDriver dialog(program, ID_CONVERSIONS);
    EXPECT_EQ(dialog.Caption(), "Unit Conversions");
    EXPECT_EQ(dialog.MenuBar(), (Texts{" Add ", " Delete ", " Done "}));
    EXPECT_EQ(dialog.Entries(IDC_CONVERSION_LIST), (Texts{"m <=> ft", "a unit with quit <=> a unit with quit"}));
    EXPECT_EQ(Fields(dialog), "");
    dialog.Choose(IDC_CONVERSION_LIST, 1);
    EXPECT_EQ(Fields(dialog), "forward x+1, reverse ");
    dialog.Choose(IDC_CONVERSION_LIST, 0);
    EXPECT_EQ(Fields(dialog), "factor 3.28084, offset 0.33333333333");
    const auto enter = [&](int box, const std::string& text, int next) {
        dialog.Focus(box);
        dialog.Fill({{box, text}});
        dialog.Focus(next);
    };
    enter(IDC_FACTOR, "1/0.5", IDC_OFFSET);
    EXPECT_EQ(Conversion(0).factor, 2.0);
    dialog.Focus(IDC_FACTOR);
    EXPECT_EQ(Conversion(0).offset, third) << "a number that was only looked at keeps all its digits";
    enter(IDC_FACTOR, "1/0", IDC_OFFSET);
    EXPECT_EQ(Conversion(0).factor, 2.0) << "what does not evaluate leaves the old number";
    dialog.Fill({{IDC_OFFSET, "32"}});
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(Conversion(0).offset, 32.0) << "what still has the focus is stored too";
    EXPECT_TRUE(program.Close());
    const auto saved = LoadFile(program, u"Length.cnv");
    EXPECT_EQ(static_cast<CVelmConversionDoc&>(*saved).conversions[0]->offset, 32.0);
}

TEST_F(ConversionsDialogTest, DeletesAfterAsking) {
    const DialogDriver dialog(program, ID_CONVERSIONS);
    dialog.Command(ID_DELETE_CONVERSION);
    program.Settle();
    EXPECT_EQ(program.WaitForDialog(), dialog.Window()) << "without a selected row nothing is asked";
    dialog.Choose(IDC_CONVERSION_LIST, 0);
    const std::string question = "? Delete: Do you want to delete the conversion?";
    EXPECT_EQ(dialog.Answer(ID_DELETE_CONVERSION, IDNO), question);
    EXPECT_EQ(Conversions().conversions.size(), 1U);
    dialog.Focus(IDC_CONVERSION_LIST);
    program.Key(VK_DELETE);
    EXPECT_EQ(program.Answer(IDYES), question);
    EXPECT_EQ(Conversions().conversions.size(), 0U);
    EXPECT_EQ(dialog.Entries(IDC_CONVERSION_LIST), Texts{});
    EXPECT_EQ(Fields(dialog), "");
    EXPECT_TRUE(dialog.GetsFocus(IDC_CONVERSION_LIST));
}

TEST_F(ConversionsDialogTest, AddsALinearOne) {
    const DialogDriver dialog(program, ID_CONVERSIONS);
    const DialogDriver add = dialog.Over(ID_ADD_STANDARD);
    EXPECT_EQ(add.Caption(), "Add Conversion");
    EXPECT_EQ(add.Entries(IDC_UNIT1), (Texts{"meters", "feet", "a unit with quite a long name"}));
    EXPECT_EQ(Fields(add), "factor 1, offset 0");
    const std::string refused = "x Add Conversion: ";
    EXPECT_EQ(add.Answer(IDOK), refused + "Please select the first unit");
    add.Choose(IDC_UNIT1, 1);
    EXPECT_EQ(add.Answer(IDOK), refused + "Please select the second unit");
    for (const int unit : {1, 0}) {  // the same unit twice, then the other way round
        add.Choose(IDC_UNIT2, unit);
        EXPECT_EQ(add.Answer(IDOK), refused + "The conversion between 2 select units already exists");
        EXPECT_TRUE(add.GetsFocus(IDC_UNIT2));
    }
    add.Choose(IDC_UNIT2, 2);
    add.Fill({{IDC_FACTOR, "1/"}, {IDC_OFFSET, "y"}});
    EXPECT_EQ(add.Answer(IDOK), refused + "\"1/\" is no factor: it cannot be calculated.");
    add.Fill({{IDC_FACTOR, "1/0.25"}});
    EXPECT_EQ(add.Answer(IDOK), refused + "\"y\" is no offset: it cannot be calculated.");
    add.Fill({{IDC_OFFSET, "-1"}});
    EXPECT_TRUE(add.Ok());
    EXPECT_EQ(Fields(dialog), "factor 4, offset -1") << "the new one is selected and shown";
    EXPECT_EQ(Conversion(1).factor, 4.0);
    EXPECT_EQ(Conversion(1).offset, -1.0);
    EXPECT_TRUE(dialog.Ok());
}

TEST_F(ConversionsDialogTest, AddsAPairOfFormulas) {
    const DialogDriver dialog(program, ID_CONVERSIONS);
    dialog.Choose(IDC_CONVERSION_LIST, 0);
    dialog.Focus(IDC_FACTOR);
    const DialogDriver add = dialog.Over(ID_ADD_ADVANCED);
    EXPECT_EQ(Fields(add), "forward , reverse ");
    add.Choose(IDC_UNIT1, 0);
    add.Choose(IDC_UNIT2, 2);
    for (const std::string formula : {"", "sqrt(x"}) {
        add.Fill({{IDC_FORWARD, formula}});
        EXPECT_EQ(add.Answer(IDOK), "x Add Conversion: \"" + formula + "\" is not a formula.");
        EXPECT_TRUE(add.GetsFocus(IDC_FORWARD));
    }
    const std::string formula = "x" + std::string(33000, ' ') + "+1";
    add.Fill({{IDC_FORWARD, formula}});
    EXPECT_TRUE(add.Ok()) << "without a reverse formula it works one way";
    EXPECT_EQ(Fields(dialog), "forward " + formula + ", reverse ");
    EXPECT_TRUE(dialog.GetsFocus(IDC_CONVERSION_LIST)) << "the box that had the focus is hidden now";
    dialog.Focus(IDC_FORWARD);
    dialog.Focus(IDC_REVERSE);
    Do("type x^2");
    EXPECT_TRUE(dialog.EndsWith(VK_ESCAPE));
    EXPECT_EQ(Conversion(1).reverseFormula, u"x^2") << "what has the focus is kept however the dialog is left";
    EXPECT_EQ(Conversion(1).forwardFormula.size(), formula.size());
}

}  // namespace
}  // namespace velm::test
