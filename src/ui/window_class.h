#pragma once

#include <windows.h>

namespace velm {

/// The class of the program's own child windows. Registered once, at start-up.
inline constexpr const wchar_t* WINDOW_CLASS = L"VlWndClass";

/// Registers a class of windows that belong to CVelmWindow objects. True also when it exists already.
bool RegisterWindowClass(const wchar_t* name, HICON icon, HCURSOR cursor = nullptr, HBRUSH background = nullptr);

/// Whether a window is of this class; letter case does not matter.
bool IsOfClass(HWND window, const wchar_t* name);

/// Creates a system control as a child with an empty rectangle; null on failure. The font is not owned and outlives the
/// control.
HWND CreateControl(const wchar_t* windowClass, DWORD style, HWND parent, UINT id, HFONT font);

/// Owns a window. The object may outlive its window; destroying the object destroys the window.
class CVelmWindow {
public:
    CVelmWindow() = default;
    virtual ~CVelmWindow();
    CVelmWindow(const CVelmWindow&) = delete;
    CVelmWindow& operator=(const CVelmWindow&) = delete;

    /// Handles every message of the window. The base passes all of them to the system.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);

    /// Creates the window, of class "VlWndClass"; null on failure.
    HWND Create(DWORD style, int x, int y, int width, int height, HWND parent, UINT id, const wchar_t* name);

    /// Shows and enables the window, or hides and disables it.
    void Show(bool on);

    bool IsShown() const { return IsWindowEnabled(handle_) != FALSE; }

    HWND Handle() const { return handle_; }

    /// The window procedure of every class whose windows belong to such objects.
    static LRESULT CALLBACK ClassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    HWND handle_ = nullptr;
};

}  // namespace velm
