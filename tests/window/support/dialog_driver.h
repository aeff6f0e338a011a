#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/wide_text_win32.h"
#include "support/running_program.h"
#include "ui/window_text.h"

namespace velm::test {

using Texts = std::vector<std::string>;

/// The number of a control or command by its name in resources/resource.h without "IDC_" or "ID_", or of a message
/// box's button; "QUICK_FILE_FIRST+1" is the next one. Throws when there is none.
int IdOf(const std::string& name);

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

    /// Chooses an entry of a drop-down box, a row of a list box or of a list view by its number.
    void Choose(int id, int entry) const;

    /// The entries; of a list view the rows with an asterisk before those that are ticked.
    Texts Entries(int id) const;

    /// Turns a check box round, or the one of a list view's row.
    void Tick(int id, int row) const;

    /// Where the list view shows the text of a row, or the title of a column.
    RECT PlaceInList(bool column, int number) const;

    /// Gives the focus to a control and waits until it has it: the screen gives it to a window late.
    void Focus(int id) const;

    /// Taps a title of the menu bar.
    void Command(int id) const;

    /// Taps OK or Cancel. True when the dialog is gone then.
    bool Ok() const { return Leave(IDOK); }
    bool Cancel() const { return Leave(IDCANCEL); }

private:
    bool Leave(int command) const;
    std::string RowText(int id, WPARAM row, int column) const;

    RunningProgram& program_;
    HWND window_;
};

}  // namespace velm::test
