#pragma once

#include <windows.h>

namespace velm {

class CVelmClock;
class CVelmDocument;
class CVelmItem;

/// Edits the name, identifier, value text and, in a calculation file, the kind of an item; one without a name is new.
/// The item is the document's or going to be. Returns IDOK, or IDCANCEL with the item as it was.
int ShowUnitPropertiesDialog(HWND parent, CVelmItem& item, const CVelmDocument& document, const CVelmClock& clock);

}  // namespace velm
