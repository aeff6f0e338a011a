#include "dialogs/conversion_fields.h"
#include "dialogs/dialogs.h"
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

// The same unit twice is refused in the words for a conversion that exists, deliberately.
constexpr std::array FAULT_TEXTS = {
    CVelmFaultText{EntryFault::FirstUnitIsMissing, IDC_UNIT1, u"Please select the first unit"},
    CVelmFaultText{EntryFault::SecondUnitIsMissing, IDC_UNIT2, u"Please select the second unit"},
    CVelmFaultText{EntryFault::ConversionExists, IDC_UNIT2, u"The conversion between 2 select units already exists"},
    CVelmFaultText{EntryFault::FactorDoesNotEvaluate, IDC_FACTOR, u" is no factor: it cannot be calculated."},
    CVelmFaultText{EntryFault::OffsetDoesNotEvaluate, IDC_OFFSET, u" is no offset: it cannot be calculated."},
    CVelmFaultText{EntryFault::ForwardFormulaDoesNotParse, IDC_FORWARD, u" is not a formula."},
    CVelmFaultText{EntryFault::ReverseFormulaDoesNotParse, IDC_REVERSE, u" is not a formula."},
};

class AddConversionDialog : public CVelmConversionDialog {
public:
    AddConversionDialog(CVelmConversionDoc& document, FormulaContext& context, bool advanced)
        : CVelmConversionDialog(IDD_ADD_CONVERSION, IDM_OK_CANCEL, u"Add Conversion", PLACEMENTS,
                                DialogRow(2) + HEADING_HEIGHT + CONVERSION_FIELDS_HEIGHT),
          document_(document),
          context_(context),
          advanced_(advanced) {}

protected:
    HWND OnInit() override {
        for (const auto& item : document_.items) {
            for (const int box : {IDC_UNIT1, IDC_UNIT2}) {
                Send(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(item->name)));
            }
        }
        ShowFields({advanced_, u"1", u"0", {}, {}});
        SHSipPreference(Handle(), SIP_UP);
        return nullptr;
    }

    void OnOk() override {
        const EntryFault fault =
            AddNewConversion(document_, ChosenUnit(IDC_UNIT1), ChosenUnit(IDC_UNIT2), Fields(advanced_), context_);
        if (!RefuseFault(fault, FAULT_TEXTS, MB_ICONSTOP)) {
            End(IDOK);
        }
    }

private:
    CVelmItem* ChosenUnit(int box) const {
        const LRESULT entry = Send(box, CB_GETCURSEL);
        return entry == CB_ERR ? nullptr : document_.GetItem(static_cast<std::size_t>(entry));
    }

    CVelmConversionDoc& document_;
    FormulaContext& context_;
    bool advanced_;
};

}  // namespace

int ShowAddConversionDialog(HWND parent, CVelmConversionDoc& document, FormulaContext& context, bool advanced) {
    return AddConversionDialog(document, context, advanced).Show(parent);
}

}  // namespace velm
