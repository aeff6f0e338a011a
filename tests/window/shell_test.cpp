#include "pocketpc/shell.h"

#include <gtest/gtest.h>

#include "app/display_scale.h"
#include "pocketpc/command_bar.h"
#include "resource.h"
#include "support/running_program.h"
#include "support/test_window.h"

namespace velm::test {
namespace {

using namespace std::chrono_literals;

DWORD Gesture(const TestWindow& window) {
    const SHRGINFO info{sizeof(info), window.Handle(), {20, 20}, SHRG_RETURNCMD};
    return SHRecognizeGesture(&info);
}

TEST(Gesture, IsAContextMenuWhenThePenIsHeldInPlace) {
    const TestWindow window;
    PostMessageW(window.Handle(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(22, 19));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Gesture(window), GN_CONTEXTMENU) << "a trembling hand holds in place too";
    EXPECT_GE(std::chrono::steady_clock::now() - start, 500ms);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST(Gesture, EndsWithAMoveOrARelease) {
    TestWindow window;
    std::vector<UINT> pointer;
    window.handler = [&pointer](UINT message, WPARAM, LPARAM) {
        if (message == WM_LBUTTONUP || message == WM_MOUSEMOVE) {
            pointer.push_back(message);
        }
        return false;
    };
    for (const UINT message : {static_cast<UINT>(WM_LBUTTONUP), static_cast<UINT>(WM_MOUSEMOVE)}) {
        Pump();
        pointer.clear();
        PostMessageW(window.Handle(), message, 0, MAKELPARAM(20, 60));
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(Gesture(window), 0U);
        EXPECT_LT(std::chrono::steady_clock::now() - start, 400ms);
        Pump();
        ASSERT_FALSE(pointer.empty()) << "what ended the gesture is still to be handled";
        EXPECT_EQ(pointer.front(), message);
    }
}

TEST(Gesture, LetsTheWindowPaintMeanwhile) {
    TestWindow window;
    Pump();
    bool painted = false;
    window.handler = [&painted](UINT message, WPARAM, LPARAM) {
        painted = painted || message == WM_PAINT;
        return false;
    };
    InvalidateRect(window.Handle(), nullptr, TRUE);
    Gesture(window);
    EXPECT_TRUE(painted);
}

TEST(SoftInputPanel, KeepsTheStateOfEachTopLevelWindow) {
    const TestWindow window;
    const TestWindow other;
    const HWND child =
        CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 10, 10, window.Handle(), nullptr, nullptr, nullptr);
    EXPECT_EQ(SHGetSipPreference(window.Handle()), SIP_DOWN);
    EXPECT_TRUE(SHSipPreference(child, SIP_UP));
    EXPECT_EQ(SHGetSipPreference(window.Handle()), SIP_UP);
    EXPECT_TRUE(SHSipPreference(window.Handle(), SIP_UNCHANGED));
    EXPECT_EQ(SHGetSipPreference(child), SIP_UP);
    EXPECT_EQ(SHGetSipPreference(other.Handle()), SIP_DOWN);
    EXPECT_FALSE(SHSipPreference(nullptr, SIP_UP));
}

TEST(SoftInputPanel, FollowsTheFocusOfADialogsEditBoxes) {
    ASSERT_TRUE(SHInitExtraControls());
    const TestWindow window;
    const auto add = [&window](const wchar_t* className) {
        return CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, window.Handle(), nullptr,
                               nullptr, nullptr);
    };
    ASSERT_NE(add(L"SIPPREF"), nullptr);
    const HWND edit = add(L"EDIT");
    const HWND button = add(L"BUTTON");
    SetFocus(edit);
    EXPECT_EQ(SHGetSipPreference(window.Handle()), SIP_UP);
    SetFocus(button);
    EXPECT_EQ(SHGetSipPreference(window.Handle()), SIP_DOWN);
}

TEST(FullScreenDialog, CoversItsOwnerAndFollowsIt) {
    const TestWindow owner;
    const HWND dialog = CreateWindowExW(0, L"#32770", L"", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, owner.Handle(), nullptr,
                                        nullptr, nullptr);
    SHINITDLGINFO info{SHIDIM_FLAGS, dialog, SHIDIF_SIZEDLGFULLSCREEN};
    ASSERT_TRUE(SHInitDialog(&info));
    for (const RECT& place : {RECT{40, 40, 240, 140}, RECT{100, 60, 260, 220}}) {
        SetWindowPos(owner.Handle(), nullptr, place.left, place.top, Width(place), Height(place), SWP_NOZORDER);
        RECT covered{};
        GetWindowRect(dialog, &covered);
        EXPECT_TRUE(EqualRect(&covered, &place))
            << covered.left << ", " << covered.top << " to " << covered.right << ", " << covered.bottom;
    }
    DestroyWindow(dialog);
    SetWindowPos(owner.Handle(), nullptr, 0, 0, 200, 100, SWP_NOZORDER);
}

TEST(MenuBar, HasAButtonForEachEntryOfItsMenu) {
    ASSERT_TRUE(SHInitExtraControls());
    TestWindow window;
    SHMENUBARINFO info{sizeof(info), window.Handle(), IDM_CONVERSIONS, GetModuleHandleW(nullptr), nullptr};
    ASSERT_TRUE(SHCreateMenuBar(&info));
    const HWND titles = CommandBar_GetTitles(info.hwndMB);
    EXPECT_EQ(SendMessageW(titles, TB_BUTTONCOUNT, 0, 0), 3);
    EXPECT_EQ(SendMessageW(titles, TB_COMMANDTOINDEX, ID_DELETE_CONVERSION, 0), 1);
    EXPECT_EQ(SendMessageW(titles, TB_COMMANDTOINDEX, IDOK, 0), 2);
    std::array<wchar_t, 32> text{};
    SendMessageW(titles, TB_GETBUTTONTEXTW, IDOK, reinterpret_cast<LPARAM>(text.data()));
    EXPECT_STREQ(text.data(), L" Done ");

    RECT place{};
    SendMessageW(titles, TB_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&place));
    SendMessageW(titles, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.left + 5, place.top + 5));
    SendMessageW(titles, WM_LBUTTONUP, 0, MAKELPARAM(place.left + 5, place.top + 5));
    Pump();
    ASSERT_EQ(window.commands.size(), 1U);
    EXPECT_EQ(window.commands.front().id, IDOK);
}

TEST(MenuBar, LiesAlongTheBottomAtEverySize) {
    ASSERT_TRUE(SHInitExtraControls());
    const TestWindow window;
    SHMENUBARINFO info{sizeof(info), window.Handle(), IDM_DONE, GetModuleHandleW(nullptr), nullptr};
    ASSERT_TRUE(SHCreateMenuBar(&info));
    for (const SIZE& size : {SIZE{200, 100}, SIZE{160, 160}, SIZE{500, 300}}) {
        SetWindowPos(window.Handle(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER | SWP_NOMOVE);
        const RECT place = PlaceOf(info.hwndMB);
        const RECT expected{0, size.cy - Scaled(26), size.cx, size.cy};
        EXPECT_TRUE(EqualRect(&place, &expected)) << size.cx << " x " << size.cy;
        EXPECT_EQ(CommandBar_AreaAbove(window.Handle(), info.hwndMB).bottom, size.cy - Scaled(26));
    }
    SHMENUBARINFO missing{sizeof(missing), window.Handle(), 12345, GetModuleHandleW(nullptr), nullptr};
    EXPECT_FALSE(SHCreateMenuBar(&missing));
}

}  // namespace
}  // namespace velm::test
