#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/running_program.h"

namespace velm::test {

/// A dialog of the running program, and a user at it.
class DialogDriver {
public:
    /// Gives the program a command and waits for its dialog.
    DialogDriver(RunningProgram& program, WORD command);

    /// A dialog that is open already.
    DialogDriver(RunningProgram& program, HWND window) : program_(program), window_(window) {}

    HWND Window() const { return window_; }
    HWND Control(int id) const { return GetDlgItem(window_, id); }

    /// What the dialog's caption reads.
    std::string Caption() const;
    std::string Text(int id) const;

    /// Writes over what a box holds, as if it were pasted: the box's own limit does not apply.
    void SetText(int id, std::string_view text) const;

    /// Chooses an entry of a drop-down box or a row of a list box by its number.
    void Choose(int id, int entry) const;
    std::vector<std::string> Entries(int id) const;

    void Focus(int id) const;

    /// Waits until the control has the focus; false when it does not get it. The screen gives it to a window late.
    bool GetsFocus(int id) const;
    bool IsVisible(int id) const { return IsWindowVisible(Control(id)) != FALSE; }

    /// The titles on the menu bar.
    std::vector<std::string> MenuBar() const;

    /// Taps a title of the menu bar.
    void Command(WORD id) const;

    /// Taps OK or Cancel. True when the dialog is gone then.
    bool Ok() const { return Leave(IDOK); }
    bool Cancel() const { return Leave(IDCANCEL); }

    /// Waits until the dialog is gone; false when it stays.
    bool IsGone() const;

    /// Gives a command and answers the message box that comes: "caption: text". Empty when none comes.
    std::string Answer(WORD command, int button = IDOK) const;

    // The rows of a list view.
    int RowCount(int id) const;
    std::string RowText(int id, int row, int column = 0) const;
    void TapRow(int id, int row) const;
    void SelectRow(int id, int row) const;
    bool IsTicked(int id, int row) const;
    void TickRow(int id, int row, bool on) const;

private:
    bool Leave(WORD command) const;

    RunningProgram& program_;
    HWND window_;
};

}  // namespace velm::test
