#include <array>

#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
#include "model/document.h"
#include "platform/wide_text_win32.h"
#include "pocketpc/shell.h"
#include "resource.h"
#include "ui/display_scale.h"

namespace velm {
namespace {

// Pixels at scale 1.
constexpr int COLUMN_WIDTH = 180;
constexpr int COLUMN_ROOM_LESS = 14;

constexpr std::array PLACEMENTS = {
    CVelmPlacement{IDC_LIST, FromStart(0), FromStart(0), FromEnd(0), FromEnd(0)},
};

class UnitsDialog : public CVelmDialog {
public:
    explicit UnitsDialog(const CVelmDocument& document)
        : CVelmDialog(IDD_SHOW_UNITS, IDM_OK_CANCEL, u"Units/Items", PLACEMENTS), document_(document) {}

    std::vector<bool> shown;  ///< by position, once the dialog has ended with OK

protected:
    HWND OnInit() override {
        InitList(IDC_LIST, LVS_EX_CHECKBOXES);
        AddColumn(IDC_LIST, 0, LVCFMT_LEFT, COLUMN_WIDTH);
        Send(IDC_LIST, LVM_SETITEMCOUNT, document_.ItemCount());
        for (std::size_t i = 0; i < document_.ItemCount(); ++i) {
            const CVelmItem& item = *document_.GetItem(i);
            const int row = AddRow(IDC_LIST, item.name, static_cast<LPARAM>(i));
            ListView_SetCheckState(Control(IDC_LIST), row, item.shown != 0);
        }
        ListView_SetItemState(Control(IDC_LIST), 0, LVIS_FOCUSED | LVIS_SELECTED, LVIS_FOCUSED | LVIS_SELECTED);
        SHSipPreference(Handle(), SIP_DOWN);
        return nullptr;
    }

    void OnLayout() override {
        const LONG left = PlaceInParent(Control(IDC_LIST)).left;
        Send(IDC_LIST, LVM_SETCOLUMNWIDTH, 0, Width(Room()) - left - Scaled(COLUMN_ROOM_LESS));
        const LRESULT focused = Send(IDC_LIST, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED);
        Send(IDC_LIST, LVM_ENSUREVISIBLE, static_cast<WPARAM>(focused), FALSE);
    }

    void OnOk() override {
        const auto rows = static_cast<int>(Send(IDC_LIST, LVM_GETITEMCOUNT));
        shown.resize(static_cast<std::size_t>(rows));
        for (int row = 0; row < rows; ++row) {
            const auto index = static_cast<std::size_t>(RowValue(IDC_LIST, row));
            shown[index] = ListView_GetCheckState(Control(IDC_LIST), row) != 0;
        }
        End(IDOK);
    }

private:
    const CVelmDocument& document_;
};

}  // namespace

std::optional<std::vector<bool>> ShowUnitsDialog(HWND parent, const CVelmDocument& document) {
    UnitsDialog dialog(document);
    return dialog.Show(parent) == IDOK ? std::optional(dialog.shown) : std::nullopt;
}

}  // namespace velm
