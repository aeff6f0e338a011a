#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace velm::test {

using Texts = std::vector<std::string>;

/// The number of a control or command by its name in resources/resource.h without "IDC_" or "ID_", or of a message
/// box's button; "QUICK_FILE_FIRST+1" is the next one. Throws when there is none.
int IdOf(const std::string& name);

// Controls: drop-down boxes, list boxes, list views and check boxes.

/// Chooses an entry, by its text or its number.
void Choose(HWND control, const std::string& entry);

/// The entries; of a list view the rows, with an asterisk before those that are ticked.
Texts Entries(HWND control);

/// Turns a check box round, or that of a list view's row.
void Tick(HWND control, int row);

/// Where a list view shows the text of a row, or the title of a column.
RECT PlaceOfEntry(HWND list, int row);
RECT PlaceOfColumn(HWND list, int column);

}  // namespace velm::test
