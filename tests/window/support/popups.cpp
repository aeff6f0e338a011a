#include "support/popups.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "app/wide_text.h"
#include "support/waiting.h"

namespace velm::test {
namespace {

constexpr const wchar_t* MENU_CLASS = L"#32768";
constexpr const wchar_t* DIALOG_CLASS = L"#32770";
constexpr UINT MESSAGE_GET_MENU = 0x01E1;
constexpr int MESSAGE_TEXT = 0xFFFF;

struct Search {
    const wchar_t* className;
    std::vector<HWND> found;
};

BOOL CALLBACK Collect(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (IsWindowVisible(window) && std::wstring(name.data()) == search.className) {
        search.found.push_back(window);
    }
    return TRUE;
}

/// The text without the marks of access keys and without what stands behind a tab.
std::string PlainText(const std::wstring& text) {
    CVelmString plain;
    for (std::size_t i = 0; i < text.size() && text[i] != L'\t'; ++i) {
        if (text[i] == L'&' && ++i == text.size()) {
            break;
        }
        plain += static_cast<char16_t>(text[i]);
    }
    return ToUtf8(plain);
}

MenuEntry EntryAt(HMENU menu, UINT position) {
    std::array<wchar_t, 256> text{};
    MENUITEMINFOW info{};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_STATE | MIIM_FTYPE | MIIM_STRING;
    info.dwTypeData = text.data();
    info.cch = static_cast<UINT>(text.size());
    GetMenuItemInfoW(menu, position, TRUE, &info);
    return {PlainText(text.data()), (info.fState & MFS_DISABLED) == 0, (info.fState & MFS_CHECKED) != 0,
            (info.fType & MFT_SEPARATOR) != 0};
}

}  // namespace

void PrintTo(const MenuEntry& entry, std::ostream* out) {
    *out << (entry.separator ? "-" : entry.text) << (entry.enabled ? "" : " (disabled)")
         << (entry.checked ? " (checked)" : "");
}

std::vector<MenuEntry> OpenMenu::Entries() const {
    std::vector<MenuEntry> entries;
    const int count = GetMenuItemCount(menu_);
    for (int i = 0; i < count; ++i) {
        entries.push_back(EntryAt(menu_, static_cast<UINT>(i)));
    }
    return entries;
}

std::vector<std::string> OpenMenu::Texts() const {
    std::vector<std::string> texts;
    for (const MenuEntry& entry : Entries()) {
        texts.push_back(entry.separator ? "-" : entry.text);
    }
    return texts;
}

std::optional<MenuEntry> OpenMenu::Find(const std::string& text) const {
    const std::vector<MenuEntry> entries = Entries();
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&text](const MenuEntry& entry) { return entry.text == text; });
    return found == entries.end() ? std::nullopt : std::optional(*found);
}

bool OpenMenu::IsChosen(const std::string& text) const {
    const int count = GetMenuItemCount(menu_);
    for (int i = 0; i < count; ++i) {
        const auto position = static_cast<UINT>(i);
        if ((GetMenuState(menu_, position, MF_BYPOSITION) & MF_HILITE) != 0) {
            return EntryAt(menu_, position).text == text;
        }
    }
    return false;
}

void OpenMenu::Press(WORD key) const {
    PostMessageW(window_, WM_KEYDOWN, key, 0);
    PostMessageW(window_, WM_KEYUP, key, 0);
}

bool OpenMenu::Choose(const std::string& text) const {
    if (!Find(text)) {
        return false;
    }
    // A key can come before the menu listens: it is pressed again then.
    constexpr std::chrono::milliseconds KEY_PATIENCE{1000};
    const int most = GetMenuItemCount(menu_) + 10;
    for (int steps = 0; steps <= most; ++steps) {
        if (IsChosen(text)) {
            Press(VK_RETURN);
            // Gone before anybody looks for the next menu.
            if (WaitUntil([this] { return !IsWindowVisible(window_); }, KEY_PATIENCE)) {
                return true;
            }
            continue;
        }
        // A menu answers each key when its thread comes to it, and highlights another entry then.
        std::vector<UINT> before(static_cast<std::size_t>(GetMenuItemCount(menu_)));
        const auto states = [this, &before] {
            std::vector<UINT> now;
            for (std::size_t i = 0; i < before.size(); ++i) {
                now.push_back(GetMenuState(menu_, static_cast<UINT>(i), MF_BYPOSITION) & MF_HILITE);
            }
            return now;
        };
        before = states();
        Press(VK_DOWN);
        // Between two entries none is highlighted for a moment.
        const std::vector<UINT> none(before.size());
        WaitUntil([&] { return states() != before && states() != none; }, KEY_PATIENCE);
    }
    return false;
}

void OpenMenu::Close() const {
    Press(VK_ESCAPE);
    WaitUntil([this] { return !IsWindowVisible(window_); });
}

std::string OpenMessageBox::Caption() const {
    return ToUtf8(WindowText(window_));
}

std::string OpenMessageBox::Text() const {
    return ToUtf8(WindowText(GetDlgItem(window_, MESSAGE_TEXT)));
}

const wchar_t* OpenMessageBox::Icon() const {
    // Its identifier is not the same on every system.
    HICON shown = nullptr;
    for (HWND part = FindWindowExW(window_, nullptr, L"Static", nullptr); part != nullptr && shown == nullptr;
         part = FindWindowExW(window_, part, L"Static", nullptr)) {
        if ((GetWindowLongPtrW(part, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) {
            shown = reinterpret_cast<HICON>(SendMessageW(part, STM_GETICON, 0, 0));
        }
    }
    for (const wchar_t* const icon : {IDI_QUESTION, IDI_INFORMATION, IDI_ERROR, IDI_WARNING}) {
        if (shown != nullptr && shown == LoadIconW(nullptr, icon)) {
            return icon;
        }
    }
    return nullptr;
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
    HMENU menu = nullptr;
    HWND window = nullptr;
    WaitUntil([&] {
        const std::vector<HWND> windows = ThreadWindows(thread, MENU_CLASS);
        window = windows.empty() ? nullptr : windows.front();
        menu = window == nullptr ? nullptr : reinterpret_cast<HMENU>(SendMessageW(window, MESSAGE_GET_MENU, 0, 0));
        return menu != nullptr;
    });
    return menu == nullptr ? std::nullopt : std::optional(OpenMenu(window, menu));
}

HWND WaitForDialog(DWORD thread) {
    HWND window = nullptr;
    WaitUntil([&] {
        const std::vector<HWND> windows = ThreadWindows(thread, DIALOG_CLASS);
        window = windows.empty() ? nullptr : windows.front();
        return window != nullptr;
    });
    return window;
}

std::optional<OpenMessageBox> WaitForMessageBox(DWORD thread) {
    const HWND window = WaitForDialog(thread);
    return window == nullptr ? std::nullopt : std::optional(OpenMessageBox(window));
}

}  // namespace velm::test
