#include <array>

#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
#include "model/document.h"
#include "resource.h"

namespace velm {
namespace {

constexpr std::array PLACEMENTS = {
    PlaceLabel(IDC_LABEL_1, 0),         PlaceField(IDC_ITEM_NAME, 0),
    PlaceLabel(IDC_LABEL_2, 1),         PlaceField(IDC_ITEM_IDENTIFIER, 1),
    PlaceLabel(IDC_LABEL_3, 2),         PlaceField(IDC_ITEM_VALUE, 2),
    PlaceLabel(IDC_ITEM_TYPE_LABEL, 3), PlaceField(IDC_ITEM_TYPE, 3, DIALOG_LIST_HEIGHT),
};

constexpr std::array FAULT_TEXTS = {
    CVelmFaultText{EntryFault::IdentifierIsNoName, IDC_ITEM_IDENTIFIER,
                   u" cannot be an identifier: formulas name an item by letters and digits, a letter first."},
    CVelmFaultText{EntryFault::IdentifierIsBuiltIn, IDC_ITEM_IDENTIFIER,
                   u" cannot be an identifier: in formulas it has a meaning of its own."},
    CVelmFaultText{EntryFault::IdentifierIsTaken, IDC_ITEM_IDENTIFIER,
                   u" is the identifier of another item of this file."},
    CVelmFaultText{EntryFault::FormulaDoesNotParse, IDC_ITEM_VALUE, u" is not a formula."},
};

class UnitPropertiesDialog : public CVelmDialog {
public:
    UnitPropertiesDialog(CVelmItem& item, const CVelmDocument& document, const CVelmClock& clock)
        : CVelmDialog(IDD_UNIT_PROPERTIES, IDM_OK_CANCEL, item.name.empty() ? u"New Unit" : u"Unit Properties",
                      PLACEMENTS, DialogRow(item.GetType() == ITEM_FORMULA ? 4 : 3)),
          item_(item),
          document_(document),
          clock_(clock) {}

protected:
    HWND OnInit() override {
        SetText(IDC_ITEM_NAME, item_.name);
        SetText(IDC_ITEM_VALUE, item_.valueText);
        SetText(IDC_ITEM_IDENTIFIER, item_.identifier);
        const CVelmFormulaItem* const formula = FormulaItem();
        if (formula == nullptr) {
            ShowControls(std::array<WORD, 2>{IDC_ITEM_TYPE, IDC_ITEM_TYPE_LABEL}, false);
            return nullptr;
        }
        for (const wchar_t* const type : {L"Input", L"Output"}) {
            Send(IDC_ITEM_TYPE, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(type));
        }
        Send(IDC_ITEM_TYPE, CB_SETCURSEL, static_cast<WPARAM>(formula->output));
        return nullptr;
    }

    void OnOk() override {
        const CVelmString name = Text(IDC_ITEM_NAME);
        if (name.empty()) {
            Refuse(IDC_ITEM_NAME, u"Please enter item name", 0, L"Edit Unit");
            return;
        }
        CVelmFormulaItem* const formula = FormulaItem();
        const auto output = formula == nullptr ? 0 : static_cast<std::int32_t>(Send(IDC_ITEM_TYPE, CB_GETCURSEL));
        const CVelmItemEntry entry{Text(IDC_ITEM_IDENTIFIER), Text(IDC_ITEM_VALUE), output == 1};
        if (RefuseFault(CheckItemEntry(document_, item_, entry, clock_), FAULT_TEXTS)) {
            return;
        }
        item_.name = name;
        item_.valueText = entry.valueText;
        item_.identifier = entry.identifier;
        if (formula != nullptr) {
            formula->output = output;
        }
        End(IDOK);
    }

private:
    CVelmFormulaItem* FormulaItem() const {
        return item_.GetType() == ITEM_FORMULA ? static_cast<CVelmFormulaItem*>(&item_) : nullptr;
    }

    CVelmItem& item_;
    const CVelmDocument& document_;
    const CVelmClock& clock_;
};

}  // namespace

int ShowUnitPropertiesDialog(HWND parent, CVelmItem& item, const CVelmDocument& document, const CVelmClock& clock) {
    return UnitPropertiesDialog(item, document, clock).Show(parent);
}

}  // namespace velm
