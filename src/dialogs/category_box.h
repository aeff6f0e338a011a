#pragma once

#include <windows.h>

#include "platform/text.h"

namespace velm {

class CVelmCatalog;

/// Appends an entry that carries a value to a drop-down box. Returns its index.
LRESULT AddBoxEntry(HWND box, const CVelmString& text, LPARAM value);

/// Appends the categories of a catalog in its order. Deliberate: one that an entry of the box begins with, in any
/// letter case, is left out, and that entry stands for both. Returns the entry of the open document's category, CB_ERR
/// when it has none.
LRESULT AddCategories(HWND box, const CVelmCatalog& catalog, LPARAM value);

}  // namespace velm
