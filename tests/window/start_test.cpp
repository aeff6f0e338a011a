#include <gtest/gtest.h>

#include <cstring>

#include "app/display_scale.h"
#include "app/single_instance.h"
#include "resource.h"
#include "support/program_test.h"

namespace velm::test {
namespace {

using StartTest = ProgramTest;

TEST_F(StartTest, TheSettingsAreWrittenByteForByte) {
    SaveConversionFile(program, u"Length", {{u"meters"}});
    SaveConversionFile(program, u"Area", {{u"ares"}});
    program.StoreRecentFiles({u"Area.cnv", u"Length.cnv"});
    ASSERT_TRUE(program.Start());
    Do("do QUICK_NEXT; do ROW_SIZE");
    program.Key('F', VK_MENU);
    const auto menu = program.WaitForMenu();
    EXPECT_TRUE(menu && menu->Choose("Exit"));
    EXPECT_TRUE(WaitUntil([this] { return !IsWindow(program.Frame()); }));
    ASSERT_TRUE(program.Close());
    const std::vector<std::byte> stored = program.StoredBytes();
    ASSERT_EQ(stored.size(), 900U);
    std::vector<std::byte> names(384);
    std::memcpy(names.data(), u"Length.cnv\0Area.cnv", 40);
    EXPECT_TRUE(std::equal(names.begin(), names.end(), stored.begin()));
    EXPECT_EQ(stored[896], std::byte{1});
}

TEST_F(StartTest, ASecondStartBringsTheFirstWindowToTheFrontAndEnds) {
    ASSERT_TRUE(program.Start());
    const CVelmSingleInstance first(L"Local\\Corvane.Velmora", FRAME_CLASS);
    ASSERT_TRUE(first.IsFirst());
    ShowWindow(program.Frame(), SW_MINIMIZE);
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process{};
    std::wstring path = TEXT(VELMORA_PROGRAM);
    ASSERT_TRUE(CreateProcessW(nullptr, path.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
    EXPECT_EQ(WaitForSingleObject(process.hProcess, 60000), WAIT_OBJECT_0);
    DWORD status = 1;
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    EXPECT_EQ(status, 0U);
    EXPECT_TRUE(WaitUntil([this] { return !IsIconic(program.Frame()) && GetForegroundWindow() == program.Frame(); }));
}

}  // namespace
}  // namespace velm::test
