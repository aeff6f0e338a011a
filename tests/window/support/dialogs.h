#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace velm::test {

using Texts = std::vector<std::string>;

/// The number of a control or command, by its name in resources/resource.h without "IDC_" or "ID_", or of a message
/// box's button. "QUICK_FILE_FIRST+1" is the following one. Throws for an unknown name.
int IdOf(const std::string& name);

// For drop-down boxes, list boxes, list views and check boxes.

/// Chooses an entry, by its text or its number.
void Choose(HWND control, const std::string& entry);

/// All entries. Those of a list view are its rows, with an asterisk before each that is ticked.
Texts Entries(HWND control);

/// Toggles a check box, or the one of a list view's row.
void Tick(HWND control, int row);

/// The rectangles of a row's text and of a column's title.
RECT PlaceOfEntry(HWND list, int row);
RECT PlaceOfColumn(HWND list, int column);

}  // namespace velm::test
