#include "support/popups.h"

#include <array>
#include <utility>

#include "app/window_text.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

constexpr const wchar_t* MENU_CLASS = L"#32768";
constexpr const wchar_t* DIALOG_CLASS = L"#32770";
constexpr UINT MESSAGE_GET_MENU = 0x01E1;
constexpr int MESSAGE_TEXT = 0xFFFF;

struct Search {
    std::wstring className;
    std::vector<HWND> found;
};

BOOL CALLBACK Collect(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (IsWindowVisible(window) && search.className == name.data()) {
        search.found.push_back(window);
    }
    return TRUE;
}

/// The text without the marks of access keys and without what stands behind a tab.
std::string TextAt(HMENU menu, UINT position) {
    std::array<wchar_t, 256> text{};
    GetMenuStringW(menu, position, text.data(), static_cast<int>(text.size()), MF_BYPOSITION);
    CVelmString plain;
    for (std::size_t i = 0; text[i] != 0 && text[i] != L'\t'; ++i) {
        i += text[i] == L'&' ? 1 : 0;
        plain += static_cast<char16_t>(text[i]);
    }
    return ToUtf8(plain);
}

}  // namespace

std::string OpenMenu::Words() const {
    std::string words;
    const auto count = static_cast<UINT>(GetMenuItemCount(menu_));
    for (UINT i = 0; i < count; ++i) {
        const UINT state = GetMenuState(menu_, i, MF_BYPOSITION);
        const std::string text = (state & MF_SEPARATOR) != 0 ? "-" : TextAt(menu_, i);
        const bool disabled = (state & (MF_GRAYED | MF_DISABLED)) != 0 && text != "-";
        words += (i == 0 ? "" : ", ") + std::string((state & MF_CHECKED) != 0 ? "*" : "");
        words += disabled ? "(" + text + ")" : text;
    }
    return words;
}

bool OpenMenu::Choose(const std::string& text) const {
    const auto count = static_cast<UINT>(GetMenuItemCount(menu_));
    for (UINT i = 0; i < count; ++i) {
        RECT area{};
        if (TextAt(menu_, i) == text && GetMenuItemRect(window_, menu_, i, &area)) {
            const LPARAM place = MAKELPARAM((area.left + area.right) / 2, (area.top + area.bottom) / 2);
            PostMessageW(window_, WM_LBUTTONDOWN, MK_LBUTTON, place);  // an open menu takes places of the screen
            PostMessageW(window_, WM_LBUTTONUP, 0, place);
            return IsGone();
        }
    }
    return false;
}

void OpenMenu::Close() const {
    PostMessageW(window_, WM_KEYDOWN, VK_ESCAPE, 0);
    IsGone();
}

bool OpenMenu::IsGone() const {
    return WaitUntil([this] { return !IsWindowVisible(window_); });
}

std::string OpenMessageBox::Words() const {
    // The icon's identifier is not the same on every system.
    HICON shown = nullptr;
    for (HWND part = nullptr; (part = FindWindowExW(window_, part, L"Static", nullptr)) != nullptr;) {
        if ((GetWindowLongPtrW(part, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) {
            shown = reinterpret_cast<HICON>(SendMessageW(part, STM_GETICON, 0, 0));
        }
    }
    std::string words = ToUtf8(WindowText(window_) + u": " + WindowText(GetDlgItem(window_, MESSAGE_TEXT)));
    for (const auto& [icon, sign] : {std::pair{IDI_QUESTION, "? "}, {IDI_INFORMATION, "i "}, {IDI_ERROR, "x "}}) {
        if (shown != nullptr && shown == LoadIconW(nullptr, icon)) {
            words.insert(0, sign);
        }
    }
    return words;
}

bool OpenMessageBox::Press(int button) const {
    if (GetDlgItem(window_, button) == nullptr) {
        return false;
    }
    PostMessageW(window_, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0);
    return WaitUntil([this] { return !IsWindow(window_); });
}

std::vector<HWND> ThreadWindows(DWORD thread, const wchar_t* className) {
    Search search{className, {}};
    EnumThreadWindows(thread, Collect, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::optional<OpenMenu> WaitForMenu(DWORD thread) {
    return WaitUntil([thread]() -> std::optional<OpenMenu> {
        for (const HWND window : ThreadWindows(thread, MENU_CLASS)) {
            const auto menu = reinterpret_cast<HMENU>(SendMessageW(window, MESSAGE_GET_MENU, 0, 0));
            return menu == nullptr ? std::nullopt : std::optional(OpenMenu(window, menu));
        }
        return std::nullopt;
    });
}

HWND WaitForDialog(DWORD thread, HWND below) {
    return WaitUntil([&]() -> HWND {
        const std::vector<HWND> windows = ThreadWindows(thread, DIALOG_CLASS);
        return windows.empty() || windows.front() == below ? nullptr : windows.front();
    });
}

std::optional<OpenMessageBox> WaitForMessageBox(DWORD thread) {
    const HWND window = WaitForDialog(thread);
    return window == nullptr ? std::nullopt : std::optional(OpenMessageBox(window));
}

}  // namespace velm::test
