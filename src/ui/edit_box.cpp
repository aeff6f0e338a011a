#include "ui/edit_box.h"

#include <windowsx.h>

#include <commctrl.h>

#include <optional>

#include "platform/wide_text_win32.h"
#include "pocketpc/shell.h"
#include "resource.h"
#include "ui/clipboard.h"
#include "ui/gdi.h"
#include "ui/window_class.h"
#include "ui/window_text.h"

namespace velm {
namespace {

constexpr UINT_PTR SUBCLASS = 1;
constexpr int LAST_CHARACTER = 32000;

struct MenuMessage {
    UINT command;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

/// Messages of the context menu's entries.
constexpr MenuMessage MENU_MESSAGES[] = {
    {ID_CUT, WM_CUT, 0, 0},
    {ID_COPY, WM_COPY, 0, 0},
    {ID_PASTE, WM_PASTE, 0, 0},
    {ID_SELECT_ALL, EM_SETSEL, 0, LAST_CHARACTER},
};

void EnableEntry(HMENU menu, UINT command, bool on) {
    EnableMenuItem(menu, command, static_cast<UINT>(MF_BYCOMMAND) | (on ? MF_ENABLED : MF_GRAYED));
}

}  // namespace

CVelmEditBox::~CVelmEditBox() {
    if (handle_ != nullptr) {
        RemoveWindowSubclass(handle_, ControlProc, SUBCLASS);
    }
}

bool CVelmEditBox::Create(HWND parent, UINT id, HFONT font) {
    handle_ = CreateControl(L"EDIT", WS_BORDER | WS_TABSTOP | ES_LEFT | ES_AUTOHSCROLL, parent, id, font);
    return handle_ != nullptr &&
           SetWindowSubclass(handle_, ControlProc, SUBCLASS, reinterpret_cast<DWORD_PTR>(this)) != FALSE;
}

CVelmString CVelmEditBox::Text() const {
    return WindowText(handle_);
}

void CVelmEditBox::SetText(const CVelmString& text) {
    SetWindowTextW(handle_, Wide(text));
}

void CVelmEditBox::SelectAll() {
    SendMessageW(handle_, EM_SETSEL, 0, -1);
}

CVelmSelection CVelmEditBox::Selection() const {
    CVelmSelection selected;
    SendMessageW(handle_, EM_GETSEL, reinterpret_cast<WPARAM>(&selected.from), reinterpret_cast<LPARAM>(&selected.to));
    return selected;
}

bool CVelmEditBox::OnKeyDown(WPARAM) {
    return false;
}

bool CVelmEditBox::OnChar(wchar_t) {
    return false;
}

bool CVelmEditBox::OnPaste(const CVelmString&) {
    return false;
}

void CVelmEditBox::ReplaceSelection(const CVelmString& text) {
    SendMessageW(handle_, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(Wide(text)));
}

LRESULT CALLBACK CVelmEditBox::ControlProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                           DWORD_PTR object) {
    auto& box = *reinterpret_cast<CVelmEditBox*>(object);
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(window, ControlProc, id);
        box.handle_ = nullptr;
        return DefSubclassProc(window, message, wParam, lParam);
    }
    return box.Handles(message, wParam, lParam) ? 0 : DefSubclassProc(window, message, wParam, lParam);
}

bool CVelmEditBox::Handles(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_LBUTTONDOWN:
            return OnPenDown({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        case WM_SETFOCUS:
            SHSipPreference(handle_, SIP_UP);
            return false;
        case WM_CONTEXTMENU:
            OnContextMenu(lParam);
            return true;
        case WM_MOUSEWHEEL:
            SendMessageW(GetParent(handle_), message, wParam, lParam);
            return true;
        case WM_KEYDOWN:
            return OnKeyDown(wParam);
        case WM_CHAR:
            return OnChar(static_cast<wchar_t>(wParam));
        case WM_PASTE: {
            const std::optional<CVelmString> text = GetClipboardText(handle_);
            return text && OnPaste(*text);
        }
        default:
            return false;
    }
}

bool CVelmEditBox::OnPenDown(POINT place) {
    const SHRGINFO gesture{sizeof(gesture), handle_, place, SHRG_RETURNCMD};
    if (SHRecognizeGesture(&gesture) == GN_CONTEXTMENU) {
        ShowContextMenu(place);
        return true;
    }
    SHSipPreference(handle_, SIP_UP);
    return false;
}

/// The right button and the context menu key, which has no position.
void CVelmEditBox::OnContextMenu(LPARAM position) {
    POINT place{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    if (position == -1) {
        const RECT area = ClientArea(handle_);
        place = {area.left, area.bottom};
    } else {
        ScreenToClient(handle_, &place);
    }
    ShowContextMenu(place);
}

void CVelmEditBox::ShowContextMenu(POINT place) {
    const CVelmMenu resource(LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDM_EDIT_CONTEXT)));
    const HMENU menu = GetSubMenu(resource.get(), 0);
    const CVelmSelection selected = Selection();
    EnableEntry(menu, ID_CUT, selected.from < selected.to);
    EnableEntry(menu, ID_COPY, selected.from < selected.to);
    EnableEntry(menu, ID_PASTE, IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE);
    ClientToScreen(handle_, &place);
    const int chosen = TrackPopupMenu(menu, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RETURNCMD, static_cast<int>(place.x),
                                      static_cast<int>(place.y), 0, handle_, nullptr);
    for (const MenuMessage& entry : MENU_MESSAGES) {
        if (static_cast<UINT>(chosen) == entry.command) {
            SendMessageW(handle_, entry.message, entry.wParam, entry.lParam);
        }
    }
}

}  // namespace velm
