#include "dialogs/category_box.h"

#include "model/catalog.h"
#include "platform/wide_text_win32.h"

namespace velm {

LRESULT AddBoxEntry(HWND box, const CVelmString& text, LPARAM value) {
    const LRESULT entry = SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(text)));
    SendMessageW(box, CB_SETITEMDATA, static_cast<WPARAM>(entry), value);
    return entry;
}

LRESULT AddCategories(HWND box, const CVelmCatalog& catalog, LPARAM value) {
    LRESULT open = CB_ERR;
    for (const auto& document : catalog.documents) {
        if (document->category.empty()) {
            continue;
        }
        const auto category = reinterpret_cast<LPARAM>(Wide(document->category));
        LRESULT entry = SendMessageW(box, CB_FINDSTRING, static_cast<WPARAM>(-1), category);
        if (entry == CB_ERR) {
            entry = AddBoxEntry(box, document->category, value);
        }
        if (document == catalog.documents.front()) {
            open = entry;
        }
    }
    return open;
}

}  // namespace velm
