#include <gtest/gtest.h>

#include "platform/wide_text_win32.h"
#include "resource.h"
#include "support/holdings.h"
#include "support/running_program.h"
#include "ui/display_scale.h"

namespace velm::test {
namespace {

/// A leak of 200 bytes a switch would come to twice as much.
constexpr std::size_t WORKING_SET_TOLERANCE = std::size_t{1} << 20;

/// Chooses the other one of two files from the quick file menu again and again, and lets everything be painted.
void Switch(RunningProgram& program, int times) {
    for (int i = 0; i < times; ++i) {
        program.Ask([](CVelmFrame& frame) {
            const CVelmDocument* const before = frame.Document();
            SendMessageW(frame.Handle(), WM_COMMAND, ID_QUICK_FILE_FIRST + 1, 0);
            RedrawWindow(frame.Handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
            EXPECT_NE(frame.Document(), before);
        });
    }
    program.Settle();
}

TEST(EnduranceTest, TenThousandSwitchesLeaveNothingBehind) {
    RunningProgram program;
    for (const CVelmString name : {u"Length.cnv", u"TipCalc.cal"}) {
        ASSERT_TRUE(CopyFileW(Wide(FromUtf8(VELMORA_DATA_FOLDER "/") + name), Wide(program.DataFolder() + name), TRUE));
    }
    ASSERT_TRUE(program.Start());
    Switch(program, 100);
    const Holdings before = CountHoldings();
    {
        const CVelmMenu menu(CreatePopupMenu());
        const CVelmFont font = CreateProgramFont(12, false);
        const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        const Holdings more = CountHoldings();
        CloseHandle(event);
        EXPECT_GE(more.gdi, before.gdi + 1) << "what is held is not noticed";
        EXPECT_EQ(more.user, before.user + 1);
        EXPECT_EQ(more.handles, before.handles + 1);
    }
    Switch(program, 9900);
    const Holdings after = CountHoldings();
    std::cout << before << "; then " << after << "\n";
    EXPECT_LE(after.gdi, before.gdi);
    EXPECT_LE(after.user, before.user);
    EXPECT_LE(after.handles, before.handles);
    EXPECT_LE(after.workingSet, before.workingSet + WORKING_SET_TOLERANCE);
}

}  // namespace
}  // namespace velm::test
