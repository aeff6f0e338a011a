#include <gtest/gtest.h>

#include "resource.h"
#include "support/files.h"
#include "support/running_program.h"

namespace velm::test {
namespace {

TEST(SelectFile, LeavesAFileThatCannotBeRead) {
    RunningProgram program;
    SaveConversionFile(program, u"Length", {{u"meters"}});
    SaveConversionFile(program, u"Area", {{u"ares"}});
    program.StoreRecentFiles({u"Length.cnv", u"Area.cnv"});
    ASSERT_TRUE(program.Start());
    WriteBytes(program, u"Area.cnv", "broken since it was listed");
    program.Command(ID_QUICK_FILE_FIRST + 1);
    program.Settle();
    for (const int command : {ID_SAVE, ID_QUICK_FILE_FIRST + 1}) {
        program.Command(static_cast<WORD>(command));
        const auto box = program.WaitForMessageBox();
        ASSERT_TRUE(box);
        EXPECT_NE(box->Text().find("What it holds could not be read."), std::string::npos) << box->Text();
        EXPECT_TRUE(box->Press(IDOK));
    }
    EXPECT_TRUE(program.Eventually([](CVelmFrame& frame) { return frame.TitleButton().Text() == u"Length"; }));
    EXPECT_EQ(ReadBytes(program, u"Area.cnv"), "broken since it was listed");
}

}  // namespace
}  // namespace velm::test
