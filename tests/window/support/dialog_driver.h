#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

#include "platform/wide_text_win32.h"
#include "support/running_program.h"
#include "ui/window_text.h"

namespace velm::test {

using Texts = std::vector<std::string>;

/// A dialog of the running program, and a user at it.
class DialogDriver {
public:
    /// Gives the program a command and waits for its dialog.
    DialogDriver(RunningProgram& program, int command);

    /// A dialog that is open already, or comes before long.
    DialogDriver(RunningProgram& program, HWND window);

    /// The dialog that opens over this one upon a command of its menu bar.
    DialogDriver Over(int command) const;

    HWND Window() const { return window_; }
    HWND Control(int id) const { return GetDlgItem(window_, id); }
    LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendMessageW(Control(id), message, wParam, lParam);
    }

    std::string Caption() const { return ToUtf8(WindowText(window_)); }
    std::string Text(int id) const { return ToUtf8(WindowText(Control(id))); }

    /// Writes over what a box holds, as if it were pasted: a box's own limit does not apply.
    void Fill(int id, const std::string& text) const {
        Send(id, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Wide(FromUtf8(text))));
    }

    /// Chooses an entry of a drop-down box or a row of a list box by its number.
    void Choose(int id, int entry) const;
    Texts Entries(int id) const;

    /// Gives the focus to a control and waits until it has it: the screen gives it to a window late.
    void Focus(int id) const;

    /// Taps a title of the menu bar.
    void Command(int id) const;

    /// Taps OK or Cancel, or presses a key. True when the dialog is gone then.
    bool Ok() const { return Leave(IDOK); }
    bool Cancel() const { return Leave(IDCANCEL); }
    bool EndsWith(WORD key) const;

    // The rows of a list view.
    Texts Rows(int id) const;
    void TapRow(int id, int row) const;
    void SelectRow(int id, int row) const {
        ListView_SetItemState(Control(id), row, LVIS_SELECTED | LVIS_FOCUSED, ~0U);
    }
    bool IsTicked(int id, int row) const { return ListView_GetCheckState(Control(id), row) != 0; }
    void TickRow(int id, int row, bool on) const { ListView_SetCheckState(Control(id), row, on); }

private:
    bool Leave(int command) const {
        Command(command);
        return IsGone();
    }
    bool IsGone() const;
    bool HasFocus() const;
    bool IsListBox(int id) const;
    std::string RowText(int id, int row, int column) const;

    RunningProgram& program_;
    HWND window_;
};

}  // namespace velm::test
