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

}  // namespace
}  // namespace velm::test
