#include "support/popups.h"

#include <array>
#include <regex>
#include <utility>

#include "platform/wide_text_win32.h"
#include "support/table.h"
#include "support/waiting.h"
#include "ui/window_text.h"

namespace velm::test {
namespace {

constexpr const wchar_t* MENU_CLASS = L"#32768";
constexpr const wchar_t* DIALOG_CLASS = L"#32770";
constexpr int MESSAGE_TEXT = 0xFFFF;

/// The text without the marks of access keys and without what stands behind a tab.
std::string TextAt(HMENU menu, UINT position) {
    std::array<wchar_t, 256> text{};
    GetMenuStringW(menu, position, text.data(), static_cast<int>(text.size()), MF_BYPOSITION);
    const std::string plain = std::regex_replace(ToUtf8(FromWide(text.data())), std::regex("&(.)"), "$1");
    return plain.substr(0, plain.find('\t'));
}

}  // namespace

std::string OpenMenu::Words() const {
    std::vector<std::string> entries;
    for (UINT i = 0; i < static_cast<UINT>(GetMenuItemCount(menu_)); ++i) {
        const UINT state = GetMenuState(menu_, i, MF_BYPOSITION);
        const bool disabled = (state & (MF_GRAYED | MF_DISABLED)) != 0;
        const std::string text = (disabled ? "(" : "") + TextAt(menu_, i) + (disabled ? ")" : "");
        entries.push_back((state & MF_SEPARATOR) != 0 ? "-" : ((state & MF_CHECKED) != 0 ? "*" : "") + text);
    }
    return Join(entries);
}

bool OpenMenu::Choose(const std::string& text) const {
    for (UINT i = 0; i < static_cast<UINT>(GetMenuItemCount(menu_)); ++i) {
        RECT area{};
        if (TextAt(menu_, i) == text && GetMenuItemRect(window_, menu_, i, &area)) {
            const LPARAM place = MAKELPARAM((area.left + area.right) / 2, (area.top + area.bottom) / 2);
            PostMessageW(window_, WM_LBUTTONDOWN, MK_LBUTTON, place);  // an open menu takes places of the screen
            PostMessageW(window_, WM_LBUTTONUP, 0, place);
            return WaitUntil([this] { return !IsWindowVisible(window_); });
        }
    }
    return false;
}

std::string WordsOfBox(HWND box) {
    // The icon's identifier is not the same on every system.
    HICON shown = nullptr;
    for (HWND part = nullptr; (part = FindWindowExW(box, part, L"Static", nullptr)) != nullptr;) {
        if ((GetWindowLongPtrW(part, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) {
            shown = reinterpret_cast<HICON>(SendMessageW(part, STM_GETICON, 0, 0));
        }
    }
    std::string words = ToUtf8(WindowText(box) + u": " + WindowText(GetDlgItem(box, MESSAGE_TEXT)));
    for (const auto& [icon, sign] : {std::pair{IDI_QUESTION, "? "}, {IDI_INFORMATION, "i "}, {IDI_ERROR, "x "}}) {
        if (shown != nullptr && shown == LoadIconW(nullptr, icon)) {
            words.insert(0, sign);
        }
    }
    return words;
}

bool PressInBox(HWND box, int button) {
    if (GetDlgItem(box, button) == nullptr) {
        return false;
    }
    PostMessageW(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0);
    return WaitUntil([box] { return !IsWindow(box); });
}

std::vector<HWND> ThreadWindows(DWORD thread, const wchar_t* className) {
    std::vector<HWND> windows;
    const auto collect = [](HWND window, LPARAM list) {
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
    };
    EnumThreadWindows(thread, collect, reinterpret_cast<LPARAM>(&windows));
    std::erase_if(windows, [className](HWND window) {
        std::array<wchar_t, 64> name{};
        GetClassNameW(window, name.data(), static_cast<int>(name.size()));
        return !IsWindowVisible(window) || lstrcmpW(name.data(), className) != 0;
    });
    return windows;
}

std::optional<OpenMenu> WaitForMenu(DWORD thread) {
    return WaitUntil([thread]() -> std::optional<OpenMenu> {
        const std::vector<HWND> windows = ThreadWindows(thread, MENU_CLASS);
        const LRESULT menu = windows.empty() ? 0 : SendMessageW(windows.front(), MN_GETHMENU, 0, 0);
        return menu == 0 ? std::nullopt : std::optional(OpenMenu(windows.front(), reinterpret_cast<HMENU>(menu)));
    });
}

HWND WaitForDialog(DWORD thread, HWND below) {
    return WaitUntil([&]() -> HWND {
        const std::vector<HWND> windows = ThreadWindows(thread, DIALOG_CLASS);
        return windows.empty() || windows.front() == below ? nullptr : windows.front();
    });
}

}  // namespace velm::test
