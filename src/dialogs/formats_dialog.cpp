#include <array>
#include <bit>

#include "dialogs/dialog_frame.h"
#include "dialogs/dialogs.h"
#include "formats/decimal_format.h"
#include "formats/format_table.h"
#include "formats/value_format.h"
#include "formula/tokenizer.h"
#include "resource.h"

namespace velm {
namespace {

/// The check box that allows a format.
WORD BoxOf(const FormatKind& format) {
    return static_cast<WORD>(IDC_FIRST_FORMAT + std::countr_zero(format.code));
}

struct PartBoxes {
    WORD factor;
    WORD label;
    std::size_t maxLabel;
};

constexpr std::size_t LABEL_MAX = 8;

// The third label has no limit, deliberately: files with longer ones there keep them.
constexpr std::array<PartBoxes, COMPOUND_PARTS> PART_BOXES = {
    PartBoxes{IDC_PART_FACTOR_1, IDC_PART_LABEL_1, LABEL_MAX},
    PartBoxes{IDC_PART_FACTOR_2, IDC_PART_LABEL_2, LABEL_MAX},
    PartBoxes{IDC_PART_FACTOR_3, IDC_PART_LABEL_3, DIALOG_FREE_TEXT_MAX},
    PartBoxes{IDC_PART_FACTOR_4, IDC_PART_LABEL_4, LABEL_MAX},
};

constexpr double FACTOR_MAX = 1e20;

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
        for (const FormatKind& format : Formats()) {
            Check(BoxOf(format), (format_.allowedFormats & format.code) != 0);
        }
        std::size_t used = 0;
        if (IsChecked(IDC_FORMAT_COMPOUND)) {
            used = 1;
            while (used < PART_BOXES.size() && format_.compoundParts[used].factor != 0.0) {
                ++used;
            }
        }
        for (std::size_t i = 0; i < PART_BOXES.size(); ++i) {
            const CVelmCompoundPart part = i < used ? format_.compoundParts[i] : CVelmCompoundPart();
            factors_[i] = i == 0 ? 1.0 : part.factor;
            factorTexts_[i] = NumberToText(factors_[i]);
            SetText(PART_BOXES[i].factor, factorTexts_[i]);
            SetText(PART_BOXES[i].label, part.label, PART_BOXES[i].maxLabel);
        }
        return nullptr;
    }

    void OnCommand(WORD id, WORD notification) override {
        if (notification == BN_CLICKED && (id == IDC_FORMAT_DATE || id == IDC_FORMAT_DATETIME)) {
            Check(id == IDC_FORMAT_DATE ? IDC_FORMAT_DATETIME : IDC_FORMAT_DATE, false);
        }
    }

    void OnOk() override {
        for (std::size_t i = 1; i < PART_BOXES.size(); ++i) {
            if (!ReadFactor(i)) {
                Refuse(PART_BOXES[i].factor, u"Please enter a number between 0 and 1E20.");
                return;
            }
        }
        for (const PartBoxes& boxes : PART_BOXES) {
            if (LabelText(boxes).size() > boxes.maxLabel) {
                Refuse(boxes.label, u"Please enter no more than 8 characters.");
                return;
            }
        }
        std::uint32_t mask = 0;
        for (const FormatKind& format : Formats()) {
            mask |= IsChecked(BoxOf(format)) ? format.code : 0;
        }
        format_.SetAllowedFormats(mask);
        if ((mask & FMT_COMPOUND) != 0) {
            StoreParts();
        }
        End(IDOK);
    }

private:
    void Check(int control, bool on) const { Send(control, BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED); }
    bool IsChecked(int control) const { return Send(control, BM_GETCHECK) == BST_CHECKED; }
    CVelmString LabelText(const PartBoxes& boxes) const { return Text(boxes.label, DIALOG_FREE_TEXT_MAX); }

    /// Reads a factor that was changed; one that was not keeps the digits that its box does not show. False when the
    /// factor is none or out of range, which a file's own can be too.
    bool ReadFactor(std::size_t part) {
        const CVelmString text = Text(PART_BOXES[part].factor);
        if (text != factorTexts_[part]) {
            double factor = 0.0;
            if (!text.empty() && !ScanNumber(ToLowerAscii(text), factor)) {
                return false;
            }
            factors_[part] = factor;
            factorTexts_[part] = text;
        }
        return factors_[part] >= 0.0 && factors_[part] <= FACTOR_MAX;
    }

    void StoreParts() const {
        CVelmCompoundParts& parts = format_.compoundParts;
        parts[0] = {LabelText(PART_BOXES[0]), 1.0};
        for (std::size_t i = 1; i < parts.size(); ++i) {
            parts[i].factor = factors_[i];
            if (factors_[i] == 0.0) {
                return;
            }
            parts[i].label = LabelText(PART_BOXES[i]);
        }
    }

    CVelmValueFormat& format_;
    std::array<double, COMPOUND_PARTS> factors_{};
    std::array<CVelmString, COMPOUND_PARTS> factorTexts_;
};

}  // namespace

int ShowFormatsDialog(HWND parent, CVelmValueFormat& format) {
    return FormatsDialog(format).Show(parent);
}

}  // namespace velm
