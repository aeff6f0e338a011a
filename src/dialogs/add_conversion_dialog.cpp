#include "dialogs/conversion_fields.h"
#include "dialogs/dialogs.h"
#include "model/conversion_document.h"
#include "platform/wide_text_win32.h"
#include "pocketpc/shell.h"

namespace velm {
namespace {

constexpr int HEADING_HEIGHT = 18;

constexpr auto PLACEMENTS = JoinPlacements(
    std::array{
        PlaceLabel(IDC_LABEL_1, 0),
        PlaceField(IDC_UNIT1, 0, DIALOG_LIST_HEIGHT),
        PlaceLabel(IDC_LABEL_2, 1),
        PlaceField(IDC_UNIT2, 1, DIALOG_LIST_HEIGHT),
        CVelmPlacement{IDC_LABEL_3, FromStart(DIALOG_MARGIN), FromStart(DialogRow(2)), FromEnd(DIALOG_MARGIN),
                       FromStart(DialogRow(2) + HEADING_HEIGHT)},
    },
    PlaceConversionFields(FromStart(DialogRow(2) + HEADING_HEIGHT)));

constexpr std::array FAULT_TEXTS = {
    CVelmFaultText{EntryFault::FactorDoesNotEvaluate, IDC_FACTOR, u" is no factor: it cannot be calculated."},
    CVelmFaultText{EntryFault::OffsetDoesNotEvaluate, IDC_OFFSET, u" is no offset: it cannot be calculated."},
    CVelmFaultText{EntryFault::ForwardFormulaDoesNotParse, IDC_FORWARD, u" is not a formula."},
    CVelmFaultText{EntryFault::ReverseFormulaDoesNotParse, IDC_REVERSE, u" is not a formula."},
};

class AddConversionDialog : public CVelmDialog {
public:
    AddConversionDialog(CVelmConversionDoc& document, FormulaContext& context, bool advanced)
        : CVelmDialog(IDD_ADD_CONVERSION, IDM_OK_CANCEL, u"Add Conversion", PLACEMENTS,
                      DialogRow(2) + HEADING_HEIGHT + CONVERSION_FIELDS_HEIGHT),
          document_(document),
          context_(context),
          advanced_(advanced) {}

    std::unique_ptr<CVelmConversion> conversion;

protected:
    HWND OnInit() override {
        for (const auto& item : document_.items) {
            for (const int box : {IDC_UNIT1, IDC_UNIT2}) {
                Send(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(item->name)));
            }
        }
        SetText(IDC_FACTOR, u"1");
        SetText(IDC_OFFSET, u"0");
        SetText(IDC_FORWARD, {}, DIALOG_FREE_TEXT_MAX);
        SetText(IDC_REVERSE, {}, DIALOG_FREE_TEXT_MAX);
        ShowControls(LINEAR_CONTROLS, !advanced_);
        ShowControls(FORMULA_CONTROLS, advanced_);
        SHSipPreference(Handle(), SIP_UP);
        return nullptr;
    }

    void OnOk() override {
        CVelmItem* const unit1 = ChosenUnit(IDC_UNIT1);
        CVelmItem* const unit2 = ChosenUnit(IDC_UNIT2);
        if (unit1 == nullptr) {
            Refuse(IDC_UNIT1, u"Please select the first unit", MB_ICONSTOP);
        } else if (unit2 == nullptr) {
            Refuse(IDC_UNIT2, u"Please select the second unit", MB_ICONSTOP);
        } else if (unit1 == unit2 || document_.FindConversion(unit1, unit2) != nullptr) {
            // The same words for the same unit twice, deliberately.
            Refuse(IDC_UNIT2, u"The conversion between 2 select units already exists", MB_ICONSTOP);
        } else if (TakeFields(unit1, unit2)) {
            End(IDOK);
        }
    }

private:
    CVelmItem* ChosenUnit(int box) const {
        const LRESULT entry = Send(box, CB_GETCURSEL);
        return entry == CB_ERR ? nullptr : document_.GetItem(static_cast<std::size_t>(entry));
    }

    /// Makes the conversion; false, with the user told, when it could never work.
    bool TakeFields(CVelmItem* unit1, CVelmItem* unit2) {
        auto made = std::make_unique<CVelmConversion>(document_);
        made->unit1 = unit1;
        made->unit2 = unit2;
        EntryFault fault = EntryFault::None;
        if (advanced_) {
            made->formulaFlag = 1;
            made->forwardFormula = Text(IDC_FORWARD, DIALOG_FREE_TEXT_MAX);
            made->reverseFormula = Text(IDC_REVERSE, DIALOG_FREE_TEXT_MAX);
            fault = CheckFormulaPair(made->forwardFormula, made->reverseFormula);
        } else {
            fault = TakeLinearEntry({Text(IDC_FACTOR), Text(IDC_OFFSET)}, context_, *made);
        }
        if (RefuseFault(fault, FAULT_TEXTS, MB_ICONSTOP)) {
            return false;
        }
        conversion = std::move(made);
        return true;
    }

    CVelmConversionDoc& document_;
    FormulaContext& context_;
    bool advanced_;
};

}  // namespace

std::unique_ptr<CVelmConversion> ShowAddConversionDialog(HWND parent, CVelmConversionDoc& document,
                                                         FormulaContext& context, bool advanced) {
    AddConversionDialog dialog(document, context, advanced);
    dialog.Show(parent);
    return std::move(dialog.conversion);
}

}  // namespace velm
