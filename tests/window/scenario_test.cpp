#include <gtest/gtest.h>

#include "resource.h"
#include "support/dialog_driver.h"
#include "support/files.h"

namespace velm::test {
namespace {

/// A user who has nothing yet and makes everything in the window.
class ScenarioTest : public testing::Test {
protected:
    ScenarioTest() { EXPECT_TRUE(program.Start()); }

    void MakeFile(WORD command, std::string_view title, std::string_view category) {
        const DialogDriver dialog(program, command);
        dialog.SetText(IDC_FILE_TITLE, title);
        dialog.SetText(IDC_CATEGORY, category);
        EXPECT_TRUE(dialog.Ok());
    }

    void AddItem(std::string_view name, std::string_view identifier, std::string_view value = "", bool output = false) {
        const DialogDriver dialog(program, ID_ADD_UNIT);
        dialog.SetText(IDC_ITEM_NAME, name);
        dialog.SetText(IDC_ITEM_IDENTIFIER, identifier);
        dialog.SetText(IDC_ITEM_VALUE, value);
        if (output) {
            dialog.Choose(IDC_ITEM_TYPE, 1);
        }
        EXPECT_TRUE(dialog.Ok());
    }

    /// The dialog that opens over another one.
    DialogDriver Over(const DialogDriver& below) {
        HWND window = nullptr;
        EXPECT_TRUE(program.Eventually([&](CVelmFrame&) {
            window = program.WaitForDialog();
            return window != below.Window();
        }));
        program.Settle();
        return {program, window};
    }

    void StartAgain() {
        ASSERT_TRUE(program.Close());
        ASSERT_TRUE(program.Start());
    }

    /// "name=value" of each row.
    std::vector<std::string> Rows() {
        std::vector<std::string> rows;
        program.Ask([&](CVelmFrame& frame) {
            for (int i = 0; i < frame.List().RowCount(); ++i) {
                const CVelmItemRow& row = frame.List().Row(i);
                rows.push_back(ToUtf8(row.Item().name + u"=" + row.ValueText()));
            }
        });
        return rows;
    }

    /// What typing into the panel leads to: the item's value is set and everything is calculated.
    void Enter(int row, double value) {
        program.Ask([&](CVelmFrame& frame) {
            frame.List().SelectRow(row);
            CVelmItem& item = *frame.Document()->currentItem;
            item.value = value;
            item.state = STATE_VALID;
            SendMessageW(frame.Handle(), WM_COMMAND, ID_CALCULATE, 0);
        });
    }

    RunningProgram program;
};

using Texts = std::vector<std::string>;

TEST_F(ScenarioTest, AConversionFileFromNothing) {
    MakeFile(ID_NEW_CONVERSION_FILE, "Warmth", "Physics");
    AddItem("Celsius", "C");
    AddItem("Fahrenheit", "F");
    AddItem("Squared", "C2");
    const DialogDriver conversions(program, ID_CONVERSIONS);
    conversions.Command(ID_ADD_STANDARD);
    {
        const DialogDriver add = Over(conversions);
        add.Choose(IDC_UNIT1, 0);
        add.Choose(IDC_UNIT2, 1);
        add.SetText(IDC_FACTOR, "9/5");
        add.SetText(IDC_OFFSET, "32");
        EXPECT_TRUE(add.Ok());
    }
    conversions.Command(ID_ADD_ADVANCED);
    {
        const DialogDriver add = Over(conversions);
        add.Choose(IDC_UNIT1, 0);
        add.Choose(IDC_UNIT2, 2);
        add.SetText(IDC_FORWARD, "x^2");
        add.SetText(IDC_REVERSE, "sqrt(x)");
        EXPECT_TRUE(add.Ok());
    }
    EXPECT_EQ(conversions.Entries(IDC_CONVERSION_LIST), (Texts{"C <=> F", "C <=> C2"}));
    EXPECT_TRUE(conversions.Ok());

    const RECT button = program.Ask([](CVelmFrame& frame) { return frame.List().Row(0).Button().Rectangle(); });
    program.Tap(program.List(), static_cast<int>(button.left) + 3, static_cast<int>(button.top) + 3);
    const auto menu = program.WaitForMenu();
    ASSERT_TRUE(menu && menu->Choose("Customize..."));
    {
        const DialogDriver formats(program, program.WaitForDialog());
        SendMessageW(formats.Control(IDC_FORMAT_COMPOUND), BM_CLICK, 0, 0);
        SendMessageW(formats.Control(IDC_FORMAT_DECIMAL), BM_CLICK, 0, 0);
        formats.SetText(IDC_PART_LABEL_1, "deg");
        formats.SetText(IDC_PART_FACTOR_2, "10");
        formats.SetText(IDC_PART_LABEL_2, "tenths");
        EXPECT_TRUE(formats.Ok());
    }
    Enter(1, 99.5);
    EXPECT_EQ(Rows(), (Texts{"Celsius=37 deg 5 tenths ", "Fahrenheit=99.5", "Squared=1,406.25"}));
    const DialogDriver shown(program, ID_SHOW_UNITS);
    shown.TickRow(IDC_LIST, 0, false);
    EXPECT_TRUE(shown.Ok());

    StartAgain();
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return ToUtf8(frame.TitleButton().Text()); }), "Warmth");
    Enter(0, 212);
    EXPECT_EQ(Rows(), (Texts{"Fahrenheit=212", "Squared=10,000"})) << "what is hidden still lies between the others";
    const DialogDriver again(program, ID_CONVERSIONS);
    EXPECT_EQ(again.Entries(IDC_CONVERSION_LIST), (Texts{"C <=> F", "C <=> C2"}));
    again.Choose(IDC_CONVERSION_LIST, 0);
    EXPECT_EQ(again.Text(IDC_FACTOR), "1.8");
    again.Choose(IDC_CONVERSION_LIST, 1);
    EXPECT_EQ(again.Text(IDC_REVERSE), "sqrt(x)");
    EXPECT_TRUE(again.Ok());
    program.Ask([](CVelmFrame& frame) {
        const CVelmValueFormat& format = frame.Document()->GetItem(0)->format;
        EXPECT_EQ(format.displayFormat, FMT_COMPOUND);
        EXPECT_EQ(format.compoundParts[1].label, u"tenths");
        EXPECT_EQ(frame.Document()->category, u"Physics");
    });
}

TEST_F(ScenarioTest, ACalculationFileFromNothing) {
    MakeFile(ID_NEW_CALCULATION_FILE, "Trip", "Travel");
    AddItem("Distance", "km", "120");
    AddItem("Speed", "kmh", "60");
    AddItem("Arrival with rest", "total", "hours + 0.5", true);
    AddItem("Hours", "hours", "km / kmh", true);
    program.Command(ID_CALCULATE);
    program.Settle();
    const Texts expected{"Distance=120", "Speed=60", "Arrival with rest=2.5", "Hours=2"};
    EXPECT_EQ(Rows(), expected) << "an output may use one that comes later";
    StartAgain();
    program.Command(ID_CALCULATE);
    program.Settle();
    EXPECT_EQ(Rows(), expected);
    Enter(1, 120);
    EXPECT_EQ(Rows(), (Texts{"Distance=120", "Speed=120", "Arrival with rest=1.5", "Hours=1"}));
}

}  // namespace
}  // namespace velm::test
