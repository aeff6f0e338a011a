#include <gtest/gtest.h>

#include "resource.h"
#include "support/dialog_driver.h"
#include "support/files.h"

namespace velm::test {
namespace {

using Texts = std::vector<std::string>;

/// A running program with a file of three units of which the first two are converted.
class ConversionsDialogTest : public testing::Test {
protected:
    void Start() {
        SaveConversionFile(program, u"Length", {{u"meters", 1.0, u"m"}, {u"feet of today", 3.28084}});
        ASSERT_TRUE(program.Start());
        program.Ask([](CVelmFrame& frame) {
            auto item = CreateItem(ITEM_VALUE);
            item->name = u"a unit with quite a long name";
            frame.Document()->AddItem(std::move(item));
        });
    }

    CVelmConversion& Conversion(std::size_t index) {
        return *program.Ask([index](CVelmFrame& frame) {
            return static_cast<CVelmConversionDoc&>(*frame.Document()).conversions.at(index).get();
        });
    }

    std::size_t Count() {
        return program.Ask(
            [](CVelmFrame& frame) { return static_cast<CVelmConversionDoc&>(*frame.Document()).conversions.size(); });
    }

    /// Opens the dialog that adds a conversion.
    DialogDriver Add(const DialogDriver& dialog, WORD command) {
        dialog.Command(command);
        HWND window = nullptr;
        EXPECT_TRUE(program.Eventually([&](CVelmFrame&) {
            window = program.WaitForDialog();
            return window != dialog.Window();
        }));
        program.Settle();
        return {program, window};
    }

    RunningProgram program;
};

TEST_F(ConversionsDialogTest, ShowsTheDetailsOfTheSelectedOne) {
    Start();
    program.Ask([](CVelmFrame& frame) {
        auto& document = static_cast<CVelmConversionDoc&>(*frame.Document());
        auto conversion = std::make_unique<CVelmConversion>(document);
        conversion->formulaFlag = 1;
        conversion->unit1 = document.GetItem(2);
        conversion->unit2 = document.GetItem(2);
        conversion->forwardFormula = u"x+1";
        document.AddConversion(std::move(conversion));
    });
    const DialogDriver dialog(program, ID_CONVERSIONS);
    EXPECT_EQ(dialog.Caption(), "Unit Conversions");
    EXPECT_EQ(dialog.MenuBar(), (Texts{" Add ", " Delete ", " Done "}));
    EXPECT_EQ(dialog.Entries(IDC_CONVERSION_LIST),
              (Texts{"m <=> feet of today", "a unit with quit <=> a unit with quit"}));
    for (const int control : {IDC_FACTOR, IDC_OFFSET, IDC_FORWARD, IDC_REVERSE, IDC_UNIT1_LABEL, IDC_REVERSE_LABEL}) {
        EXPECT_FALSE(dialog.IsVisible(control)) << control;
    }
    dialog.Choose(IDC_CONVERSION_LIST, 0);
    EXPECT_TRUE(dialog.IsVisible(IDC_FACTOR));
    EXPECT_FALSE(dialog.IsVisible(IDC_FORWARD));
    EXPECT_EQ(dialog.Text(IDC_FACTOR), "3.28084");
    EXPECT_EQ(dialog.Text(IDC_OFFSET), "0");
    dialog.Choose(IDC_CONVERSION_LIST, 1);
    EXPECT_FALSE(dialog.IsVisible(IDC_FACTOR));
    EXPECT_TRUE(dialog.IsVisible(IDC_FORWARD));
    EXPECT_EQ(dialog.Text(IDC_FORWARD), "x+1");
    EXPECT_EQ(dialog.Text(IDC_REVERSE), "");
    EXPECT_TRUE(dialog.Ok());
}

TEST_F(ConversionsDialogTest, StoresABoxThatLosesTheFocusOrStillHasIt) {
    Start();
    const double third = 1.0 / 3.0;
    program.Ask([third](CVelmFrame& frame) {
        static_cast<CVelmConversionDoc&>(*frame.Document()).conversions[0]->offset = third;
    });
    const DialogDriver dialog(program, ID_CONVERSIONS);
    dialog.Choose(IDC_CONVERSION_LIST, 0);
    dialog.Focus(IDC_FACTOR);
    dialog.SetText(IDC_FACTOR, "1/0.5");
    dialog.Focus(IDC_OFFSET);
    EXPECT_EQ(Conversion(0).factor, 2.0);
    dialog.Focus(IDC_FACTOR);
    EXPECT_EQ(Conversion(0).offset, third) << "a number that was only looked at keeps all its digits";
    dialog.SetText(IDC_FACTOR, "1/0");
    dialog.Focus(IDC_OFFSET);
    EXPECT_EQ(Conversion(0).factor, 2.0) << "what does not evaluate leaves the old number";
    dialog.SetText(IDC_OFFSET, "32");
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(Conversion(0).offset, 32.0);
    EXPECT_TRUE(program.Close());
    const auto document = LoadFile(program, u"Length.cnv");
    EXPECT_EQ(static_cast<CVelmConversionDoc&>(*document).conversions[0]->offset, 32.0);
}

TEST_F(ConversionsDialogTest, DeletesAfterAsking) {
    Start();
    const DialogDriver dialog(program, ID_CONVERSIONS);
    dialog.Command(ID_DELETE_CONVERSION);
    program.Settle();
    EXPECT_EQ(program.WaitForDialog(), dialog.Window()) << "without a selected row nothing is asked";
    dialog.Choose(IDC_CONVERSION_LIST, 0);
    EXPECT_EQ(dialog.Answer(ID_DELETE_CONVERSION, IDNO), "Delete: Do you want to delete the conversion?");
    EXPECT_EQ(Count(), 1U);
    dialog.Focus(IDC_CONVERSION_LIST);
    program.Key(VK_DELETE);
    EXPECT_TRUE(program.Eventually([&](CVelmFrame&) { return program.WaitForDialog() != dialog.Window(); }));
    EXPECT_TRUE(program.WaitForMessageBox()->Press(IDYES));
    program.Settle();
    EXPECT_EQ(Count(), 0U);
    EXPECT_TRUE(dialog.Entries(IDC_CONVERSION_LIST).empty());
    EXPECT_FALSE(dialog.IsVisible(IDC_FACTOR));
}

TEST_F(ConversionsDialogTest, AddsALinearOne) {
    Start();
    const DialogDriver dialog(program, ID_CONVERSIONS);
    const DialogDriver add = Add(dialog, ID_ADD_STANDARD);
    EXPECT_EQ(add.Caption(), "Add Conversion");
    EXPECT_EQ(add.Entries(IDC_UNIT1), (Texts{"meters", "feet of today", "a unit with quite a long name"}));
    EXPECT_EQ(add.Text(IDC_FACTOR), "1");
    EXPECT_EQ(add.Text(IDC_OFFSET), "0");
    EXPECT_FALSE(add.IsVisible(IDC_FORWARD));
    EXPECT_EQ(add.Answer(IDOK), "Add Conversion: Please select the first unit");
    add.Choose(IDC_UNIT1, 1);
    EXPECT_EQ(add.Answer(IDOK), "Add Conversion: Please select the second unit");
    const char* const exists = "Add Conversion: The conversion between 2 select units already exists";
    add.Choose(IDC_UNIT2, 1);
    EXPECT_EQ(add.Answer(IDOK), exists) << "the same unit twice";
    add.Choose(IDC_UNIT2, 0);
    EXPECT_EQ(add.Answer(IDOK), exists) << "the other way round";
    add.Choose(IDC_UNIT2, 2);
    add.SetText(IDC_FACTOR, "1/");
    EXPECT_EQ(add.Answer(IDOK), "Add Conversion: \"1/\" is no factor: it cannot be calculated.");
    add.SetText(IDC_FACTOR, "1/0.25");
    add.SetText(IDC_OFFSET, "y");
    EXPECT_EQ(add.Answer(IDOK), "Add Conversion: \"y\" is no offset: it cannot be calculated.");
    add.SetText(IDC_OFFSET, "-1");
    EXPECT_TRUE(add.Ok());
    EXPECT_EQ(Count(), 2U);
    EXPECT_EQ(dialog.Text(IDC_FACTOR), "4") << "the new one is selected and shown";
    EXPECT_EQ(Conversion(1).offset, -1.0);
    EXPECT_TRUE(dialog.Ok());
}

TEST_F(ConversionsDialogTest, AddsAPairOfFormulas) {
    Start();
    const DialogDriver dialog(program, ID_CONVERSIONS);
    {
        const DialogDriver add = Add(dialog, ID_ADD_ADVANCED);
        EXPECT_FALSE(add.IsVisible(IDC_FACTOR));
        add.Choose(IDC_UNIT1, 0);
        add.Choose(IDC_UNIT2, 2);
        EXPECT_EQ(add.Answer(IDOK), "Add Conversion: \"\" is not a formula.");
        add.SetText(IDC_FORWARD, "sqrt(x");
        EXPECT_EQ(add.Answer(IDOK), "Add Conversion: \"sqrt(x\" is not a formula.");
        EXPECT_TRUE(add.GetsFocus(IDC_FORWARD));
        add.SetText(IDC_FORWARD, "sqrt(x)");
        EXPECT_TRUE(add.Ok()) << "without a reverse formula it works one way";
    }
    EXPECT_EQ(dialog.Text(IDC_FORWARD), "sqrt(x)");
    dialog.Focus(IDC_REVERSE);
    program.Type("x^2");
    program.Settle();
    program.Key(VK_ESCAPE);
    EXPECT_TRUE(dialog.IsGone());
    program.Settle();
    EXPECT_EQ(Conversion(1).reverseFormula, u"x^2") << "what has the focus is kept however the dialog is left";
    EXPECT_TRUE(Conversion(1).IsFormula());
}

}  // namespace
}  // namespace velm::test
