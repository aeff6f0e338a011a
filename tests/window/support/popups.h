#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace velm::test {

/// A popup menu on the screen.
class OpenMenu {
public:
    OpenMenu(HWND window, HMENU menu) : window_(window), menu_(menu) {}
    HWND Window() const { return window_; }

    /// The entries as the user sees them, without access keys: "*Length, Area, -, (Paste)" has a check mark before
    /// the first, a line before the last, which is disabled.
    std::string Words() const;

    /// Taps the entry of that text and waits until the menu is gone. False when there is no such entry or it stays.
    bool Choose(const std::string& text) const;

private:
    HWND window_;
    HMENU menu_;
};

/// What a message box says: "Caption: text", with the icon's sign before it: ? for a question, i for information, x for
/// an error.
std::string WordsOfBox(HWND box);

/// Presses the button of that identifier (IDOK, IDYES, IDNO) and waits until the box is gone. False when it stays.
bool PressInBox(HWND box, int button);

/// The name of a window's class.
std::string ClassOf(HWND window);

/// The menu that opened last, or nothing; the second one waits for it.
std::optional<OpenMenu> TopMenu(DWORD thread);
std::optional<OpenMenu> WaitForMenu(DWORD thread);

/// The topmost dialog or message box, or null; the second one waits for one other than `below`.
HWND TopDialog(DWORD thread);
HWND WaitForDialog(DWORD thread, HWND below = nullptr);

}  // namespace velm::test
