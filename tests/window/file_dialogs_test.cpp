#include <gtest/gtest.h>

#include "app/display_scale.h"
#include "resource.h"
#include "support/dialog_driver.h"
#include "support/files.h"

namespace velm::test {
namespace {

/// A running program with three conversion files: Length and Weight, both "Home", and Volume without a category.
class FileDialogsTest : public testing::Test {
protected:
    void Start() {
        SaveConversionFile(program, u"Length", {{u"meters"}, {u"feet", 3.28084}});
        SaveConversionFile(program, u"Volume", {{u"liters"}});
        SaveConversionFile(program, u"Weight", {{u"grams"}, {u"pounds", 0.0022}, {u"ounces", 0.035}});
        program.StoreRecentFiles({u"Weight.cnv", u"Length.cnv", u"Volume.cnv"});
        ASSERT_TRUE(program.Start());
        program.Ask([](CVelmFrame& frame) {
            frame.Catalog().documents[0]->category = u"Home";
            frame.Catalog().documents[1]->category = u"Home";
        });
    }

    std::vector<std::string> Titles(const DialogDriver& dialog) {
        std::vector<std::string> titles;
        for (int row = 0; row < dialog.RowCount(IDC_LIST); ++row) {
            titles.push_back(dialog.RowText(IDC_LIST, row));
        }
        return titles;
    }

    std::string CurrentTitle() {
        return program.Ask([](CVelmFrame& frame) { return ToUtf8(frame.TitleButton().Text()); });
    }

    RunningProgram program;
};

using Texts = std::vector<std::string>;

TEST_F(FileDialogsTest, OpenListsFilesByCategory) {
    Start();
    const DialogDriver dialog(program, ID_OPEN_FILE);
    EXPECT_EQ(dialog.Caption(), "Open File");
    EXPECT_EQ(dialog.MenuBar(), (Texts{"  OK   ", " Cancel "}));
    EXPECT_EQ(dialog.Entries(IDC_CATEGORY), (Texts{"- All -", "Home", "- Other Text References -"}));
    EXPECT_EQ(dialog.Text(IDC_CATEGORY), "Home") << "the category of the file that is open";
    EXPECT_EQ(Titles(dialog), (Texts{"Weight", "Length"})) << "in the order of last use";
    EXPECT_EQ(dialog.RowText(IDC_LIST, 0, 1), "3 units");
    EXPECT_EQ(dialog.RowText(IDC_LIST, 1, 1), "2 units") << "of a file that is not loaded";
    dialog.Choose(IDC_CATEGORY, 0);
    EXPECT_EQ(Titles(dialog), (Texts{"Weight", "Length", "Volume"}));
    EXPECT_EQ(dialog.Answer(IDOK), "Open File: Please select a file from the list");
    dialog.SelectRow(IDC_LIST, 2);
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(CurrentTitle(), "Volume");
}

TEST_F(FileDialogsTest, OpenTakesATapOrALetterAndEnter) {
    Start();
    const DialogDriver byTap(program, ID_OPEN_FILE);
    byTap.TapRow(IDC_LIST, 1);
    EXPECT_TRUE(byTap.IsGone());
    program.Settle();
    EXPECT_EQ(CurrentTitle(), "Length");
    const DialogDriver byKeys(program, ID_OPEN_FILE);
    byKeys.Choose(IDC_CATEGORY, 0);
    program.Type("v");
    program.Settle();
    program.Key(VK_RETURN);
    EXPECT_TRUE(byKeys.IsGone());
    program.Settle();
    EXPECT_EQ(CurrentTitle(), "Volume");
    const DialogDriver left(program, ID_OPEN_FILE);
    left.SelectRow(IDC_LIST, 1);
    program.Key(VK_ESCAPE);
    EXPECT_TRUE(left.IsGone());
    EXPECT_EQ(CurrentTitle(), "Volume");
}

TEST_F(FileDialogsTest, OpenFindsFilesCopiedSinceTheStart) {
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(CurrentTitle(), "(No file)");
    const DialogDriver empty(program, ID_OPEN_FILE);
    EXPECT_EQ(empty.Entries(IDC_CATEGORY), (Texts{"- All -", "- Other Text References -"}));
    EXPECT_EQ(empty.RowCount(IDC_LIST), 0);
    EXPECT_EQ(empty.Answer(IDOK), "Open File: Please select a file from the list");
    EXPECT_TRUE(empty.Cancel());
    SaveConversionFile(program, u"Copied", {{u"a"}});
    const DialogDriver dialog(program, ID_OPEN_FILE);
    EXPECT_EQ(Titles(dialog), (Texts{"Copied"}));
    dialog.TapRow(IDC_LIST, 0);
    EXPECT_TRUE(dialog.IsGone());
    program.Settle();
    EXPECT_EQ(CurrentTitle(), "Copied");
}

TEST_F(FileDialogsTest, OpenAddsNoCategoryThatTheBoxFindsAlready) {
    SaveConversionFile(program, u"A", {{u"a"}});
    SaveConversionFile(program, u"B", {{u"b"}});
    SaveConversionFile(program, u"C", {{u"c"}});
    program.StoreRecentFiles({u"A.cnv", u"B.cnv", u"C.cnv"});
    ASSERT_TRUE(program.Start());
    program.Ask([](CVelmFrame& frame) {
        frame.Catalog().documents[0]->category = u"Money and tax";
        frame.Catalog().documents[1]->category = u"Money";
        frame.Catalog().documents[2]->category = u"MONEY AND TAX";
    });
    const DialogDriver dialog(program, ID_OPEN_FILE);
    EXPECT_EQ(dialog.Entries(IDC_CATEGORY), (Texts{"- All -", "Money and tax", "- Other Text References -"}));
    EXPECT_EQ(Titles(dialog), (Texts{"A"})) << "files are told apart exactly";
}

TEST_F(FileDialogsTest, OpenFollowsItsSize) {
    Start();
    const DialogDriver dialog(program, ID_OPEN_FILE);
    for (const int width : {160, 240, 400}) {
        program.Resize(Scaled(width), Scaled(300));
        const RECT list = PlaceOf(dialog.Control(IDC_LIST));
        const RECT box = PlaceOf(dialog.Control(IDC_CATEGORY));
        RECT client{};
        GetClientRect(dialog.Window(), &client);
        EXPECT_EQ(list.right, client.right);
        EXPECT_EQ(box.right, client.right - Scaled(10));
        const LONG listWidth = list.right - list.left;
        const auto column = [&](WPARAM index) {
            return SendMessageW(dialog.Control(IDC_LIST), LVM_GETCOLUMNWIDTH, index, 0);
        };
        EXPECT_EQ(column(0), 2 * listWidth / 3 - Scaled(14));
        EXPECT_EQ(column(1), listWidth / 3);
    }
}

TEST_F(FileDialogsTest, PropertiesChangeTitleAndCategoryOnly) {
    Start();
    const auto before = ReadBytes(program, u"Weight.cnv");
    {
        const DialogDriver dialog(program, ID_PROPERTIES);
        EXPECT_EQ(dialog.Caption(), "File Properties");
        EXPECT_EQ(dialog.Entries(IDC_CATEGORY), (Texts{"Home"}));
        EXPECT_EQ(dialog.Text(IDC_FILE_NAME), "Weight");
        EXPECT_NE(GetWindowLongPtrW(dialog.Control(IDC_FILE_NAME), GWL_STYLE) & ES_READONLY, 0);
        dialog.SetText(IDC_FILE_TITLE, "changed");
        EXPECT_TRUE(dialog.Cancel());
        EXPECT_EQ(ReadBytes(program, u"Weight.cnv"), before);
    }
    const DialogDriver dialog(program, ID_PROPERTIES);
    dialog.SetText(IDC_FILE_TITLE, "");
    EXPECT_EQ(dialog.Answer(IDOK), "File Properties: Please enter title text");
    dialog.SetText(IDC_FILE_TITLE, std::string(128, 't'));
    dialog.SetText(IDC_CATEGORY, "Kitchen");
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(CurrentTitle(), std::string(127, 't'));
    EXPECT_TRUE(program.Close());
    const auto document = LoadFile(program, u"Weight.cnv");
    EXPECT_EQ(document->category, u"Kitchen");
    EXPECT_EQ(document->title.size(), 127U);
    EXPECT_FALSE(document->updatedText.empty()) << "edits are stamped";
}

TEST_F(FileDialogsTest, NewFilesGetNamesOfTheirOwn) {
    Start();
    for (const char* name : {"Length_new", "Length_new_new"}) {
        const DialogDriver dialog(program, ID_NEW_CONVERSION_FILE);
        EXPECT_EQ(dialog.Caption(), "New File");
        EXPECT_EQ(dialog.Text(IDC_FILE_NAME), "");
        EXPECT_EQ(dialog.Answer(IDOK), "File Properties: Please enter title text");
        dialog.SetText(IDC_FILE_TITLE, "Length");
        EXPECT_TRUE(dialog.Ok());
        EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return ToUtf8(frame.Document()->fileName); }), name);
        EXPECT_FALSE(ReadBytes(program, FromUtf8(name) + u".cnv").empty()) << "the file is written at once";
    }
    const DialogDriver calculation(program, ID_NEW_CALCULATION_FILE);
    calculation.SetText(IDC_FILE_TITLE, "Length");
    EXPECT_TRUE(calculation.Ok());
    EXPECT_FALSE(ReadBytes(program, u"Length.cal").empty()) << "another kind is another file";
    const DialogDriver left(program, ID_NEW_CALCULATION_FILE);
    left.SetText(IDC_FILE_TITLE, "Nothing");
    EXPECT_TRUE(left.Cancel());
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.Catalog().documents.size(); }), 6U);
}

TEST_F(FileDialogsTest, NewFilesHaveNamesThatEverySystemTakes) {
    Start();
    WriteBytes(program, u"Unreadable.cnv", "not a data file");
    const DialogDriver dialog(program, ID_NEW_CONVERSION_FILE);
    dialog.SetText(IDC_FILE_TITLE, "Feet/Inches");
    const auto refusal = [](const std::string& name) {
        return "New File: \"" + name +
               "\" cannot be the name of a file. A file name has none of the characters \\ / : * ? \" < > |, does "
               "not end with a dot or a space, and is no name of a device such as CON.";
    };
    EXPECT_EQ(dialog.Answer(IDOK), refusal("Feet/Inches")) << "the title stands for an empty name";
    for (const std::string name : {"a:b", "what?", "end.", "end ", "con", "a\tb"}) {
        dialog.SetText(IDC_FILE_NAME, name);
        EXPECT_EQ(dialog.Answer(IDOK), refusal(name));
    }
    dialog.SetText(IDC_FILE_NAME, "Unreadable");
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(ReadBytes(program, u"Unreadable.cnv"), "not a data file") << "no file is written over";
    EXPECT_FALSE(ReadBytes(program, u"Unreadable_new.cnv").empty());

    const std::string longest(63, 'n');
    const DialogDriver first(program, ID_NEW_CONVERSION_FILE);
    first.SetText(IDC_FILE_TITLE, longest + "1");
    EXPECT_TRUE(first.Ok());
    const DialogDriver second(program, ID_NEW_CONVERSION_FILE);
    second.SetText(IDC_FILE_TITLE, longest + "2");
    EXPECT_EQ(second.Answer(IDOK),
              "New File: There is a file \"" + longest + "\" already. Please enter another file name.");
    EXPECT_TRUE(second.Cancel());
}

}  // namespace
}  // namespace velm::test
