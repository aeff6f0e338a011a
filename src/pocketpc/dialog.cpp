#include <windows.h>

#include <commctrl.h>

#include "pocketpc/shell.h"

namespace {

constexpr UINT_PTR COVER_SUBCLASS = 2;

void CoverOwner(HWND dialog, HWND owner) {
    RECT area{};
    GetClientRect(owner, &area);
    MapWindowPoints(owner, nullptr, reinterpret_cast<POINT*>(&area), 2);
    SetWindowPos(dialog, nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

/// On the owner: its dialog goes where it goes.
LRESULT CALLBACK TakeDialogAlong(HWND owner, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR) {
    const LRESULT result = DefSubclassProc(owner, message, wParam, lParam);
    if (message == WM_WINDOWPOSCHANGED && !IsIconic(owner)) {
        CoverOwner(reinterpret_cast<HWND>(id), owner);
    }
    return result;
}

/// On the dialog: the owner forgets it when it ends.
LRESULT CALLBACK LeaveOwner(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR owner) {
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(reinterpret_cast<HWND>(owner), TakeDialogAlong, reinterpret_cast<UINT_PTR>(dialog));
        RemoveWindowSubclass(dialog, LeaveOwner, id);
    }
    return DefSubclassProc(dialog, message, wParam, lParam);
}

}  // namespace

BOOL SHInitDialog(SHINITDLGINFO* info) {
    if ((info->dwMask & SHIDIM_FLAGS) == 0 || (info->dwFlags & SHIDIF_SIZEDLGFULLSCREEN) == 0) {
        return FALSE;
    }
    const HWND owner = GetWindow(info->hDlg, GW_OWNER);
    if (owner == nullptr) {
        return FALSE;
    }
    CoverOwner(info->hDlg, owner);
    return SetWindowSubclass(owner, TakeDialogAlong, reinterpret_cast<UINT_PTR>(info->hDlg), 0) &&
           SetWindowSubclass(info->hDlg, LeaveOwner, COVER_SUBCLASS, reinterpret_cast<DWORD_PTR>(owner));
}
