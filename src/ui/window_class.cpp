#include "ui/window_class.h"

#include <array>

namespace velm {

bool RegisterWindowClass(const wchar_t* name, HICON icon, HCURSOR cursor, HBRUSH background) {
    WNDCLASSW windowClass{};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = CVelmWindow::ClassProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hIcon = icon;
    windowClass.hCursor = cursor;
    windowClass.hbrBackground = background;
    windowClass.lpszClassName = name;
    return RegisterClassW(&windowClass) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

bool IsOfClass(HWND window, const wchar_t* name) {
    std::array<wchar_t, 32> text{};
    GetClassNameW(window, text.data(), static_cast<int>(text.size()));
    return lstrcmpiW(text.data(), name) == 0;
}

HWND CreateControl(const wchar_t* windowClass, DWORD style, HWND parent, UINT id, HFONT font) {
    const HWND control =
        CreateWindowExW(0, windowClass, L"", WS_CHILD | style, 0, 0, 0, 0, parent,
                        reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    return control;
}

CVelmWindow::~CVelmWindow() {
    if (handle_ != nullptr) {
        // The derived part is destroyed already, so the window's last messages must not arrive here.
        SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
        DestroyWindow(handle_);
    }
}

LRESULT CVelmWindow::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcW(handle_, message, wParam, lParam);
}

HWND CVelmWindow::Create(DWORD style, int x, int y, int width, int height, HWND parent, UINT id, const wchar_t* name) {
    return CreateWindowExW(0, WINDOW_CLASS, name, style, x, y, width, height, parent,
                           reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), GetModuleHandleW(nullptr), this);
}

void CVelmWindow::Show(bool on) {
    if (IsShown() != on) {
        ShowWindow(handle_, on ? SW_SHOW : SW_HIDE);
        EnableWindow(handle_, on);
    }
}

LRESULT CALLBACK CVelmWindow::ClassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        auto* object = static_cast<CVelmWindow*>(creation->lpCreateParams);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
        if (object != nullptr) {
            object->handle_ = window;
        }
    }
    auto* object = reinterpret_cast<CVelmWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (object == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    const LRESULT result = object->WindowProc(message, wParam, lParam);
    if (message == WM_DESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        object->handle_ = nullptr;
    }
    return result;
}

}  // namespace velm
