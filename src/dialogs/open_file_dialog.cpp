#include <algorithm>
#include <array>

#include "dialogs/category_box.h"
#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
#include "model/catalog.h"
#include "model/reference_list.h"
#include "platform/wide_text_win32.h"
#include "pocketpc/shell.h"
#include "resource.h"
#include "ui/display_scale.h"
#include "ui/wait_cursor.h"
#include "ui/window_text.h"

namespace velm {
namespace {

/// What the dialog ends with for the catalog's first file; the following ones follow.
constexpr int FIRST_FILE_CODE = ID_QUICK_FILE_FIRST;

// What the entries of the category box carry.
constexpr LPARAM ALL_FILES = 0;
constexpr LPARAM ONE_CATEGORY = 1;
constexpr LPARAM REFERENCES = -1;

// Pixels at scale 1.
constexpr int TITLE_WIDTH = 140;
constexpr int COUNT_WIDTH = 76;
constexpr int TITLE_ROOM_LESS = 14;
constexpr int LIST_BOTTOM_ROOM = 30;
constexpr int BOX_RIGHT_ROOM = 10;
constexpr int BOX_TOP = 3;
constexpr int LIST_TOP = 28;
constexpr int MIN_HEIGHT = 84;

constexpr std::array PLACEMENTS = {
    CVelmPlacement{IDC_LABEL_1, FromStart(DIALOG_MARGIN), FromStart(BOX_TOP + 3), FromStart(DIALOG_LABEL_WIDTH),
                   FromStart(LIST_TOP)},
    CVelmPlacement{IDC_CATEGORY, FromStart(DIALOG_LABEL_WIDTH), FromStart(BOX_TOP), FromEnd(BOX_RIGHT_ROOM),
                   FromEnd(LIST_BOTTOM_ROOM)},
    CVelmPlacement{IDC_LIST, FromStart(0), FromStart(LIST_TOP), FromEnd(0), FromEnd(0)},
};

class OpenFileDialog : public CVelmDialog {
public:
    OpenFileDialog(CVelmCatalog& catalog, CVelmReferenceList& references, const CVelmString& referenceFolder,
                   CVelmHtmlLibrary& html)
        : CVelmDialog(IDD_OPEN_FILE, IDM_OK_CANCEL, u"Open File", PLACEMENTS, MIN_HEIGHT),
          catalog_(catalog),
          references_(references),
          referenceFolder_(referenceFolder),
          html_(html) {}

protected:
    HWND OnInit() override {
        InitList(IDC_LIST, 0);
        AddColumn(IDC_LIST, 0, LVCFMT_LEFT, TITLE_WIDTH);
        AddColumn(IDC_LIST, 1, LVCFMT_RIGHT, COUNT_WIDTH);
        FillCategories();
        ShowFilesOf(catalog_.documents.empty() ? CVelmString() : catalog_.documents.front()->category);
        SHSipPreference(Handle(), SIP_DOWN);
        return Control(IDC_LIST);
    }

    void OnLayout() override {
        RECT area{};
        GetWindowRect(Control(IDC_LIST), &area);
        Send(IDC_LIST, LVM_SETCOLUMNWIDTH, 0, 2 * Width(area) / 3 - Scaled(TITLE_ROOM_LESS));
        Send(IDC_LIST, LVM_SETCOLUMNWIDTH, 1, Width(area) / 3);
    }

    void OnCommand(WORD id, WORD notification) override {
        if (id == IDC_CATEGORY && notification == CBN_SELCHANGE) {
            OnCategory();
        }
    }

    LRESULT OnNotify(const NMHDR& notification) override {
        const bool tapped = notification.code == NM_CLICK || notification.code == NM_DBLCLK;
        if (notification.idFrom == IDC_LIST && tapped &&
            reinterpret_cast<const NMITEMACTIVATE&>(notification).iItem >= 0 && Selected() >= 0) {
            PostMessageW(Handle(), WM_COMMAND, IDOK, 0);
        }
        return 0;
    }

    void OnOk() override {
        const int row = Selected();
        if (row < 0) {
            Tell(u"Please select a file from the list");
            return;
        }
        const LPARAM value = RowValue(IDC_LIST, row);
        if (value >= 0) {
            End(FIRST_FILE_CODE + value);
        } else {
            ShowReference(static_cast<std::size_t>(-value - 1));
        }
    }

private:
    void FillCategories() const {
        const HWND box = Control(IDC_CATEGORY);
        const LRESULT all = AddBoxEntry(box, u"- All -", ALL_FILES);
        const LRESULT current = AddCategories(box, catalog_, ONE_CATEGORY);
        AddBoxEntry(box, u"- Other Text References -", REFERENCES);
        Send(IDC_CATEGORY, CB_SETCURSEL, static_cast<WPARAM>(current != CB_ERR ? current : all));
    }

    void AddFile(const CVelmString& title, LPARAM value, const CVelmString& count) const {
        const int row = AddRow(IDC_LIST, title, value);
        ListView_SetItemText(Control(IDC_LIST), row, 1, const_cast<wchar_t*>(Wide(count)));
    }

    /// All files for an empty category.
    void ShowFilesOf(const CVelmString& category) const {
        Send(IDC_LIST, LVM_DELETEALLITEMS);
        Send(IDC_LIST, LVM_SETITEMCOUNT, catalog_.documents.size());
        for (std::size_t i = 0; i < catalog_.documents.size(); ++i) {
            CVelmDocument& document = *catalog_.documents[i];
            if (category.empty() || category == document.category) {
                AddFile(document.title, static_cast<LPARAM>(i), CVelmCatalog::UnitCountText(document));
            }
        }
    }

    void ShowReferences() const {
        if (references_.names.empty()) {
            // The settings' folder as it is now, deliberately: only data files stay with the one of the start.
            const auto wait = ShowWaitCursor();
            references_.ScanReferences(referenceFolder_);
        }
        Send(IDC_LIST, LVM_DELETEALLITEMS);
        for (std::size_t i = 0; i < references_.names.size(); ++i) {
            AddFile(references_.names[i], -static_cast<LPARAM>(i) - 1, {});
        }
    }

    void OnCategory() const {
        const LRESULT entry = Send(IDC_CATEGORY, CB_GETCURSEL);
        const LRESULT kind = Send(IDC_CATEGORY, CB_GETITEMDATA, static_cast<WPARAM>(entry));
        if (kind == REFERENCES) {
            ShowReferences();
        } else {
            ShowFilesOf(kind == ONE_CATEGORY ? WindowText(Control(IDC_CATEGORY)) : CVelmString());
        }
    }

    void ShowReference(std::size_t index) const {
        CVelmString page;
        if (references_.ReadReference(index, page)) {
            ShowHtmlViewer(Handle(), references_.names[index], page, html_);
        }
    }

    int Selected() const {
        return static_cast<int>(Send(IDC_LIST, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    }

    CVelmCatalog& catalog_;
    CVelmReferenceList& references_;
    const CVelmString& referenceFolder_;
    CVelmHtmlLibrary& html_;
};

}  // namespace

int ShowOpenFileDialog(HWND parent, CVelmCatalog& catalog, CVelmReferenceList& references,
                       const CVelmString& referenceFolder, CVelmHtmlLibrary& html) {
    {
        const auto wait = ShowWaitCursor();
        catalog.ScanFolder();
    }
    const int index = OpenFileDialog(catalog, references, referenceFolder, html).Show(parent) - FIRST_FILE_CODE;
    return index < 0 || index >= static_cast<int>(catalog.documents.size()) ? -1 : index;
}

}  // namespace velm
