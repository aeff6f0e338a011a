#include <gtest/gtest.h>

#include "app/display_scale.h"
#include "resource.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

using FileDialogsTest = ProgramTest;

TEST_F(FileDialogsTest, OpenFollowsItsSize) {
    StartLength();
    const DialogDriver dialog(program, ID_OPEN_FILE);
    for (const int width : {160, 400}) {
        program.Resize(Scaled(width), Scaled(300));
        const int listWidth = Width(ClientOf(dialog.Window()));
        EXPECT_EQ(PlaceOf(dialog.Control(IDC_LIST)).right, listWidth);
        EXPECT_EQ(PlaceOf(dialog.Control(IDC_CATEGORY)).right, listWidth - Scaled(10));
        EXPECT_EQ(dialog.Send(IDC_LIST, LVM_GETCOLUMNWIDTH, 0), 2 * listWidth / 3 - Scaled(14));
        EXPECT_EQ(dialog.Send(IDC_LIST, LVM_GETCOLUMNWIDTH, 1), listWidth / 3);
    }
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
