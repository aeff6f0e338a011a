#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace velm::test {

/// One entry of an open menu, as the user sees it: access keys are left out of the text.
struct MenuEntry {
    std::string text;
    bool enabled = true;
    bool checked = false;
    bool separator = false;

    bool operator==(const MenuEntry&) const = default;
};
void PrintTo(const MenuEntry& entry, std::ostream* out);

/// A popup menu on the screen.
class OpenMenu {
public:
    OpenMenu(HWND window, HMENU menu) : window_(window), menu_(menu) {}

    HWND Window() const { return window_; }
    std::vector<MenuEntry> Entries() const;

    /// The texts alone; "-" for a separator.
    std::vector<std::string> Texts() const;

    /// Nothing when there is no such entry.
    std::optional<MenuEntry> Find(const std::string& text) const;

    /// Walks to the entry with the arrow keys and presses Enter. False when there is no such entry.
    bool Choose(const std::string& text) const;
    void Close() const;

private:
    bool IsChosen(const std::string& text) const;
    void Press(WORD key) const;

    HWND window_;
    HMENU menu_;
};

/// A message box on the screen.
class OpenMessageBox {
public:
    explicit OpenMessageBox(HWND window) : window_(window) {}

    std::string Caption() const;
    std::string Text() const;

    /// IDI_QUESTION, IDI_INFORMATION, IDI_ERROR, IDI_WARNING; null for none.
    const wchar_t* Icon() const;

    /// Presses the button of that identifier (IDOK, IDYES, IDNO) and waits until the box is gone. False when it stays.
    bool Press(int button) const;

private:
    HWND window_;
};

/// The visible windows of a thread that are of a class, topmost first.
std::vector<HWND> ThreadWindows(DWORD thread, const wchar_t* className);

/// The menu that opened last, within a few seconds; nothing when none opens.
std::optional<OpenMenu> WaitForMenu(DWORD thread);

/// The same for a message box or dialog.
std::optional<OpenMessageBox> WaitForMessageBox(DWORD thread);
HWND WaitForDialog(DWORD thread);

}  // namespace velm::test
