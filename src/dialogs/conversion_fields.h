#pragma once

#include <array>
#include <cstddef>

#include "dialogs/dialog_frame.h"
#include "model/document_edits.h"
#include "resource.h"

namespace velm {

// The fields of one conversion, which two dialogs show: those of a linear one or those of a pair of formulas.

constexpr std::array<WORD, 5> LINEAR_CONTROLS = {IDC_UNIT1_LABEL, IDC_UNIT2_LABEL, IDC_OFFSET_LABEL, IDC_FACTOR,
                                                 IDC_OFFSET};
constexpr std::array<WORD, 4> FORMULA_CONTROLS = {IDC_FORWARD_LABEL, IDC_REVERSE_LABEL, IDC_FORWARD, IDC_REVERSE};

/// Pixels at scale 1 that both rows of fields need.
constexpr int CONVERSION_FIELDS_HEIGHT = 2 * DIALOG_ROW_HEIGHT;

/// Both rows of fields, the first with its top at `top`.
constexpr std::array<CVelmPlacement, 9> PlaceConversionFields(CVelmEdge top) {
    constexpr int LABEL_RIGHT = 62;
    constexpr int BOX_LEFT = 65;
    constexpr int UNIT_ROOM = 50;
    const auto below = [top](int offset) { return CVelmEdge{top.percent, top.offset + offset}; };
    const auto label = [&](WORD control, int row) {
        return CVelmPlacement{control, FromStart(0), below(row * DIALOG_ROW_HEIGHT + 3), FromStart(LABEL_RIGHT),
                              below(row * DIALOG_ROW_HEIGHT + DIALOG_FIELD_HEIGHT)};
    };
    const auto box = [&](WORD control, int row, int right) {
        return CVelmPlacement{control, FromStart(BOX_LEFT), below(row * DIALOG_ROW_HEIGHT), FromEnd(right),
                              below(row * DIALOG_ROW_HEIGHT + DIALOG_FIELD_HEIGHT)};
    };
    return {label(IDC_UNIT1_LABEL, 0),
            box(IDC_FACTOR, 0, UNIT_ROOM),
            CVelmPlacement{IDC_UNIT2_LABEL, FromEnd(UNIT_ROOM - 3), below(3), FromEnd(0), below(DIALOG_FIELD_HEIGHT)},
            label(IDC_OFFSET_LABEL, 1),
            box(IDC_OFFSET, 1, UNIT_ROOM),
            label(IDC_FORWARD_LABEL, 0),
            box(IDC_FORWARD, 0, DIALOG_MARGIN),
            label(IDC_REVERSE_LABEL, 1),
            box(IDC_REVERSE, 1, DIALOG_MARGIN)};
}

/// Placements of two tables in one.
template <std::size_t A, std::size_t B>
constexpr std::array<CVelmPlacement, A + B> JoinPlacements(const std::array<CVelmPlacement, A>& first,
                                                           const std::array<CVelmPlacement, B>& second) {
    std::array<CVelmPlacement, A + B> all{};
    for (std::size_t i = 0; i < A; ++i) {
        all[i] = first[i];
    }
    for (std::size_t i = 0; i < B; ++i) {
        all[A + i] = second[i];
    }
    return all;
}

/// A dialog with these fields.
class CVelmConversionDialog : public CVelmDialog {
protected:
    using CVelmDialog::CVelmDialog;

    void ShowFields(const CVelmConversionEntry& entry) const {
        SetText(IDC_FACTOR, entry.factor);
        SetText(IDC_OFFSET, entry.offset);
        SetText(IDC_FORWARD, entry.forward, DIALOG_FREE_TEXT_MAX);
        SetText(IDC_REVERSE, entry.reverse, DIALOG_FREE_TEXT_MAX);
        ShowControls(LINEAR_CONTROLS, !entry.isFormula);
        ShowControls(FORMULA_CONTROLS, entry.isFormula);
    }

    CVelmConversionEntry Fields(bool isFormula) const {
        return {isFormula, Text(IDC_FACTOR), Text(IDC_OFFSET), Text(IDC_FORWARD, DIALOG_FREE_TEXT_MAX),
                Text(IDC_REVERSE, DIALOG_FREE_TEXT_MAX)};
    }
};

}  // namespace velm
