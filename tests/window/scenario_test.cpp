#include <gtest/gtest.h>

#include "resource.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

/// A user who has nothing yet and makes everything in the window.
class ScenarioTest : public ProgramTest {
protected:
    ScenarioTest() { EXPECT_TRUE(program.Start()); }

    void MakeFile(int command, const std::string& title, const std::string& category) {
        const DialogDriver dialog(program, command);
        dialog.Fill({{IDC_FILE_TITLE, title}, {IDC_CATEGORY, category}});
        EXPECT_TRUE(dialog.Ok());
    }

    void AddItem(const std::string& name, const std::string& identifier, const std::string& text = "",
                 bool output = false) {
        const DialogDriver dialog(program, ID_ADD_UNIT);
        dialog.Fill({{IDC_ITEM_NAME, name}, {IDC_ITEM_IDENTIFIER, identifier}, {IDC_ITEM_VALUE, text}});
        if (output) {
            dialog.Choose(IDC_ITEM_TYPE, 1);
        }
        EXPECT_TRUE(dialog.Ok());
    }

    static void AddConversion(const DialogDriver& conversions, int command, int unit2,
                              const std::vector<std::pair<int, std::string>>& fields) {
        const DialogDriver add = conversions.Over(command);
        add.Choose(IDC_UNIT1, 0);
        add.Choose(IDC_UNIT2, unit2);
        add.Fill(fields);
        EXPECT_TRUE(add.Ok());
    }

    void StartAgain() {
        ASSERT_TRUE(program.Close());
        ASSERT_TRUE(program.Start());
    }
};

TEST_F(ScenarioTest, AConversionFileFromNothing) {
    MakeFile(ID_NEW_CONVERSION_FILE, "Warmth", "Physics");
    AddItem("Celsius", "C");
    AddItem("Fahrenheit", "F");
    AddItem("Squared", "C2");
    const DialogDriver conversions(program, ID_CONVERSIONS);
    AddConversion(conversions, ID_ADD_STANDARD, 1, {{IDC_FACTOR, "9/5"}, {IDC_OFFSET, "32"}});
    AddConversion(conversions, ID_ADD_ADVANCED, 2, {{IDC_FORWARD, "x^2"}, {IDC_REVERSE, "sqrt(x)"}});
    EXPECT_EQ(conversions.Entries(IDC_CONVERSION_LIST), (Texts{"C <=> F", "C <=> C2"}));
    EXPECT_TRUE(conversions.Ok());

    TapFormatButton(0);
    ASSERT_TRUE(program.Choose("Customize..."));
    const DialogDriver formats(program, program.WaitForDialog());
    formats.Click(IDC_FORMAT_COMPOUND);
    formats.Click(IDC_FORMAT_DECIMAL);
    formats.Fill({{IDC_PART_LABEL_1, "deg"}, {IDC_PART_FACTOR_2, "10"}, {IDC_PART_LABEL_2, "tenths"}});
    EXPECT_TRUE(formats.Ok());
    Do("row 1; type 99.5; wait");
    EXPECT_EQ(Rows(), "Celsius=37 deg 5 tenths , Fahrenheit=99.5, Squared=1,406.25");
    Do("row 0; type 36; press Tab; type 6; wait");
    EXPECT_EQ(Rows(), "Celsius=36 deg 6 tenths , Fahrenheit=97.88, Squared=1,339.56");
    const DialogDriver shown(program, ID_SHOW_UNITS);
    shown.TickRow(IDC_LIST, 0, false);
    EXPECT_TRUE(shown.Ok());

    StartAgain();
    EXPECT_EQ(Title(), "Warmth");
    Do("row 0; type 212; wait");
    EXPECT_EQ(Rows(), "Fahrenheit=212, Squared=10,000") << "what is hidden still lies between the others";
    const DialogDriver again(program, ID_CONVERSIONS);
    EXPECT_EQ(again.Entries(IDC_CONVERSION_LIST), (Texts{"C <=> F", "C <=> C2"}));
    again.Choose(IDC_CONVERSION_LIST, 0);
    EXPECT_EQ(again.Text(IDC_FACTOR), "1.8");
    again.Choose(IDC_CONVERSION_LIST, 1);
    EXPECT_EQ(again.Text(IDC_REVERSE), "sqrt(x)");
    EXPECT_TRUE(again.Ok());
    const CVelmValueFormat& format = Document().GetItem(0)->format;
    EXPECT_EQ(format.displayFormat, FMT_COMPOUND);
    EXPECT_EQ(format.compoundParts[1].label, u"tenths");
    EXPECT_EQ(Document().category, u"Physics");
}

TEST_F(ScenarioTest, ACalculationFileFromNothing) {
    MakeFile(ID_NEW_CALCULATION_FILE, "Trip", "Travel");
    AddItem("Distance", "km", "120");
    AddItem("Speed", "kmh", "60");
    AddItem("Arrival with rest", "total", "hours + 0.5", true);
    AddItem("Hours", "hours", "km / kmh", true);
    const std::string expected = "Distance=120, Speed=60, Arrival with rest=2.5, Hours=2";
    program.Command(ID_CALCULATE);
    EXPECT_BECOMES(Rows(), expected) << "an output may use one that comes later";
    StartAgain();
    program.Command(ID_CALCULATE);
    EXPECT_BECOMES(Rows(), expected);
    Do("row 1; type 120; press Enter");
    EXPECT_EQ(Rows(), "Distance=120, Speed=120, Arrival with rest=1.5, Hours=1");
}

}  // namespace
}  // namespace velm::test
