#include "dialogs/conversion_fields.h"
#include "dialogs/dialogs.h"
#include "formats/decimal_format.h"
#include "model/conversion_document.h"
#include "platform/wide_text_win32.h"

namespace velm {
namespace {

constexpr std::size_t ROW_UNIT_MAX = 16;
constexpr std::size_t ROW_MAX = 37;

/// Of the list, in pixels of an ordinary screen.
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

class ConversionsDialog : public CVelmDialog {
public:
    ConversionsDialog(CVelmConversionDoc& document, FormulaContext& context)
        : CVelmDialog(IDD_CONVERSIONS, IDM_CONVERSIONS, u"Unit Conversions", PLACEMENTS,
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
        StoreFocused();
        End(IDOK);
    }

    void OnCancel() override {
        StoreFocused();
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
                    Store(id);
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
        // The question or dialog opens when the list is done with its key.
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

    /// Makes the selected row's conversion the selected one, and shows it.
    void ShowDetails() {
        const int row = SelectedRow();
        selected_ = row < 0 ? nullptr
                            : reinterpret_cast<CVelmConversion*>(
                                  Send(IDC_CONVERSION_LIST, LB_GETITEMDATA, static_cast<WPARAM>(row)));
        const bool formula = selected_ != nullptr && selected_->IsFormula();
        if (formula) {
            SetText(IDC_FORWARD, selected_->forwardFormula, DIALOG_FREE_TEXT_MAX);
            SetText(IDC_REVERSE, selected_->reverseFormula, DIALOG_FREE_TEXT_MAX);
        } else if (selected_ != nullptr) {
            factorText_ = FormatDecimal(selected_->factor, false);
            offsetText_ = FormatDecimal(selected_->offset, false);
            SetText(IDC_FACTOR, factorText_);
            SetText(IDC_OFFSET, offsetText_);
        }
        ShowControls(LINEAR_CONTROLS, selected_ != nullptr && !formula);
        ShowControls(FORMULA_CONTROLS, formula);
    }

    /// Takes over what a box holds, when it belongs to the selected conversion.
    void Store(int box) {
        if (selected_ == nullptr || selected_->IsFormula() != (box == IDC_FORWARD || box == IDC_REVERSE)) {
            return;
        }
        if (box == IDC_FORWARD) {
            selected_->forwardFormula = Text(box, DIALOG_FREE_TEXT_MAX);
        } else if (box == IDC_REVERSE) {
            selected_->reverseFormula = Text(box, DIALOG_FREE_TEXT_MAX);
        } else if (box == IDC_FACTOR) {
            StoreNumber(box, factorText_, selected_->factor);
        } else {
            StoreNumber(box, offsetText_, selected_->offset);
        }
    }

    /// A text that was not touched has fewer digits than its number and leaves it alone.
    void StoreNumber(int box, CVelmString& shown, double& number) const {
        const CVelmString text = Text(box);
        if (text != shown && EvaluateFormula(context_, text, number)) {
            shown = text;
        }
    }

    void StoreFocused() {
        const HWND focus = GetFocus();
        for (const int box : {IDC_FACTOR, IDC_OFFSET, IDC_FORWARD, IDC_REVERSE}) {
            if (focus == Control(box)) {
                Store(box);
            }
        }
    }

    void Delete() {
        const int row = SelectedRow();
        if (row < 0 || MessageBoxW(Handle(), L"Do you want to delete the conversion?", L"Delete",
                                   MB_YESNO | MB_ICONQUESTION) != IDYES) {
            return;
        }
        document_.RemoveConversion(selected_);
        Send(IDC_CONVERSION_LIST, LB_DELETESTRING, static_cast<WPARAM>(row));
        ShowDetails();
        SetFocus(Control(IDC_CONVERSION_LIST));
    }

    void Add(bool advanced) {
        StoreFocused();
        auto conversion = ShowAddConversionDialog(Handle(), document_, context_, advanced);
        if (!conversion) {
            return;
        }
        const int row = AddRow(*document_.AddConversion(std::move(conversion)));
        Send(IDC_CONVERSION_LIST, LB_SETCURSEL, static_cast<WPARAM>(row));
        ShowDetails();
        SetFocus(Control(IDC_CONVERSION_LIST));  // the box that had it may be hidden now
    }

    CVelmConversionDoc& document_;
    FormulaContext& context_;
    CVelmConversion* selected_ = nullptr;  ///< the document's, or null
    CVelmString factorText_;
    CVelmString offsetText_;
};

}  // namespace

void ShowConversionsDialog(HWND parent, CVelmConversionDoc& document, FormulaContext& context) {
    ConversionsDialog(document, context).Show(parent);
}

}  // namespace velm
