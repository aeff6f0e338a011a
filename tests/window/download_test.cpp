#include <gtest/gtest.h>

#include "resource.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

using DownloadTest = ProgramTest;

TEST_F(DownloadTest, EscapeStopsItWhileTheWindowStaysAlive) {
    Do("serve /list.txt VLMLST|$SERVER/silent.txt|$SERVER/silent.txt|; serve /silent.txt");
    Do("file Currency = dollars|USD; start; open OPTIONS; fill UPDATE_URL $SERVER/list.txt; ok; close; start");
    program.Command(ID_DOWNLOAD);
    EXPECT_BECOMES(Title(), "Downloading 2 of 3");
    for (const HWND window : {program.Frame(), program.List()}) {
        InvalidateRect(window, nullptr, TRUE);
        EXPECT_TRUE(WaitUntil([window] { return !GetUpdateRect(window, nullptr, FALSE); })) << "it repaints meanwhile";
    }
    program.Type("5");
    for (const int key : {VK_DELETE, VK_ESCAPE}) {
        PostMessageW(program.List(), WM_KEYDOWN, key, 1);
    }
    EXPECT_EQ(program.Answer(), "x Download: Velmora could NOT complete downloading due to a system error: stopped");
    EXPECT_EQ(Title(), "Currency");
    EXPECT_EQ(program.TopDialog(), nullptr) << "keys of the meantime are dropped";
    program.Command(ID_DOWNLOAD);
    EXPECT_BECOMES(Title(), "Downloading 2 of 3");
    PostMessageW(program.List(), WM_SYSKEYDOWN, VK_F4, 1);
    EXPECT_TRUE(WaitUntil([this] { return !IsWindow(program.Frame()); })) << "closing the window stops it too";
}

}  // namespace
}  // namespace velm::test
