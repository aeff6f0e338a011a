#include <gtest/gtest.h>

#include "resource.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

class FormatsDialogTest : public ProgramTest {
protected:
    FormatsDialogTest() {
        SaveConversionFile(program, u"Time", {{u"hours"}, {u"days", 1.0 / 24.0}});
        EXPECT_TRUE(program.Start());
    }

    /// Opens the dialog from the format menu of the first row.
    DialogDriver Open() {
        TapFormatButton(0);
        EXPECT_TRUE(program.Choose("Customize..."));
        return {program, program.WaitForDialog()};
    }
};

TEST_F(FormatsDialogTest, DefinesCompoundParts) {
    {
        const DialogDriver dialog = Open();
        EXPECT_EQ(dialog.Caption(), "Formats");
        EXPECT_TRUE(dialog.IsChecked(IDC_FORMAT_DECIMAL));
        EXPECT_FALSE(dialog.IsChecked(IDC_FORMAT_COMPOUND));
        EXPECT_EQ(dialog.Text(IDC_PART_FACTOR_1) + dialog.Text(IDC_PART_FACTOR_2), "10");
        dialog.Click(IDC_FORMAT_COMPOUND);
        dialog.Fill({{IDC_PART_LABEL_1, "h"},
                     {IDC_PART_FACTOR_2, "60"},
                     {IDC_PART_LABEL_2, "min"},
                     {IDC_PART_LABEL_3, "lost"},
                     {IDC_PART_FACTOR_4, "60"}});
        EXPECT_TRUE(dialog.Ok());
    }
    const CVelmValueFormat& format = Item(0).format;
    EXPECT_EQ(format.allowedFormats, FMT_DECIMAL | FMT_COMPOUND);
    EXPECT_EQ(format.compoundParts[0].factor, 1.0);
    EXPECT_EQ(format.compoundParts[1].factor, 60.0);
    EXPECT_EQ(format.compoundParts[2].factor, 0.0) << "the first zero ends the parts";
    const DialogDriver again = Open();
    EXPECT_TRUE(again.IsChecked(IDC_FORMAT_COMPOUND));
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
        dialog.Fill({{IDC_PART_FACTOR_4, factor}});
        EXPECT_EQ(dialog.Answer(IDOK), "Formats: Please enter a number between 0 and 1E20.") << factor;
        EXPECT_TRUE(dialog.GetsFocus(IDC_PART_FACTOR_4));
    }
    dialog.Fill({{IDC_PART_FACTOR_4, "1E20"}});
    for (const int label : {IDC_PART_LABEL_1, IDC_PART_LABEL_2, IDC_PART_LABEL_4}) {
        dialog.Fill({{label, "ninechars"}});
        EXPECT_EQ(dialog.Answer(IDOK), "Formats: Please enter no more than 8 characters.");
        dialog.Fill({{label, "eightchr"}});
    }
    dialog.Fill({{IDC_PART_LABEL_3, std::string(300, 'l')}, {IDC_PART_FACTOR_3, "12"}, {IDC_PART_FACTOR_2, "10"}});
    dialog.Click(IDC_FORMAT_COMPOUND);
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(Item(0).format.compoundParts[2].label.size(), 300U) << "the third label may be as long as one likes";
}

TEST_F(FormatsDialogTest, OneKindOfDateAndAlwaysOneFormat) {
    struct Case {
        std::vector<int> clicks;
        std::uint32_t allowed;
        std::uint32_t shown;
    };
    // The display format moves into the set; without any format there is the decimal one.
    for (const Case& row :
         {Case{{IDC_FORMAT_DATETIME, IDC_FORMAT_DATE}, FMT_DECIMAL | FMT_DATE, FMT_DECIMAL},
          Case{{IDC_FORMAT_DATETIME, IDC_FORMAT_DECIMAL, IDC_FORMAT_HEX}, FMT_HEX | FMT_DATETIME, FMT_HEX},
          Case{{IDC_FORMAT_DATETIME, IDC_FORMAT_HEX}, FMT_DECIMAL, FMT_DECIMAL}}) {
        const DialogDriver dialog = Open();
        for (const int box : row.clicks) {
            const bool checked = dialog.IsChecked(box);
            dialog.Click(box);
            EXPECT_NE(dialog.IsChecked(box), checked) << box;
        }
        EXPECT_TRUE(dialog.Ok());
        EXPECT_EQ(Item(0).format.allowedFormats, row.allowed);
        EXPECT_EQ(Item(0).format.displayFormat, row.shown);
    }
}

}  // namespace
}  // namespace velm::test
