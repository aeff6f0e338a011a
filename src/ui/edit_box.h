#pragma once

#include <windows.h>

#include "platform/text.h"

namespace velm {

/// The selected part of an edit box's text; empty at the caret when there is none.
struct CVelmSelection {
    DWORD from = 0;
    DWORD to = 0;
};

/// A single-line edit box for the pen: tap-and-hold opens a context menu, a tap raises the soft input panel. The parent
/// gets the edit control's notifications.
class CVelmEditBox {
public:
    CVelmEditBox() = default;
    virtual ~CVelmEditBox();
    CVelmEditBox(const CVelmEditBox&) = delete;
    CVelmEditBox& operator=(const CVelmEditBox&) = delete;

    /// Creates the control, hidden; false on failure. The font is not owned and outlives the control.
    bool Create(HWND parent, UINT id, HFONT font);

    HWND Handle() const { return handle_; }
    CVelmString Text() const;
    void SetText(const CVelmString& text);
    void SelectAll();
    CVelmSelection Selection() const;
    bool HasFocus() const { return handle_ != nullptr && GetFocus() == handle_; }

protected:
    /// Override the handling of a key, a character or pasted text. True when handled.
    virtual bool OnKeyDown(WPARAM key);
    virtual bool OnChar(wchar_t unit);
    virtual bool OnPaste(const CVelmString& text);

    /// Replaces the selection, like typing.
    void ReplaceSelection(const CVelmString& text);

private:
    static LRESULT CALLBACK ControlProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                        DWORD_PTR object);
    bool Handles(UINT message, WPARAM wParam, LPARAM lParam);
    bool OnPenDown(POINT place);
    void OnContextMenu(LPARAM position);
    void ShowContextMenu(POINT place);

    HWND handle_ = nullptr;
};

}  // namespace velm
