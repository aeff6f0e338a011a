#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstddef>
#include <span>
#include <utility>

#include "model/document_edits.h"
#include "model/file_stream.h"
#include "platform/text.h"
#include "ui/gdi.h"

namespace velm {

/// What a box of a dialog takes at most, in UTF-16 units; and one whose text is kept as it stands: what a file takes.
constexpr std::size_t DIALOG_TEXT_MAX = 127;
constexpr std::size_t DIALOG_FREE_TEXT_MAX = CVelmFileStream::MAX_STRING;

/// Where one edge of a control lies: a share of the room, in percent, and a distance from there in pixels of an
/// ordinary screen.
struct CVelmEdge {
    int percent;
    int offset;
};
constexpr CVelmEdge FromStart(int offset) {
    return {0, offset};
}
constexpr CVelmEdge FromEnd(int offset) {
    return {100, -offset};
}

/// Where a control of a dialog goes in the room under the caption. The bottom of a drop-down box is that of its list.
struct CVelmPlacement {
    WORD control;
    CVelmEdge left;
    CVelmEdge top;
    CVelmEdge right;
    CVelmEdge bottom;
};

// Rows of fields: label at the left, box at the right. In pixels of an ordinary screen.
constexpr int DIALOG_MARGIN = 4;
constexpr int DIALOG_LABEL_WIDTH = 64;
constexpr int DIALOG_ROW_HEIGHT = 25;
constexpr int DIALOG_FIELD_HEIGHT = 21;
constexpr int DIALOG_LIST_HEIGHT = 140;  ///< of a drop-down box that is open

/// Top of the n-th row of fields.
constexpr int DialogRow(int row) {
    return DIALOG_MARGIN + row * DIALOG_ROW_HEIGHT;
}
constexpr CVelmPlacement PlaceLabel(WORD control, int row) {
    return {control, FromStart(DIALOG_MARGIN), FromStart(DialogRow(row) + 3),
            FromStart(DIALOG_MARGIN + DIALOG_LABEL_WIDTH), FromStart(DialogRow(row) + DIALOG_FIELD_HEIGHT)};
}
constexpr CVelmPlacement PlaceField(WORD control, int row, int height = DIALOG_FIELD_HEIGHT) {
    return {control, FromStart(2 * DIALOG_MARGIN + DIALOG_LABEL_WIDTH), FromStart(DialogRow(row)),
            FromEnd(DIALOG_MARGIN), FromStart(DialogRow(row) + height)};
}

/// What a dialog says of a fault in an entry. A text that begins with a blank stands behind the control's own in
/// quotes.
struct CVelmFaultText {
    EntryFault fault;
    WORD control;
    const char16_t* text;
    const wchar_t* caption = nullptr;  ///< null: the dialog's
};

/// A control's rectangle in its parent's client area.
RECT PlaceInParent(HWND control);

/// The common caption painter: the text in the system's caption color at the top, a black line under it.
void PaintDialogCaption(HDC dc, int width, const CVelmString& text);

/// A modal dialog that covers the program's window: caption, controls, and a menu bar. Where there is no room for all
/// controls they scroll.
class CVelmDialog {
public:
    virtual ~CVelmDialog() = default;
    CVelmDialog(const CVelmDialog&) = delete;
    CVelmDialog& operator=(const CVelmDialog&) = delete;

    /// Runs the dialog over its parent. Returns the code that it ended with; below 1 when it could not be made.
    int Show(HWND parent);

protected:
    /// Identifiers of a dialog template and of a menu resource. The placements outlive the dialog; `minHeight` is
    /// what they need under the caption, in pixels of an ordinary screen.
    CVelmDialog(WORD dialog, WORD menuBar, CVelmString caption, std::span<const CVelmPlacement> placements,
                int minHeight = 0)
        : template_(dialog),
          menuBar_(menuBar),
          caption_(std::move(caption)),
          placements_(placements),
          minHeight_(minHeight) {}

    /// Fills the controls. Returns the one to focus, or null for the first.
    virtual HWND OnInit() = 0;

    virtual void OnOk() { End(IDOK); }
    virtual void OnCancel() { End(IDCANCEL); }

    /// A command of a control or of the menu bar other than OK and Cancel.
    virtual void OnCommand(WORD /*id*/, WORD /*notification*/) {}

    /// Returns what the control is to be answered.
    virtual LRESULT OnNotify(const NMHDR& /*notification*/) { return 0; }

    /// A key pressed in a list box that asks for its keys. True when it was used up.
    virtual bool OnListKey(WORD /*key*/) { return false; }

    /// The controls have their places.
    virtual void OnLayout() {}

    const CVelmString& Caption() const { return caption_; }
    HWND Handle() const { return handle_; }
    HWND Control(int id) const { return GetDlgItem(handle_, id); }
    LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendDlgItemMessageW(handle_, id, message, wParam, lParam);
    }
    void End(INT_PTR code) const { EndDialog(handle_, code); }

    /// Puts a text into a box that takes `longest` units.
    void SetText(int id, const CVelmString& text, std::size_t longest = DIALOG_TEXT_MAX) const;

    /// The box's text, cut after `longest` units.
    CVelmString Text(int id, std::size_t longest = DIALOG_TEXT_MAX) const;

    void ShowControls(std::span<const WORD> controls, bool on) const;

    /// A message box over the dialog, under the dialog's caption unless another is given.
    void Tell(const CVelmString& message, UINT icon = 0, const wchar_t* caption = nullptr) const;

    /// The message, and then the focus in the control that it is about, with its text selected.
    void Refuse(int id, const CVelmString& message, UINT icon = 0, const wchar_t* caption = nullptr) const;

    /// Refuses an entry in the words for its fault. False when it has none.
    bool RefuseFault(EntryFault fault, std::span<const CVelmFaultText> texts, UINT icon = 0) const;

    /// Makes the list view one of full rows, with the extended styles besides.
    void InitList(int id, DWORD extendedStyles) const;

    /// Puts a column into it, `width` pixels of an ordinary screen wide.
    void AddColumn(int id, int index, int format, int width) const;

    /// Appends a row that carries a value. Returns its index.
    int AddRow(int id, const CVelmString& text, LPARAM value) const;

    /// The value that a row of it carries.
    LPARAM RowValue(int id, int row) const;

    /// The room under the caption, above the menu bar.
    RECT Room() const;

private:
    static INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR Init();
    void Layout();
    void Place(const CVelmPlacement& placement, const RECT& room, int height) const;
    void ScrollTo(int top);
    void OnScroll(int request);
    void BringIntoView(HWND control);
    INT_PTR HandleCommand(WPARAM wParam, LPARAM lParam);
    INT_PTR ControlColor(HDC dc, HWND control) const;
    bool OpenMenu() const;
    void Paint() const;

    WORD template_;
    WORD menuBar_;
    CVelmString caption_;
    std::span<const CVelmPlacement> placements_;
    int minHeight_;
    HWND handle_ = nullptr;
    HWND bar_ = nullptr;
    HWND scrollBar_ = nullptr;
    int scrollTop_ = 0;
    CVelmFont font_;
};

}  // namespace velm
