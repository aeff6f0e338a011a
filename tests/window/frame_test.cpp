#include <gtest/gtest.h>

#include "support/picture.h"
#include "support/program_test.h"
#include "ui/display_scale.h"
#include "ui/window_text.h"

namespace velm::test {
namespace {

constexpr COLORREF WHITE = RGB(255, 255, 255);

using FrameTest = ProgramTest;
using Handheld = ProgramTest;

TEST_F(Handheld, FrameFillsTheScreenWithoutACaption) {
    ASSERT_EQ(GetSystemMetrics(SM_CXSCREEN), 240) << "the test is started without its screen";
    ASSERT_TRUE(program.Start());
    EXPECT_EQ(Do("place frame"), "0,0 240,320");
    EXPECT_EQ(ClientOf(program.Frame()).bottom, 320);
}

TEST_F(FrameTest, OpensAsLargeAsAHandheldAndGoesDownToItsMinimumSize) {
    ASSERT_EQ(DisplayScale(), std::getenv("VELMORA_DPI") == std::string("192") ? 2 : 1);
    ASSERT_TRUE(program.Start());
    const RECT client = ClientOf(program.Frame());
    EXPECT_EQ(client.right, Scaled(240));
    EXPECT_EQ(client.bottom, Scaled(320));
    EXPECT_EQ(WindowText(program.Frame()), u"Velmora");
    EXPECT_TRUE(GetWindowLongPtrW(program.Frame(), GWL_STYLE) & WS_MAXIMIZEBOX);
    MINMAXINFO limits{};
    SendMessageW(program.Frame(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    const RECT frame = PlaceOf(program.Frame());
    EXPECT_EQ(limits.ptMinTrackSize.x, Width(frame) - Scaled(240 - 160));
    EXPECT_EQ(limits.ptMinTrackSize.y, Height(frame) - Scaled(320 - 160));
    const Picture picture = Picture::OfWindow(program.Frame());
    const int width = picture.Width();
    for (const RECT& blank : {RECT{0, 0, width, Scaled(2)}, RECT{0, Scaled(22), width, Scaled(24)},
                              RECT{width - Scaled(24), 0, width - Scaled(22), Scaled(24)}}) {
        EXPECT_TRUE(picture.IsAll(blank, WHITE)) << blank.left << ", " << blank.top;
    }
    for (const int icon : {Scaled(4), width - Scaled(20)}) {
        EXPECT_FALSE(picture.IsAll({icon, Scaled(4), icon + Scaled(16), Scaled(20)}, WHITE)) << "no icon at " << icon;
    }
}

TEST_F(FrameTest, ToolsHaveImagesOfTheScreensScaleAndFitOnAHandheld) {
    ASSERT_TRUE(program.Start());
    const HWND tools = program.Tools();
    const auto images = reinterpret_cast<HIMAGELIST>(SendMessageW(tools, TB_GETIMAGELIST, 0, 0));
    int width = 0;
    int height = 0;
    ImageList_GetIconSize(images, &width, &height);
    EXPECT_EQ(width, Scaled(16));
    EXPECT_EQ(height, Scaled(16));
    EXPECT_EQ(ImageList_GetImageCount(images), 6);
    RECT last{};
    SendMessageW(tools, TB_GETITEMRECT, 7, reinterpret_cast<LPARAM>(&last));
    EXPECT_LE(last.right + PlaceOf(tools).left, Scaled(240));
}

}  // namespace
}  // namespace velm::test
