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

/// The longest text that is typed into a dialog's box, in UTF-16 units. A free text is limited only by what a file can
/// hold.
constexpr std::size_t DIALOG_TEXT_MAX = ENTRY_TEXT_MAX;
constexpr std::size_t DIALOG_FREE_TEXT_MAX = CVelmFileStream::MAX_STRING;

/// Position of a control's edge: a percentage of the room plus an offset in pixels at scale 1.
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

/// A control's place in the room below the caption. For a drop-down box `bottom` is the bottom of its list.
struct CVelmPlacement {
    WORD control;
    CVelmEdge left;
    CVelmEdge top;
    CVelmEdge right;
    CVelmEdge bottom;
};

// Rows of fields, with the label on the left and the box on the right. In pixels at scale 1.
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

/// The message for a fault in an entry. A text that begins with a space follows the control's own text in quotes.
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

/// A modal dialog that covers the program's window: caption, controls and menu bar. Controls that do not fit scroll.
class CVelmDialog {
public:
    virtual ~CVelmDialog() = default;
    CVelmDialog(const CVelmDialog&) = delete;
    CVelmDialog& operator=(const CVelmDialog&) = delete;

    /// Runs the dialog. Returns the code that it was ended with, or less than 1 if it could not be created.
    int Show(HWND parent);

protected:
    /// `dialog` and `menuBar` are resources. The placements outlive the dialog and need `minHeight` pixels at scale 1
    /// below the caption.
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

    /// Returns the result of the notification.
    virtual LRESULT OnNotify(const NMHDR& /*notification*/) { return 0; }

    /// A key pressed in a list box that wants keyboard input. True if handled.
    virtual bool OnListKey(WORD /*key*/) { return false; }

    /// Called after the controls are placed.
    virtual void OnLayout() {}

    const CVelmString& Caption() const { return caption_; }
    HWND Handle() const { return handle_; }
    HWND Control(int id) const { return GetDlgItem(handle_, id); }
    LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendDlgItemMessageW(handle_, id, message, wParam, lParam);
    }
    void End(INT_PTR code) const { EndDialog(handle_, code); }

    /// Sets a box's text and its limit of `longest` UTF-16 units.
    void SetText(int id, const CVelmString& text, std::size_t longest = DIALOG_TEXT_MAX) const;

    /// A box's text, truncated to `longest` UTF-16 units: it may have been filled with more than can be typed.
    CVelmString Text(int id, std::size_t longest = DIALOG_TEXT_MAX) const;

    void ShowControls(std::span<const WORD> controls, bool on) const;

    /// Shows a message box, with the dialog's caption unless another is given.
    void Tell(const CVelmString& message, UINT icon = 0, const wchar_t* caption = nullptr) const;

    /// Shows a message, then moves the focus to the control it is about and selects its text.
    void Refuse(int id, const CVelmString& message, UINT icon = 0, const wchar_t* caption = nullptr) const;

    /// Refuses a faulty entry with the message for its fault. False if there is no fault.
    bool RefuseFault(EntryFault fault, std::span<const CVelmFaultText> texts, UINT icon = 0) const;

    /// Sets up a list view with full-row selection and the given extended styles.
    void InitList(int id, DWORD extendedStyles) const;

    /// Inserts a column, `width` pixels wide at scale 1.
    void AddColumn(int id, int index, int format, int width) const;

    /// Appends a row with a value attached. Returns its index.
    int AddRow(int id, const CVelmString& text, LPARAM value) const;

    /// The value attached to a row.
    LPARAM RowValue(int id, int row) const;

    /// The area between caption and menu bar.
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
