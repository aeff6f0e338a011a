#include <gtest/gtest.h>

#include "app/display_scale.h"
#include "resource.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

class FileDialogsTest : public ProgramTest {
protected:
    /// On three conversion files: Weight and Length, both "Home", and Volume without a category.
    void Start() {
        SaveConversionFile(program, u"Length", {{u"meters"}, {u"feet", 3.28084}});
        SaveConversionFile(program, u"Volume", {{u"liters"}});
        SaveConversionFile(program, u"Weight", {{u"grams"}, {u"pounds", 0.0022}, {u"ounces", 0.035}});
        program.StoreRecentFiles({u"Weight.cnv", u"Length.cnv", u"Volume.cnv"});
        ASSERT_TRUE(program.Start());
        SetCategories({u"Home", u"Home"});
    }

    void SetCategories(const std::vector<CVelmString>& categories) {
        program.Ask([&](CVelmFrame& frame) {
            for (std::size_t i = 0; i < categories.size(); ++i) {
                frame.Catalog().documents[i]->category = categories[i];
            }
        });
    }
};

TEST_F(FileDialogsTest, OpenListsFilesByCategory) {
    Start();
    const DialogDriver dialog(program, ID_OPEN_FILE);
    EXPECT_EQ(dialog.Caption(), "Open File");
    EXPECT_EQ(dialog.MenuBar(), (Texts{"  OK   ", " Cancel "}));
    EXPECT_EQ(dialog.Entries(IDC_CATEGORY), (Texts{"- All -", "Home", "- Other Text References -"}));
    EXPECT_EQ(dialog.Text(IDC_CATEGORY), "Home") << "the category of the file that is open";
    EXPECT_EQ(dialog.Rows(IDC_LIST), (Texts{"Weight", "Length"})) << "in the order of last use";
    EXPECT_EQ(dialog.RowText(IDC_LIST, 0, 1), "3 units");
    EXPECT_EQ(dialog.RowText(IDC_LIST, 1, 1), "2 units") << "of a file that is not loaded";
    dialog.Choose(IDC_CATEGORY, 0);
    EXPECT_EQ(dialog.Rows(IDC_LIST), (Texts{"Weight", "Length", "Volume"}));
    for (const int width : {160, 400}) {
        program.Resize(Scaled(width), Scaled(300));
        const int listWidth = Width(ClientOf(dialog.Window()));
        EXPECT_EQ(PlaceOf(dialog.Control(IDC_LIST)).right, listWidth);
        EXPECT_EQ(PlaceOf(dialog.Control(IDC_CATEGORY)).right, listWidth - Scaled(10));
        EXPECT_EQ(dialog.Send(IDC_LIST, LVM_GETCOLUMNWIDTH, 0), 2 * listWidth / 3 - Scaled(14));
        EXPECT_EQ(dialog.Send(IDC_LIST, LVM_GETCOLUMNWIDTH, 1), listWidth / 3);
    }
    EXPECT_EQ(dialog.Answer(IDOK), "Open File: Please select a file from the list");
    dialog.SelectRow(IDC_LIST, 2);
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(Title(), "Volume");
}

TEST_F(FileDialogsTest, OpenTakesATapOrALetterAndEnter) {
    ASSERT_TRUE(program.Start());
    const DialogDriver empty(program, ID_OPEN_FILE);
    EXPECT_EQ(empty.Entries(IDC_CATEGORY), (Texts{"- All -", "- Other Text References -"}));
    EXPECT_EQ(empty.Rows(IDC_LIST), Texts{});
    EXPECT_EQ(empty.Answer(IDOK), "Open File: Please select a file from the list");
    EXPECT_TRUE(empty.Cancel());
    for (const CVelmStringView title : {u"Apples", u"Melons", u"Pears"}) {
        SaveConversionFile(program, title, {{u"a"}});  // after the start: the dialog finds it
    }
    const DialogDriver byTap(program, ID_OPEN_FILE);
    byTap.TapRow(IDC_LIST, 1);
    EXPECT_BECOMES(Title(), "Melons");
    const DialogDriver byKeys(program, ID_OPEN_FILE);
    Do("type p");
    EXPECT_TRUE(byKeys.EndsWith(VK_RETURN));
    EXPECT_EQ(Title(), "Pears");
    const DialogDriver left(program, ID_OPEN_FILE);
    left.SelectRow(IDC_LIST, 1);
    EXPECT_TRUE(left.EndsWith(VK_ESCAPE));
    EXPECT_EQ(Title(), "Pears");
    // The box finds a category that begins an entry, in any letter case; the files are told apart exactly.
    SetCategories({u"Money and tax", u"Money", u"MONEY AND TAX"});
    const DialogDriver dialog(program, ID_OPEN_FILE);
    EXPECT_EQ(dialog.Entries(IDC_CATEGORY), (Texts{"- All -", "Money and tax", "- Other Text References -"}));
    EXPECT_EQ(dialog.Rows(IDC_LIST), Texts{"Pears"});
}

TEST_F(FileDialogsTest, PropertiesChangeTitleAndCategoryOnly) {
    Start();
    const Bytes before = ReadBytes(program, u"Weight.cnv");
    const DialogDriver left(program, ID_PROPERTIES);
    EXPECT_EQ(left.Caption(), "File Properties");
    EXPECT_EQ(left.Entries(IDC_CATEGORY), Texts{"Home"});
    EXPECT_EQ(left.Text(IDC_FILE_NAME), "Weight");
    EXPECT_NE(GetWindowLongPtrW(left.Control(IDC_FILE_NAME), GWL_STYLE) & ES_READONLY, 0);
    left.Fill({{IDC_FILE_TITLE, "changed"}, {IDC_CATEGORY, "changed"}});
    EXPECT_TRUE(left.Cancel());
    EXPECT_EQ(ReadBytes(program, u"Weight.cnv"), before);
    const DialogDriver dialog(program, ID_PROPERTIES);
    dialog.Fill({{IDC_FILE_TITLE, ""}});
    EXPECT_EQ(dialog.Answer(IDOK), "File Properties: Please enter title text");
    dialog.Fill({{IDC_FILE_TITLE, std::string(128, 't')}, {IDC_CATEGORY, "Kitchen"}});
    EXPECT_TRUE(dialog.Ok());
    EXPECT_EQ(Title(), std::string(127, 't'));
    const auto saved = LoadFile(program, u"Weight.cnv");
    EXPECT_EQ(saved->category, u"Kitchen");
    EXPECT_EQ(saved->title.size(), 127U);
    EXPECT_FALSE(saved->updatedText.empty()) << "edits are stamped";
}

TEST_F(FileDialogsTest, NewOffersToMakeAMissingDataFolder) {
    const CVelmString folder = program.ProgramFolder() + u"not\\yet\\";
    program.StoreSettings([&](CVelmSettings& settings) { SetField(settings.dataFolder, folder); });
    ASSERT_TRUE(program.Start());
    for (const int answer : {IDNO, IDYES}) {
        program.Command(ID_NEW_CONVERSION_FILE);
        EXPECT_EQ(program.Answer(answer),
                  "? New File: The data folder \"" + ToUtf8(folder) + "\" does not exist. Do you want to make it?");
    }
    const DialogDriver dialog(program, program.WaitForDialog());
    dialog.Fill({{IDC_FILE_TITLE, "Own"}});
    EXPECT_TRUE(dialog.Ok());
    EXPECT_TRUE(program.Folder().Contains(u"not\\yet\\Own.cnv"));
}

TEST_F(FileDialogsTest, NewFilesGetNamesOfTheirOwn) {
    Start();
    WriteBytes(program, u"Unreadable.cnv", "not a data file");
    struct Case {
        int command;
        std::string title;
        std::string name;
        CVelmStringView file;
    };
    const std::string longest(63, 'n');
    for (const Case& row : {Case{ID_NEW_CONVERSION_FILE, "Length", "", u"Length_new.cnv"},
                            {ID_NEW_CONVERSION_FILE, "Length", "", u"Length_new_new.cnv"},
                            {ID_NEW_CALCULATION_FILE, "Length", "", u"Length.cal"},
                            {ID_NEW_CONVERSION_FILE, "A title", "Unreadable", u"Unreadable_new.cnv"},
                            {ID_NEW_CONVERSION_FILE, longest + "1", "", {}}}) {
        const DialogDriver dialog(program, row.command);
        EXPECT_EQ(dialog.Caption(), "New File");
        EXPECT_EQ(dialog.Answer(IDOK), "File Properties: Please enter title text");
        dialog.Fill({{IDC_FILE_TITLE, row.title}, {IDC_FILE_NAME, row.name}});
        EXPECT_TRUE(dialog.Ok());
        EXPECT_EQ(Title(), row.title);
        EXPECT_TRUE(row.file.empty() || !ReadBytes(program, row.file).empty()) << "the file is written at once";
    }
    EXPECT_EQ(ReadBytes(program, u"Unreadable.cnv").size(), 15U) << "no file is written over";
    EXPECT_FALSE(ReadBytes(program, FromUtf8(longest) + u".cnv").empty());

    const DialogDriver dialog(program, ID_NEW_CONVERSION_FILE);
    dialog.Fill({{IDC_FILE_TITLE, longest + "2"}});
    EXPECT_EQ(dialog.Answer(IDOK),
              "New File: There is a file \"" + longest + "\" already. Please enter another file name.");
    dialog.Fill({{IDC_FILE_TITLE, "Feet/Inches"}});  // the title stands for an empty name
    for (const std::string name : {"", "a:b", "what?", "end.", "end ", "con", "a\tb"}) {
        dialog.Fill({{IDC_FILE_NAME, name}});
        EXPECT_EQ(dialog.Answer(IDOK),
                  "New File: \"" + (name.empty() ? "Feet/Inches" : name) +
                      "\" cannot be the name of a file. A file name has none of the characters \\ / : * ? \" < > |, "
                      "does not end with a dot or a space, and is no name of a device such as CON.");
    }
    EXPECT_TRUE(dialog.Cancel());
    EXPECT_EQ(program.Ask([](CVelmFrame& frame) { return frame.Catalog().documents.size(); }), 8U);
}

}  // namespace
}  // namespace velm::test
