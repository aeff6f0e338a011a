#include <gtest/gtest.h>

#include "support/running_program.h"

namespace velm::test {
namespace {

TEST(Handheld, FrameFillsTheScreenWithoutACaption) {
    ASSERT_EQ(GetSystemMetrics(SM_CXSCREEN), 240) << "the test is started without its screen";
    RunningProgram program;
    ASSERT_TRUE(program.Start());
    RECT frame{};
    GetWindowRect(program.Frame(), &frame);
    const RECT screen{0, 0, 240, 320};
    EXPECT_TRUE(EqualRect(&frame, &screen));
    RECT client{};
    GetClientRect(program.Frame(), &client);
    EXPECT_TRUE(EqualRect(&client, &screen));
}

}  // namespace
}  // namespace velm::test
