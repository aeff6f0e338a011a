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

/// Subclass of the owner: moves its dialog along.
LRESULT CALLBACK FollowOwner(HWND owner, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR) {
    const LRESULT result = DefSubclassProc(owner, message, wParam, lParam);
    if (message == WM_WINDOWPOSCHANGED && !IsIconic(owner)) {
        CoverOwner(reinterpret_cast<HWND>(id), owner);
    }
    return result;
}

/// Subclass of the dialog: detaches it from the owner when it is destroyed.
LRESULT CALLBACK DetachFromOwner(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                 DWORD_PTR owner) {
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(reinterpret_cast<HWND>(owner), FollowOwner, reinterpret_cast<UINT_PTR>(dialog));
        RemoveWindowSubclass(dialog, DetachFromOwner, id);
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
    return SetWindowSubclass(owner, FollowOwner, reinterpret_cast<UINT_PTR>(info->hDlg), 0) &&
           SetWindowSubclass(info->hDlg, DetachFromOwner, COVER_SUBCLASS, reinterpret_cast<DWORD_PTR>(owner));
}
