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

constexpr int MESSAGE_TEXT = 0xFFFF;

/// The text without the marks of access keys and without what stands behind a tab.
std::string TextAt(HMENU menu, UINT position) {
    std::array<wchar_t, 256> text{};
    GetMenuStringW(menu, position, text.data(), static_cast<int>(text.size()), MF_BYPOSITION);
    const std::string plain = std::regex_replace(ToUtf8(FromWide(text.data())), std::regex("&(.)"), "$1");
    return plain.substr(0, plain.find('\t'));
}

/// The topmost visible window of a thread that is of a class; null when there is none.
HWND TopWindow(DWORD thread, const char* className) {
    std::pair<const char*, HWND> search(className, nullptr);
    const auto isFound = [](HWND window, LPARAM address) {
        auto& [name, found] = *reinterpret_cast<std::pair<const char*, HWND>*>(address);
        found = IsWindowVisible(window) && ClassOf(window) == name ? window : nullptr;
        return found == nullptr ? TRUE : FALSE;
    };
    EnumThreadWindows(thread, isFound, reinterpret_cast<LPARAM>(&search));
    return search.second;
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

std::string ClassOf(HWND window) {
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return ToUtf8(FromWide(name.data()));
}

std::optional<OpenMenu> TopMenu(DWORD thread) {
    const HWND window = TopWindow(thread, "#32768");
    const LRESULT menu = window == nullptr ? 0 : SendMessageW(window, MN_GETHMENU, 0, 0);
    return menu == 0 ? std::nullopt : std::optional(OpenMenu(window, reinterpret_cast<HMENU>(menu)));
}

std::optional<OpenMenu> WaitForMenu(DWORD thread) {
    return WaitUntil([thread] { return TopMenu(thread); });
}

HWND TopDialog(DWORD thread) {
    return TopWindow(thread, "#32770");
}

HWND WaitForDialog(DWORD thread, HWND below) {
    return WaitUntil([&] {
        const HWND dialog = TopDialog(thread);
        return dialog == below ? nullptr : dialog;
    });
}

}  // namespace velm::test
