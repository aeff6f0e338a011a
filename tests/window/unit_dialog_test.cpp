#include <gtest/gtest.h>

#include "resource.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

class UnitDialogTest : public ProgramTest {
protected:
    void StartCalculation() {
        SaveCalculationFile(program, u"Tip", {{u"Bill", u"bill"}, {u"Tip", u"tip", u"bill * 0.15"}});
        ASSERT_TRUE(program.Start());
    }

    /// "name|identifier|text" of the last item that the file has.
    std::string LastSaved(CVelmStringView file) {
        EXPECT_TRUE(program.Close());
        const auto document = LoadFile(program, file);
        const CVelmItem& item = *document->items.back();
        return ToUtf8(item.name + u"|" + item.identifier + u"|" + item.valueText);
    }
};

TEST_F(UnitDialogTest, AddsAUnitAtTheEnd) {
    StartLength();
    const DialogDriver dialog(program, ID_ADD_UNIT);
    EXPECT_EQ(dialog.Caption(), "New Unit");
    EXPECT_EQ(dialog.MenuBar(), (Texts{"  OK   ", " Cancel "}));
    EXPECT_FALSE(dialog.IsVisible(IDC_ITEM_TYPE));
    EXPECT_FALSE(dialog.IsVisible(IDC_ITEM_TYPE_LABEL));
    EXPECT_EQ(dialog.Answer(IDOK), "Edit Unit: Please enter item name");
    EXPECT_TRUE(dialog.GetsFocus(IDC_ITEM_NAME));
    dialog.Fill({{IDC_ITEM_NAME, "yards"}, {IDC_ITEM_IDENTIFIER, "ft"}});
    EXPECT_EQ(dialog.Answer(IDOK), "New Unit: \"ft\" is the identifier of another item of this file.");
    dialog.Fill({{IDC_ITEM_IDENTIFIER, "sq. yd/2"}, {IDC_ITEM_VALUE, "(((not a formula"}});
    EXPECT_TRUE(dialog.Ok()) << "a conversion file names units freely";
    EXPECT_EQ(Rows(), "meters=, feet=, yards=");
    EXPECT_EQ(LastSaved(u"Length.cnv"), "yards|sq. yd/2|(((not a formula");
}

TEST_F(UnitDialogTest, KeepsWhatFitsAndOnlyUponOk) {
    StartLength();
    const Bytes before = ReadBytes(program, u"Length.cnv");
    for (const int command : {ID_ADD_UNIT, ID_EDIT_UNIT}) {
        const DialogDriver dialog(program, command);
        dialog.Fill({{IDC_ITEM_NAME, "changed"}, {IDC_ITEM_IDENTIFIER, "c"}, {IDC_ITEM_VALUE, "1"}});
        EXPECT_TRUE(dialog.Cancel());
        EXPECT_EQ(ReadBytes(program, u"Length.cnv"), before);
        EXPECT_EQ(Rows(), "meters=, feet=");
    }
    for (const std::size_t length : {126U, 127U, 128U}) {
        const DialogDriver dialog(program, ID_EDIT_UNIT);
        EXPECT_EQ(dialog.Caption(), "Unit Properties");
        const std::string text(length, 'n');
        dialog.Fill({{IDC_ITEM_NAME, text}, {IDC_ITEM_IDENTIFIER, text}, {IDC_ITEM_VALUE, text}});
        EXPECT_TRUE(dialog.Ok());
        const std::size_t kept = std::min<std::size_t>(length, 127);
        EXPECT_EQ(Item(0).name.size(), kept);
        EXPECT_EQ(Item(0).identifier.size(), kept);
        EXPECT_EQ(Item(0).valueText.size(), kept);
    }
}

TEST_F(UnitDialogTest, TurnsAnInputIntoAnOutput) {
    StartCalculation();
    const DialogDriver dialog(program, ID_EDIT_UNIT);
    EXPECT_EQ(dialog.Entries(IDC_ITEM_TYPE), (Texts{"Input", "Output"}));
    EXPECT_EQ(dialog.Text(IDC_ITEM_TYPE), "Input");
    EXPECT_EQ(dialog.Text(IDC_ITEM_IDENTIFIER), "bill");
    dialog.Fill({{IDC_ITEM_VALUE, "2 * 50"}});
    dialog.Choose(IDC_ITEM_TYPE, 1);
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(Rows(), "Bill=100, Tip=15");
    EXPECT_EQ(Entry(), "") << "an output is not typed in";
    EXPECT_EQ(PlaceOf(program.List()).bottom, PlaceOf(program.Panel()).bottom) << "the list has its room";
    EXPECT_TRUE(program.Close());
    EXPECT_TRUE(LoadFile(program, u"Tip.cal")->GetItem(0)->IsOutput());
}

TEST_F(UnitDialogTest, EditsOfAUnitWithoutValueLeaveTheOthersTheirs) {
    StartLength();
    Item(1).value = 5.0;
    Item(1).state = STATE_VALID;
    for (const int command : {ID_EDIT_UNIT, ID_CONVERSIONS}) {
        EXPECT_TRUE(DialogDriver(program, command).Ok());
        EXPECT_EQ(Item(1).state, STATE_VALID);
    }
}

TEST_F(UnitDialogTest, RefusesWhatFormulasCouldNeverUse) {
    StartCalculation();
    const DialogDriver dialog(program, ID_ADD_UNIT);
    dialog.Fill({{IDC_ITEM_NAME, "Total"}});
    dialog.Choose(IDC_ITEM_TYPE, 1);
    const std::string noName = " cannot be an identifier: formulas name an item by letters and digits, a letter first.";
    const std::string taken = " is the identifier of another item of this file.";
    struct Case {
        int box;
        std::string text;
        std::string reason;
    };
    for (const Case& row :
         {Case{IDC_ITEM_IDENTIFIER, "two words", noName},
          {IDC_ITEM_IDENTIFIER, "2nd", noName},
          {IDC_ITEM_IDENTIFIER, "a+b", noName},
          {IDC_ITEM_IDENTIFIER, "BILL", taken},
          {IDC_ITEM_IDENTIFIER, "Pi", " cannot be an identifier: in formulas it has a meaning of its own."},
          {IDC_ITEM_VALUE, "bill + (tip", " is not a formula."},
          {IDC_ITEM_VALUE, "", " is not a formula."},
          {IDC_ITEM_VALUE, "bill tip", " is not a formula."}}) {
        dialog.Fill({{IDC_ITEM_IDENTIFIER, "total"}, {row.box, row.text}});
        EXPECT_EQ(dialog.Answer(IDOK), "New Unit: \"" + row.text + "\"" + row.reason);
        EXPECT_TRUE(dialog.GetsFocus(row.box));
    }
    dialog.Fill({{IDC_ITEM_VALUE, "Bill + Tip"}});
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(LastSaved(u"Tip.cal"), "Total|total|Bill + Tip");
}

TEST_F(UnitDialogTest, IsFilledByTheKeyboardAlone) {
    StartCalculation();
    program.Key(VK_INSERT);
    const DialogDriver dialog(program, program.WaitForDialog());
    Do("type Guests; press Tab; type guests; press Tab; type 4");
    EXPECT_TRUE(dialog.EndsWith(VK_RETURN));
    const DialogDriver edit(program, ID_EDIT_UNIT);
    EXPECT_EQ(edit.Send(IDC_ITEM_NAME, EM_GETSEL), MAKELONG(0, 4)) << "the first field is focused, its text selected";
    EXPECT_TRUE(edit.EndsWith(VK_ESCAPE));
    EXPECT_EQ(LastSaved(u"Tip.cal"), "Guests|guests|4");
}

}  // namespace
}  // namespace velm::test
