#include <array>
#include <utility>

#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
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
    CVelmFaultText{EntryFault::NameIsEmpty, IDC_ITEM_NAME, u"Please enter item name", L"Edit Unit"},
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
    /// `item` is null, and `entry` empty, for a new one; `hasType`: it can be an output.
    UnitPropertiesDialog(CVelmDocument& document, CVelmItem* item, CVelmItemEntry entry, bool hasType,
                         const CVelmClock& clock)
        : CVelmDialog(IDD_UNIT_PROPERTIES, IDM_OK_CANCEL, entry.name.empty() ? u"New Unit" : u"Unit Properties",
                      PLACEMENTS, DialogRow(hasType ? 4 : 3)),
          document_(document),
          item_(item),
          entry_(std::move(entry)),
          hasType_(hasType),
          clock_(clock) {}

protected:
    HWND OnInit() override {
        SetText(IDC_ITEM_NAME, entry_.name);
        SetText(IDC_ITEM_VALUE, entry_.valueText);
        SetText(IDC_ITEM_IDENTIFIER, entry_.identifier);
        if (!hasType_) {
            ShowControls(std::array<WORD, 2>{IDC_ITEM_TYPE, IDC_ITEM_TYPE_LABEL}, false);
            return nullptr;
        }
        for (const wchar_t* const type : {L"Input", L"Output"}) {
            Send(IDC_ITEM_TYPE, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(type));
        }
        Send(IDC_ITEM_TYPE, CB_SETCURSEL, static_cast<WPARAM>(entry_.output));
        return nullptr;
    }

    void OnOk() override {
        const auto output = hasType_ ? static_cast<std::int32_t>(Send(IDC_ITEM_TYPE, CB_GETCURSEL)) : 0;
        const CVelmItemEntry entry{Text(IDC_ITEM_NAME, DIALOG_FREE_TEXT_MAX),
                                   Text(IDC_ITEM_IDENTIFIER, DIALOG_FREE_TEXT_MAX),
                                   Text(IDC_ITEM_VALUE, DIALOG_FREE_TEXT_MAX), output};
        const EntryFault fault =
            item_ != nullptr ? EditItem(document_, *item_, entry, clock_) : AddNewItem(document_, entry, clock_);
        if (!RefuseFault(fault, FAULT_TEXTS)) {
            End(IDOK);
        }
    }

private:
    CVelmDocument& document_;
    CVelmItem* item_;
    const CVelmItemEntry entry_;
    const bool hasType_;
    const CVelmClock& clock_;
};

}  // namespace

int ShowUnitPropertiesDialog(HWND parent, CVelmDocument& document, CVelmItem* item, const CVelmClock& clock) {
    const bool hasType = item != nullptr ? item->GetType() == ITEM_FORMULA : document.GetKind() == KIND_CALCULATION;
    const CVelmItemEntry entry = item != nullptr ? EntryOf(*item) : CVelmItemEntry();
    return UnitPropertiesDialog(document, item, entry, hasType, clock).Show(parent);
}

}  // namespace velm
