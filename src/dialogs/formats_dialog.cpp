#include <array>
#include <bit>

#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
#include "formats/format_table.h"
#include "resource.h"

namespace velm {
namespace {

/// The check box that allows a format.
WORD BoxOf(const FormatKind& format) {
    return static_cast<WORD>(IDC_FIRST_FORMAT + std::countr_zero(format.code));
}

constexpr std::array<WORD, COMPOUND_PARTS> FACTOR_BOXES = {IDC_PART_FACTOR_1, IDC_PART_FACTOR_2, IDC_PART_FACTOR_3,
                                                           IDC_PART_FACTOR_4};
constexpr std::array<WORD, COMPOUND_PARTS> LABEL_BOXES = {IDC_PART_LABEL_1, IDC_PART_LABEL_2, IDC_PART_LABEL_3,
                                                          IDC_PART_LABEL_4};

// Places, in pixels at scale 1.
constexpr int CHECK_HEIGHT = 18;
constexpr int PART_TOP = 4 * CHECK_HEIGHT;
constexpr int PART_HEIGHT = 22;
constexpr int BASES_TOP = PART_TOP + COMPOUND_PARTS * PART_HEIGHT + DIALOG_MARGIN;
constexpr int OTHERS_TOP = BASES_TOP + 2 * CHECK_HEIGHT;
constexpr int MIN_HEIGHT = OTHERS_TOP + 2 * CHECK_HEIGHT;
constexpr int INDENT = 18;

constexpr CVelmPlacement Line(WORD control, int left, int top) {
    return {control, FromStart(left), FromStart(top), FromEnd(0), FromStart(top + CHECK_HEIGHT)};
}

constexpr CVelmPlacement Third(WORD control, int number, int top) {
    return {control, {number * 30, INDENT}, FromStart(top), {(number + 1) * 30, INDENT}, FromStart(top + CHECK_HEIGHT)};
}

/// The left or the right half of a line, indented.
constexpr CVelmPlacement Half(WORD control, bool right, int top, int height) {
    return {control, right ? CVelmEdge{50, 6} : FromStart(INDENT), FromStart(top),
            right ? FromEnd(DIALOG_MARGIN) : CVelmEdge{50, 2}, FromStart(top + height)};
}

constexpr CVelmPlacement PartBox(WORD control, bool right, int part) {
    return Half(control, right, PART_TOP + part * PART_HEIGHT, PART_HEIGHT - 2);
}

constexpr std::array PLACEMENTS = {
    Line(IDC_FORMAT_DECIMAL, DIALOG_MARGIN, 0),
    Line(IDC_FORMAT_CURRENCY, DIALOG_MARGIN, CHECK_HEIGHT),
    Line(IDC_FORMAT_COMPOUND, DIALOG_MARGIN, 2 * CHECK_HEIGHT),
    Half(IDC_LABEL_1, false, 3 * CHECK_HEIGHT + 2, CHECK_HEIGHT - 2),
    Half(IDC_LABEL_2, true, 3 * CHECK_HEIGHT + 2, CHECK_HEIGHT - 2),
    PartBox(IDC_PART_FACTOR_1, false, 0),
    PartBox(IDC_PART_LABEL_1, true, 0),
    PartBox(IDC_PART_FACTOR_2, false, 1),
    PartBox(IDC_PART_LABEL_2, true, 1),
    PartBox(IDC_PART_FACTOR_3, false, 2),
    PartBox(IDC_PART_LABEL_3, true, 2),
    PartBox(IDC_PART_FACTOR_4, false, 3),
    PartBox(IDC_PART_LABEL_4, true, 3),
    Line(IDC_LABEL_3, DIALOG_MARGIN, BASES_TOP + 2),
    Third(IDC_FORMAT_HEX, 0, BASES_TOP + CHECK_HEIGHT),
    Third(IDC_FORMAT_OCTAL, 1, BASES_TOP + CHECK_HEIGHT),
    Third(IDC_FORMAT_BINARY, 2, BASES_TOP + CHECK_HEIGHT),
    Line(IDC_LABEL_4, DIALOG_MARGIN, OTHERS_TOP + 2),
    Third(IDC_FORMAT_DATE, 0, OTHERS_TOP + CHECK_HEIGHT),
    CVelmPlacement{IDC_FORMAT_DATETIME,
                   {30, INDENT},
                   FromStart(OTHERS_TOP + CHECK_HEIGHT),
                   FromEnd(0),
                   FromStart(OTHERS_TOP + 2 * CHECK_HEIGHT)},
};

class FormatsDialog : public CVelmDialog {
public:
    explicit FormatsDialog(CVelmValueFormat& format)
        : CVelmDialog(IDD_FORMATS, IDM_OK_CANCEL, u"Formats", PLACEMENTS, MIN_HEIGHT), format_(format) {}

protected:
    HWND OnInit() override {
        const CVelmFormatEntry entry = EntryOf(format_);
        for (const FormatKind& format : Formats()) {
            Check(BoxOf(format), (entry.allowed & format.code) != 0);
        }
        for (std::size_t i = 0; i < entry.parts.size(); ++i) {
            SetText(FACTOR_BOXES[i], entry.parts[i].first);
            SetText(LABEL_BOXES[i], entry.parts[i].second, MAX_PART_LABELS[i]);
        }
        return nullptr;
    }

    void OnCommand(WORD id, WORD notification) override {
        if (notification == BN_CLICKED && (id == IDC_FORMAT_DATE || id == IDC_FORMAT_DATETIME)) {
            Check(id == IDC_FORMAT_DATE ? IDC_FORMAT_DATETIME : IDC_FORMAT_DATE, false);
        }
    }

    void OnOk() override {
        CVelmFormatEntry entry;
        for (const FormatKind& format : Formats()) {
            entry.allowed |= IsChecked(BoxOf(format)) ? format.code : 0;
        }
        for (std::size_t i = 0; i < entry.parts.size(); ++i) {
            entry.parts[i] = {Text(FACTOR_BOXES[i]), Text(LABEL_BOXES[i], DIALOG_FREE_TEXT_MAX)};
        }
        std::size_t part = 0;
        switch (EditFormats(format_, entry, part)) {
            case EntryFault::FactorIsOutOfRange:
                Refuse(FACTOR_BOXES[part], u"Please enter a number between 0 and 1E20.");
                return;
            case EntryFault::LabelIsTooLong:
                Refuse(LABEL_BOXES[part], u"Please enter no more than 8 characters.");
                return;
            default:
                End(IDOK);
        }
    }

private:
    void Check(int control, bool on) const { Send(control, BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED); }
    bool IsChecked(int control) const { return Send(control, BM_GETCHECK) == BST_CHECKED; }

    CVelmValueFormat& format_;
};

}  // namespace

int ShowFormatsDialog(HWND parent, CVelmValueFormat& format) {
    return FormatsDialog(format).Show(parent);
}

}  // namespace velm
