#include "dialogs/conversion_fields.h"
#include "dialogs/dialogs.h"
#include "platform/wide_text_win32.h"

namespace velm {
namespace {

constexpr std::size_t ROW_UNIT_MAX = 16;
constexpr std::size_t ROW_MAX = 37;

/// Of the list, in pixels at scale 1.
constexpr int MIN_LIST_HEIGHT = 44;

constexpr auto PLACEMENTS = JoinPlacements(
    std::array{
        CVelmPlacement{IDC_CONVERSION_LIST, FromStart(0), FromStart(0), FromEnd(0),
                       FromEnd(CONVERSION_FIELDS_HEIGHT + DIALOG_MARGIN)},
    },
    PlaceConversionFields(FromEnd(CONVERSION_FIELDS_HEIGHT)));

CVelmString RowText(const CVelmConversion& conversion) {
    const CVelmString text =
        conversion.unit1->ShortName().substr(0, ROW_UNIT_MAX) + u" <=> " + conversion.unit2->ShortName();
    return text.substr(0, ROW_MAX);
}

class ConversionsDialog : public CVelmConversionDialog {
public:
    ConversionsDialog(CVelmConversionDoc& document, FormulaContext& context)
        : CVelmConversionDialog(IDD_CONVERSIONS, IDM_CONVERSIONS, u"Unit Conversions", PLACEMENTS,
                                MIN_LIST_HEIGHT + CONVERSION_FIELDS_HEIGHT + DIALOG_MARGIN),
          document_(document),
          context_(context) {}

protected:
    HWND OnInit() override {
        for (const auto& conversion : document_.conversions) {
            AddRow(*conversion);
        }
        return nullptr;
    }

    void OnOk() override {
        Store();
        End(IDOK);
    }

    void OnCancel() override {
        Store();
        End(IDCANCEL);
    }

    void OnCommand(WORD id, WORD notification) override {
        switch (id) {
            case IDC_CONVERSION_LIST:
                if (notification == LBN_SELCHANGE) {
                    ShowDetails();
                }
                return;
            case IDC_FACTOR:
            case IDC_OFFSET:
            case IDC_FORWARD:
            case IDC_REVERSE:
                if (notification == EN_KILLFOCUS) {
                    Store();
                }
                return;
            case ID_DELETE_CONVERSION:
                Delete();
                return;
            case ID_ADD_STANDARD:
            case ID_ADD_ADVANCED:
                Add(id == ID_ADD_ADVANCED);
                return;
            default:
                return;
        }
    }

    bool OnListKey(WORD key) override {
        if (key != VK_DELETE && key != VK_INSERT) {
            return false;
        }
        // Posted: the list must finish handling its key first.
        PostMessageW(Handle(), WM_COMMAND, key == VK_DELETE ? ID_DELETE_CONVERSION : ID_ADD_STANDARD, 0);
        return true;
    }

private:
    int AddRow(CVelmConversion& conversion) const {
        const LRESULT row =
            Send(IDC_CONVERSION_LIST, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(RowText(conversion))));
        Send(IDC_CONVERSION_LIST, LB_SETITEMDATA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&conversion));
        return static_cast<int>(row);
    }

    int SelectedRow() const { return static_cast<int>(Send(IDC_CONVERSION_LIST, LB_GETCURSEL)); }

    /// Selects the conversion of the selected row and shows it.
    void ShowDetails() {
        const int row = SelectedRow();
        selected_ = row < 0 ? nullptr
                            : reinterpret_cast<CVelmConversion*>(
                                  Send(IDC_CONVERSION_LIST, LB_GETITEMDATA, static_cast<WPARAM>(row)));
        if (selected_ != nullptr) {
            ShowFields(EntryOf(*selected_));
        } else {
            ShowControls(LINEAR_CONTROLS, false);
            ShowControls(FORMULA_CONTROLS, false);
        }
    }

    void Store() {
        if (selected_ != nullptr) {
            EditConversion(document_, *selected_, Fields(selected_->IsFormula()), context_);
        }
    }

    void Delete() {
        const int row = SelectedRow();
        if (row < 0 || MessageBoxW(Handle(), L"Do you want to delete the conversion?", L"Delete",
                                   MB_YESNO | MB_ICONQUESTION) != IDYES) {
            return;
        }
        DeleteConversion(document_, *selected_);
        Send(IDC_CONVERSION_LIST, LB_DELETESTRING, static_cast<WPARAM>(row));
        ShowDetails();
        SetFocus(Control(IDC_CONVERSION_LIST));
    }

    void Add(bool advanced) {
        Store();
        if (ShowAddConversionDialog(Handle(), document_, context_, advanced) != IDOK) {
            return;
        }
        const int row = AddRow(*document_.conversions.back());
        Send(IDC_CONVERSION_LIST, LB_SETCURSEL, static_cast<WPARAM>(row));
        ShowDetails();
        SetFocus(Control(IDC_CONVERSION_LIST));  // the focused box may be hidden now
    }

    CVelmConversionDoc& document_;
    FormulaContext& context_;
    CVelmConversion* selected_ = nullptr;  ///< the document's, or null
};

}  // namespace

void ShowConversionsDialog(HWND parent, CVelmConversionDoc& document, FormulaContext& context) {
    ConversionsDialog(document, context).Show(parent);
}

}  // namespace velm
