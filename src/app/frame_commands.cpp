#include <algorithm>

#include "app/commands.h"
#include "app/main_frame.h"
#include "model/document_edits.h"
#include "platform/wide_text_win32.h"
#include "resource.h"
#include "ui/display_scale.h"
#include "ui/gdi.h"

namespace velm {
namespace {

constexpr int QUICK_MENU_TOP = 49;

/// A title with its ampersands doubled, for a menu.
CVelmString MenuText(const CVelmString& title) {
    CVelmString text;
    for (const char16_t unit : title) {
        text.append(unit == u'&' ? 2 : 1, unit);
    }
    return text;
}

}  // namespace

bool Always(const CVelmFrame&) {
    return true;
}

bool HasDocument(const CVelmFrame& frame) {
    return frame.Document() != nullptr;
}

bool HasCurrentItem(const CVelmFrame& frame) {
    return frame.CurrentItem() != nullptr;
}

bool IsConversionFile(const CVelmFrame& frame) {
    return frame.Document() != nullptr && frame.Document()->GetKind() == KIND_CONVERSION;
}

bool HasCurrentValue(const CVelmFrame& frame) {
    const CVelmItem* const item = frame.CurrentItem();
    return item != nullptr && item->state == STATE_VALID;
}

bool CanPaste(const CVelmFrame& frame) {
    const CVelmItem* const item = frame.CurrentItem();
    return item != nullptr && !item->IsOutput() && IsClipboardFormatAvailable(CF_UNICODETEXT);
}

void ExitProgram(CVelmFrame& frame, WORD) {
    PostMessageW(frame.Handle(), WM_CLOSE, 0, 0);
}

void Calculate(CVelmFrame& frame, WORD) {
    if (frame.Document() != nullptr) {
        frame.Document()->Recalculate(frame.Program().context);
        frame.List().RefreshValues();
    }
}

void RemoveFromList(CVelmFrame& frame, WORD) {
    if (CVelmItem* const item = frame.CurrentItem()) {
        HideItem(*frame.Document(), *item);
        frame.SelectFile(frame.Document());
        frame.SaveDocument();
    }
}

void DeleteUnit(CVelmFrame& frame, WORD) {
    CVelmDocument* const document = frame.Document();
    const CVelmItem* const item = frame.CurrentItem();
    if (item == nullptr ||
        MessageBoxW(frame.Handle(), Wide(DeletionQuestion(*document, *item)), L"Delete", MB_YESNO | MB_ICONQUESTION) !=
            IDYES ||
        frame.Document() != document || frame.CurrentItem() != item) {
        return;
    }
    frame.List().SetDocument(nullptr);  // it shows the item that is deleted
    DeleteItem(*document, *item);
    frame.List().SetDocument(document);
    frame.SaveDocument();
}

void SaveFormats(CVelmFrame& frame, WORD) {
    if (!frame.Document()->SaveChanges(frame.Catalog().Folder())) {
        frame.Document()->modified = true;  // reported, and written with the next edit
        frame.SaveDocument();
    }
}

void CopyValue(CVelmFrame& frame, WORD) {
    frame.List().CopySelectedValue();
}

void PasteText(CVelmFrame& frame, WORD) {
    const HWND focus = GetFocus();
    if (focus == nullptr || focus == frame.Handle() || focus == frame.List().Handle()) {
        frame.Panel().Paste();
    } else {
        SendMessageW(focus, WM_PASTE, 0, 0);
    }
}

void ToggleRowSize(CVelmFrame& frame, WORD) {
    frame.List().ToggleRowSize();
}

void ShowFormats(CVelmFrame& frame, WORD) {
    frame.List().ShowSelectedFormats();
}

void SelectQuickFile(CVelmFrame& frame, WORD id) {
    const std::size_t index = static_cast<std::size_t>(id) - ID_QUICK_FILE_FIRST;
    const auto& documents = frame.Catalog().documents;
    if (index >= documents.size()) {
        return;
    }
    // A file that could not be read may be readable again.
    if (documents[index].get() != frame.Document() || !documents[index]->loaded) {
        frame.SelectFile(documents[index].get());
    }
}

void ShowQuickFileMenu(CVelmFrame& frame, WORD) {
    const CVelmMenu menu(CreatePopupMenu());
    const auto& documents = frame.Catalog().documents;
    const std::size_t count = std::min<std::size_t>(documents.size(), ID_QUICK_FILE_LAST - ID_QUICK_FILE_FIRST + 1);
    for (std::size_t i = 0; i < count; ++i) {
        const UINT check = documents[i].get() == frame.Document() ? MF_CHECKED : MF_UNCHECKED;
        AppendMenuW(menu.get(), MF_STRING | check, ID_QUICK_FILE_FIRST + i, Wide(MenuText(documents[i]->title)));
    }
    AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu.get(), MF_STRING, ID_OPEN_FILE, L"More...");

    // The menu's place is given from the top-left corner of the handheld's screen, which the frame fills.
    RECT corner{};
    GetWindowRect(frame.Handle(), &corner);
    TrackPopupMenu(menu.get(), TPM_LEFTALIGN | TPM_TOPALIGN, corner.left, corner.top + Scaled(QUICK_MENU_TOP), 0,
                   frame.Handle(), nullptr);
}

}  // namespace velm
