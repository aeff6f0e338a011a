#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "resource.h"
#include "support/dialog_driver.h"
#include "support/files.h"

namespace velm::test {
namespace {

class UnitDialogTest : public testing::Test {
protected:
    void StartWithUnits() {
        SaveConversionFile(program, u"Length", {{u"meters", 1.0, u"m"}, {u"feet", 3.28084, u"ft"}});
        ASSERT_TRUE(program.Start());
    }

    void StartWithCalculation() {
        SaveCalculationFile(program, u"Tip", {{u"Bill", u"bill"}, {u"Tip", u"tip", u"bill * 0.15"}});
        ASSERT_TRUE(program.Start());
    }

    std::unique_ptr<CVelmDocument> Saved(CVelmStringView name) {
        EXPECT_TRUE(program.Close());
        auto document = LoadFile(program, name);
        EXPECT_NE(document, nullptr);
        return document;
    }

    RunningProgram program;
};

TEST_F(UnitDialogTest, AddsAUnitAtTheEnd) {
    StartWithUnits();
    const DialogDriver dialog(program, ID_ADD_UNIT);
    EXPECT_EQ(dialog.Caption(), "New Unit");
    EXPECT_EQ(dialog.MenuBar(), (std::vector<std::string>{"  OK   ", " Cancel "}));
    EXPECT_FALSE(dialog.IsVisible(IDC_ITEM_TYPE));
    EXPECT_FALSE(dialog.IsVisible(IDC_ITEM_TYPE_LABEL));
    EXPECT_EQ(dialog.Answer(IDOK), "Edit Unit: Please enter item name");
    EXPECT_TRUE(dialog.GetsFocus(IDC_ITEM_NAME));
    program.Type("yards");
    program.Settle();
    dialog.SetText(IDC_ITEM_IDENTIFIER, "ft");
    EXPECT_EQ(dialog.Answer(IDOK), "New Unit: \"ft\" is the identifier of another item of this file.");
    dialog.SetText(IDC_ITEM_IDENTIFIER, "sq. yd/2");
    dialog.SetText(IDC_ITEM_VALUE, "(((not a formula");
    EXPECT_TRUE(dialog.Ok()) << "a conversion file names units freely";
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.List().RowCount(); }), 3);
    const auto document = Saved(u"Length.cnv");
    ASSERT_EQ(document->ItemCount(), 3U);
    EXPECT_EQ(document->GetItem(2)->name, u"yards");
    EXPECT_EQ(document->GetItem(2)->identifier, u"sq. yd/2");
    EXPECT_EQ(document->GetItem(2)->valueText, u"(((not a formula");
}

TEST_F(UnitDialogTest, CancelLeavesTheFileAsItWas) {
    StartWithUnits();
    const auto bytes = ReadBytes(program, u"Length.cnv");
    for (const WORD command : std::array<WORD, 2>{ID_ADD_UNIT, ID_EDIT_UNIT}) {
        const DialogDriver dialog(program, command);
        dialog.SetText(IDC_ITEM_NAME, "changed");
        dialog.SetText(IDC_ITEM_IDENTIFIER, "c");
        EXPECT_TRUE(dialog.Cancel());
    }
    EXPECT_TRUE(program.Close());
    EXPECT_EQ(ReadBytes(program, u"Length.cnv"), bytes);
}

TEST_F(UnitDialogTest, CutsTextsAtTheirGreatestLength) {
    StartWithUnits();
    for (const std::size_t length : {std::size_t{126}, std::size_t{127}, std::size_t{128}}) {
        const DialogDriver dialog(program, ID_EDIT_UNIT);
        EXPECT_EQ(dialog.Caption(), "Unit Properties");
        for (const int box : {IDC_ITEM_NAME, IDC_ITEM_IDENTIFIER, IDC_ITEM_VALUE}) {
            dialog.SetText(box, std::string(length, 'n'));
        }
        EXPECT_TRUE(dialog.Ok());
        program.Ask([length](CVelmFrame& frame) {
            const CVelmItem& item = *frame.Document()->GetItem(0);
            const std::size_t kept = std::min<std::size_t>(length, 127);
            EXPECT_EQ(item.name.size(), kept);
            EXPECT_EQ(item.identifier.size(), kept);
            EXPECT_EQ(item.valueText.size(), kept);
        });
    }
}

TEST_F(UnitDialogTest, TurnsAnInputIntoAnOutput) {
    StartWithCalculation();
    const DialogDriver dialog(program, ID_EDIT_UNIT);
    EXPECT_EQ(dialog.Entries(IDC_ITEM_TYPE), (std::vector<std::string>{"Input", "Output"}));
    EXPECT_EQ(dialog.Text(IDC_ITEM_TYPE), "Input");
    EXPECT_EQ(dialog.Text(IDC_ITEM_IDENTIFIER), "bill");
    dialog.SetText(IDC_ITEM_VALUE, "2 * 50");
    dialog.Choose(IDC_ITEM_TYPE, 1);
    EXPECT_TRUE(dialog.Ok());
    program.Ask([](CVelmFrame& frame) {
        EXPECT_FALSE(frame.Panel().IsShown()) << "an output is not typed in";
        EXPECT_EQ(PlaceOf(frame.List().Handle()).bottom, PlaceOf(frame.Panel().Handle()).bottom)
            << "the list has its room";
        EXPECT_EQ(frame.List().Row(0).ValueText(), u"100");
        EXPECT_EQ(frame.List().Row(1).ValueText(), u"15");
    });
    const auto document = Saved(u"Tip.cal");
    EXPECT_TRUE(document->GetItem(0)->IsOutput());
}

TEST_F(UnitDialogTest, EditsOfAUnitWithoutValueLeaveTheOthersTheirs) {
    StartWithUnits();
    program.Ask([](CVelmFrame& frame) {
        frame.Document()->GetItem(1)->value = 5.0;
        frame.Document()->GetItem(1)->state = STATE_VALID;
    });
    for (const int command : {ID_EDIT_UNIT, ID_CONVERSIONS}) {
        EXPECT_TRUE(DialogDriver(program, static_cast<WORD>(command)).Ok());
        EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.Document()->GetItem(1)->state; }), STATE_VALID);
    }
}

TEST_F(UnitDialogTest, RefusesWhatFormulasCouldNeverUse) {
    StartWithCalculation();
    const DialogDriver dialog(program, ID_ADD_UNIT);
    dialog.SetText(IDC_ITEM_NAME, "Total");
    const auto refusal = [&](const char* identifier) {
        dialog.SetText(IDC_ITEM_IDENTIFIER, identifier);
        return dialog.Answer(IDOK);
    };
    for (const std::string identifier : {"two words", "2nd", "a+b"}) {
        EXPECT_EQ(refusal(identifier.c_str()),
                  "New Unit: \"" + identifier +
                      "\" cannot be an identifier: formulas name an item by letters and digits, a letter first.");
    }
    EXPECT_EQ(refusal("Pi"), "New Unit: \"Pi\" cannot be an identifier: in formulas it has a meaning of its own.");
    EXPECT_EQ(refusal("BILL"), "New Unit: \"BILL\" is the identifier of another item of this file.");
    EXPECT_TRUE(dialog.GetsFocus(IDC_ITEM_IDENTIFIER));
    dialog.SetText(IDC_ITEM_IDENTIFIER, "total");
    dialog.Choose(IDC_ITEM_TYPE, 1);
    for (const std::string formula : {"bill + (tip", "", "bill tip"}) {
        dialog.SetText(IDC_ITEM_VALUE, formula);
        EXPECT_EQ(dialog.Answer(IDOK), "New Unit: \"" + formula + "\" is not a formula.");
    }
    dialog.SetText(IDC_ITEM_VALUE, "Bill + Tip");
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(Saved(u"Tip.cal")->ItemCount(), 3U);
}

TEST_F(UnitDialogTest, IsFilledByTheKeyboardAlone) {
    StartWithCalculation();
    program.Key(VK_INSERT);
    const HWND window = program.WaitForDialog();
    ASSERT_NE(window, nullptr);
    const DialogDriver dialog(program, window);
    program.Settle();
    program.Type("Guests");
    program.Key(VK_TAB);
    program.Settle();
    program.Type("guests");
    program.Key(VK_TAB);
    program.Settle();
    program.Type("4");
    program.Key(VK_RETURN);
    EXPECT_TRUE(dialog.IsGone());
    const DialogDriver edit(program, ID_EDIT_UNIT);
    EXPECT_EQ(SendMessageW(edit.Control(IDC_ITEM_NAME), EM_GETSEL, 0, 0), MAKELONG(0, 4))
        << "the first field is focused with its text selected";
    program.Key(VK_ESCAPE);
    EXPECT_TRUE(edit.IsGone());
    const auto document = Saved(u"Tip.cal");
    ASSERT_EQ(document->ItemCount(), 3U);
    EXPECT_EQ(document->GetItem(2)->identifier, u"guests");
    EXPECT_EQ(document->GetItem(2)->valueText, u"4");
}

}  // namespace
}  // namespace velm::test
