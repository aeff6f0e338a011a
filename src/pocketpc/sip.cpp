#include <windows.h>

#include <commctrl.h>

#include <array>

#include "pocketpc/shell.h"
#include "pocketpc/shell_classes.h"

namespace {

constexpr const wchar_t* STATE_PROPERTY = L"SipPreference";
constexpr UINT_PTR SUBCLASS = 1;

/// Focus notifications of the controls that accept text.
struct FocusCodes {
    const wchar_t* windowClass;
    WORD gained;
    WORD lost;
};

constexpr std::array<FocusCodes, 2> FOCUS_CODES = {
    {{L"Edit", EN_SETFOCUS, EN_KILLFOCUS}, {L"ComboBox", CBN_SETFOCUS, CBN_KILLFOCUS}}};

/// A drop-down list does not accept text.
bool AcceptsText(HWND control, const FocusCodes& codes) {
    const bool isChoice = codes.gained == CBN_SETFOCUS && (GetWindowLongW(control, GWL_STYLE) & 3) == CBS_DROPDOWNLIST;
    std::array<wchar_t, 32> name{};
    GetClassNameW(control, name.data(), static_cast<int>(name.size()));
    return lstrcmpiW(name.data(), codes.windowClass) == 0 && !isChoice;
}

/// The panel's state that a control's notification requests.
SIPSTATE RequestedState(HWND control, WORD notification) {
    for (const FocusCodes& codes : FOCUS_CODES) {
        if ((notification == codes.gained || notification == codes.lost) && AcceptsText(control, codes)) {
            return notification == codes.gained ? SIP_UP : SIP_DOWN;
        }
    }
    return SIP_UNCHANGED;
}

/// Subclass of the dialog: the panel follows the focus of controls that accept text.
LRESULT CALLBACK FollowFocus(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR) {
    const HWND control = reinterpret_cast<HWND>(lParam);
    if (message == WM_COMMAND && control != nullptr) {
        SHSipPreference(dialog, RequestedState(control, HIWORD(wParam)));
    } else if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(dialog, FollowFocus, id);
    }
    return DefSubclassProc(dialog, message, wParam, lParam);
}

LRESULT CALLBACK SipPrefProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) {
        SetWindowSubclass(GetParent(window), FollowFocus, SUBCLASS, 0);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

/// Stores the state until the window is destroyed.
LRESULT CALLBACK DropState(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR) {
    if (message == WM_NCDESTROY) {
        RemovePropW(window, STATE_PROPERTY);
        RemoveWindowSubclass(window, DropState, id);
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace

BOOL SHSipPreference(HWND window, SIPSTATE state) {
    const HWND top = GetAncestor(window, GA_ROOT);
    if (top == nullptr) {
        return FALSE;
    }
    if (state == SIP_UNCHANGED) {
        return TRUE;
    }
    // Stored plus one: a property of 0 means unset.
    SetWindowSubclass(top, DropState, SUBCLASS, 0);
    return SetPropW(top, STATE_PROPERTY, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(state) + 1));
}

SIPSTATE SHGetSipPreference(HWND window) {
    const auto kept = reinterpret_cast<INT_PTR>(GetPropW(GetAncestor(window, GA_ROOT), STATE_PROPERTY));
    return kept == 0 ? SIP_DOWN : static_cast<SIPSTATE>(kept - 1);
}

BOOL SHInitExtraControls() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = SipPrefProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"SIPPREF";
    return RegisterShellClass(windowClass) && RegisterCommandBarClass();
}
