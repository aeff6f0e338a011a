#include <gtest/gtest.h>

#include "resource.h"
#include "support/dialog_driver.h"
#include "support/files.h"

namespace velm::test {
namespace {

class FormatsDialogTest : public testing::Test {
protected:
    FormatsDialogTest() {
        SaveConversionFile(program, u"Time", {{u"hours"}, {u"days", 1.0 / 24.0}});
        EXPECT_TRUE(program.Start());
    }

    /// Opens the dialog from the format menu of the first row.
    DialogDriver Open() {
        const RECT area = program.Ask([](CVelmFrame& frame) { return frame.List().Row(0).Button().Rectangle(); });
        program.Tap(program.List(), static_cast<int>(area.left) + 3, static_cast<int>(area.top) + 3);
        const auto menu = program.WaitForMenu();
        EXPECT_TRUE(menu && menu->Choose("Customize..."));
        const HWND window = program.WaitForDialog();
        program.Settle();
        return {program, window};
    }

    void Click(const DialogDriver& dialog, int box) { SendMessageW(dialog.Control(box), BM_CLICK, 0, 0); }

    bool IsChecked(const DialogDriver& dialog, int box) {
        return SendMessageW(dialog.Control(box), BM_GETCHECK, 0, 0) == BST_CHECKED;
    }

    CVelmValueFormat Format() {
        return program.Ask([](CVelmFrame& frame) { return frame.Document()->GetItem(0)->format; });
    }

    RunningProgram program;
};

TEST_F(FormatsDialogTest, DefinesCompoundParts) {
    {
        const DialogDriver dialog = Open();
        EXPECT_EQ(dialog.Caption(), "Formats");
        EXPECT_TRUE(IsChecked(dialog, IDC_FORMAT_DECIMAL));
        EXPECT_FALSE(IsChecked(dialog, IDC_FORMAT_COMPOUND));
        EXPECT_EQ(dialog.Text(IDC_PART_FACTOR_1), "1");
        EXPECT_EQ(dialog.Text(IDC_PART_FACTOR_2), "0");
        Click(dialog, IDC_FORMAT_COMPOUND);
        dialog.SetText(IDC_PART_LABEL_1, "h");
        dialog.SetText(IDC_PART_FACTOR_2, "60");
        dialog.SetText(IDC_PART_LABEL_2, "min");
        dialog.SetText(IDC_PART_LABEL_3, "lost");
        dialog.SetText(IDC_PART_FACTOR_4, "60");
        EXPECT_TRUE(dialog.Ok());
    }
    const CVelmValueFormat format = Format();
    EXPECT_EQ(format.allowedFormats, FMT_DECIMAL | FMT_COMPOUND);
    EXPECT_EQ(format.compoundParts[0].factor, 1.0);
    EXPECT_EQ(format.compoundParts[1].factor, 60.0);
    EXPECT_EQ(format.compoundParts[1].label, u"min");
    EXPECT_EQ(format.compoundParts[2].factor, 0.0) << "the first zero ends the parts";
    const DialogDriver again = Open();
    EXPECT_TRUE(IsChecked(again, IDC_FORMAT_COMPOUND));
    EXPECT_EQ(again.Text(IDC_PART_LABEL_1), "h");
    EXPECT_EQ(again.Text(IDC_PART_FACTOR_2), "60");
    EXPECT_EQ(again.Text(IDC_PART_FACTOR_3), "0");
    EXPECT_EQ(again.Text(IDC_PART_LABEL_3), "");
    EXPECT_TRUE(again.Cancel());
    EXPECT_TRUE(program.Close());
    EXPECT_EQ(LoadFile(program, u"Time.cnv")->GetItem(0)->format.compoundParts[1].label, u"min");
}

TEST_F(FormatsDialogTest, RefusesFactorsAndLabelsOutOfRange) {
    const DialogDriver dialog = Open();
    for (const char* factor : {"-1", "1.1e20", "many", "2*3"}) {
        dialog.SetText(IDC_PART_FACTOR_4, factor);
        EXPECT_EQ(dialog.Answer(IDOK), "Formats: Please enter a number between 0 and 1E20.") << factor;
        EXPECT_TRUE(dialog.GetsFocus(IDC_PART_FACTOR_4));
    }
    dialog.SetText(IDC_PART_FACTOR_4, "1E20");
    for (const int label : {IDC_PART_LABEL_1, IDC_PART_LABEL_2, IDC_PART_LABEL_4}) {
        dialog.SetText(label, "ninechars");
        EXPECT_EQ(dialog.Answer(IDOK), "Formats: Please enter no more than 8 characters.");
        dialog.SetText(label, "eightchr");
    }
    dialog.SetText(IDC_PART_LABEL_3, "as long as one likes");
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(Format().allowedFormats, FMT_DECIMAL);
}

TEST_F(FormatsDialogTest, OneKindOfDateAndAlwaysOneFormat) {
    {
        const DialogDriver dialog = Open();
        Click(dialog, IDC_FORMAT_DATE);
        Click(dialog, IDC_FORMAT_DATETIME);
        EXPECT_FALSE(IsChecked(dialog, IDC_FORMAT_DATE));
        Click(dialog, IDC_FORMAT_DECIMAL);
        Click(dialog, IDC_FORMAT_HEX);
        EXPECT_TRUE(dialog.Ok());
        const CVelmValueFormat format = Format();
        EXPECT_EQ(format.allowedFormats, FMT_HEX | FMT_DATETIME);
        EXPECT_EQ(format.displayFormat, FMT_HEX) << "the display format moves into the set";
    }
    const DialogDriver dialog = Open();
    Click(dialog, IDC_FORMAT_DATETIME);
    Click(dialog, IDC_FORMAT_HEX);
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(Format().allowedFormats, FMT_DECIMAL);
    EXPECT_EQ(Format().displayFormat, FMT_DECIMAL);
}

}  // namespace
}  // namespace velm::test
