#pragma once

#include <windows.h>

#include "platform/text.h"

namespace velm {

/// The part of an edit box's text that is selected; the caret's place when none is.
struct CVelmSelection {
    DWORD from = 0;
    DWORD to = 0;
};

/// A single-line edit box for the pen: held in place it opens a context menu, touched it raises the soft input panel.
/// Its parent gets the edit control's own notifications.
class CVelmEditBox {
public:
    CVelmEditBox() = default;
    virtual ~CVelmEditBox();
    CVelmEditBox(const CVelmEditBox&) = delete;
    CVelmEditBox& operator=(const CVelmEditBox&) = delete;

    /// Makes the control, hidden; false when the system refuses. The font is not owned and outlives the control.
    bool Create(HWND parent, UINT id, HFONT font);

    HWND Handle() const { return handle_; }
    CVelmString Text() const;
    void SetText(const CVelmString& text);
    void SelectAll();
    CVelmSelection Selection() const;
    bool HasFocus() const { return handle_ != nullptr && GetFocus() == handle_; }

protected:
    /// What a key, a character or text from the clipboard does instead of what the control does with it.
    /// True when it was used up.
    virtual bool OnKeyDown(WPARAM key);
    virtual bool OnChar(wchar_t unit);
    virtual bool OnPaste(const CVelmString& text);

    /// Puts a text in the place of the selection, as typing does.
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
