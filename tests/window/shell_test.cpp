#include "pocketpc/shell.h"

#include <gtest/gtest.h>

#include <array>

#include "app/display_scale.h"
#include "pocketpc/command_bar.h"
#include "resource.h"
#include "support/running_program.h"
#include "support/test_window.h"

namespace velm::test {
namespace {

class ShellTest : public testing::Test {
protected:
    ShellTest() { EXPECT_TRUE(SHInitExtraControls()); }

    HWND Add(const wchar_t* className) {
        return CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, window_.Handle(), nullptr,
                               nullptr, nullptr);
    }

    TestWindow window_;
};

TEST_F(ShellTest, APenHeldInPlaceIsAGestureThatEndsWithAMoveOrARelease) {
    std::vector<UINT> messages;
    window_.handler = [&messages](UINT message, WPARAM, LPARAM) {
        messages.push_back(message);
        return false;
    };
    const auto seen = [&](UINT message) { return std::count(messages.begin(), messages.end(), message); };
    const SHRGINFO info{sizeof(info), window_.Handle(), {20, 20}, SHRG_RETURNCMD};
    Pump();
    PostMessageW(window_.Handle(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(24, 16));
    InvalidateRect(window_.Handle(), nullptr, TRUE);
    messages.clear();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(SHRecognizeGesture(&info), static_cast<DWORD>(GN_CONTEXTMENU)) << "a trembling hand holds in place too";
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(seen(WM_PAINT), 1) << "the window paints meanwhile";
    for (const auto& [message, place] : {std::pair{UINT{WM_LBUTTONUP}, MAKELPARAM(20, 20)},
                                         {UINT{WM_MOUSEMOVE}, MAKELPARAM(20, 25)},
                                         {UINT{WM_MOUSEMOVE}, MAKELPARAM(15, 20)}}) {
        Pump();
        messages.clear();
        PostMessageW(window_.Handle(), message, 0, place);
        EXPECT_EQ(SHRecognizeGesture(&info), 0U);
        EXPECT_EQ(seen(message), 0);
        Pump();
        EXPECT_EQ(seen(message), 1) << "what ended the gesture is still to be handled";
    }
}

TEST_F(ShellTest, TheInputPanelsStateIsThatOfEachTopLevelWindow) {
    const TestWindow other;
    const HWND edit = Add(L"EDIT");
    const HWND button = Add(L"BUTTON");
    EXPECT_EQ(SHGetSipPreference(window_.Handle()), SIP_DOWN);
    EXPECT_TRUE(SHSipPreference(edit, SIP_UP));
    EXPECT_EQ(SHGetSipPreference(window_.Handle()), SIP_UP);
    EXPECT_TRUE(SHSipPreference(window_.Handle(), SIP_UNCHANGED));
    EXPECT_EQ(SHGetSipPreference(edit), SIP_UP);
    EXPECT_EQ(SHGetSipPreference(other.Handle()), SIP_DOWN);
    EXPECT_FALSE(SHSipPreference(nullptr, SIP_UP));
    EXPECT_NE(Add(L"SIPPREF"), nullptr);
    for (const auto& [control, state] : {std::pair{edit, SIP_UP}, {button, SIP_DOWN}, {edit, SIP_UP}}) {
        SetFocus(control);
        EXPECT_EQ(SHGetSipPreference(window_.Handle()), state) << "it follows the focus";
    }
}

TEST_F(ShellTest, AFullScreenDialogCoversItsOwnerAndFollowsIt) {
    const HWND dialog = CreateWindowExW(0, L"#32770", L"", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, window_.Handle(),
                                        nullptr, nullptr, nullptr);
    SHINITDLGINFO info{SHIDIM_FLAGS, dialog, SHIDIF_SIZEDLGFULLSCREEN};
    ASSERT_TRUE(SHInitDialog(&info));
    for (const RECT& place : {RECT{40, 40, 240, 140}, RECT{100, 60, 260, 220}}) {
        SetWindowPos(window_.Handle(), nullptr, place.left, place.top, Width(place), Height(place), SWP_NOZORDER);
        RECT covered{};
        GetWindowRect(dialog, &covered);
        EXPECT_EQ(Words(covered), Words(place));
    }
    DestroyWindow(dialog);
    SetWindowPos(window_.Handle(), nullptr, 0, 0, 200, 100, SWP_NOZORDER);
}

TEST_F(ShellTest, AMenuBarLiesAlongTheBottomAndHasAButtonForEachEntry) {
    SHMENUBARINFO info{sizeof(info), window_.Handle(), 12345, GetModuleHandleW(nullptr), nullptr};
    EXPECT_FALSE(SHCreateMenuBar(&info)) << "there is no such menu";
    info.nToolBarId = IDM_CONVERSIONS;
    ASSERT_TRUE(SHCreateMenuBar(&info));
    const HWND titles = CommandBar_GetTitles(info.hwndMB);
    EXPECT_EQ(SendMessageW(titles, TB_BUTTONCOUNT, 0, 0), 3);
    EXPECT_EQ(SendMessageW(titles, TB_COMMANDTOINDEX, ID_DELETE_CONVERSION, 0), 1);
    std::array<wchar_t, 32> text{};
    SendMessageW(titles, TB_GETBUTTONTEXTW, IDOK, reinterpret_cast<LPARAM>(text.data()));
    EXPECT_STREQ(text.data(), L" Done ");
    RECT place{};
    SendMessageW(titles, TB_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&place));
    SendMessageW(titles, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.left + 5, place.top + 5));
    SendMessageW(titles, WM_LBUTTONUP, 0, MAKELPARAM(place.left + 5, place.top + 5));
    Pump();
    ASSERT_EQ(window_.commands.size(), 1U);
    EXPECT_EQ(window_.commands.front().id, IDOK);
    for (const SIZE& size : {SIZE{200, 100}, SIZE{160, 160}, SIZE{500, 300}}) {
        SetWindowPos(window_.Handle(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER | SWP_NOMOVE);
        const LONG top = size.cy - Scaled(26);
        EXPECT_EQ(Words(PlaceOf(info.hwndMB)), Words(RECT{0, top, size.cx, size.cy}));
        EXPECT_EQ(CommandBar_AreaAbove(window_.Handle(), info.hwndMB).bottom, top);
    }
}

}  // namespace
}  // namespace velm::test
