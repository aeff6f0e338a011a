#pragma once

#include <array>
#include <cstdint>

#include "formats/compound_format.h"
#include "formats/format_table.h"
#include "formula/formula_context.h"
#include "platform/locale.h"
#include "platform/text.h"

namespace velm {

/// What becomes of a group in {} that is no date: it counts as the cleared date, or the text has no value.
enum class BadDates { Cleared, Refused };

/// The formats that an item allows, the one that the list shows and the one that is typed.
class CVelmValueFormat {
public:
    CVelmValueFormat();
    virtual ~CVelmValueFormat() = default;

    /// A copy in every field, the input format included.
    CVelmValueFormat(const CVelmValueFormat& other) = default;

    /// Takes the source's display format as the input format too. Deliberate: a value is first typed as it is shown.
    CVelmValueFormat& operator=(const CVelmValueFormat& other);

    CVelmCompoundParts compoundParts;
    std::uint32_t allowedFormats = FMT_DECIMAL;
    std::uint32_t displayFormat = FMT_DECIMAL;
    std::uint32_t inputFormat = FMT_DECIMAL;

    /// Stores the set (0 counts as decimal) and moves the display and input formats into it, each to the set's
    /// lowest code, when they share no bit with it.
    void SetAllowedFormats(std::uint32_t mask);

    /// The format that values are typed in: inputFormat where that has a tab, otherwise that of the first tab.
    std::uint32_t TypedFormat() const;

    /// Display text, by displayFormat.
    CVelmString FormatValue(double value, const CVelmLocale& locale) const;

    /// Text for the edit box, by inputFormat. Empty when a number base cannot write the value.
    CVelmString FormatValueForInput(double value) const;

    /// Makes a text the formula that it stands for: compound groups in [] (when allowed) and dates in {} give way to
    /// their values. False when one of these is not finite, or is refused.
    bool ToFormula(CVelmString& text, const CVelmClock& clock, BadDates badDates = BadDates::Cleared) const;

    /// Reads the text of a value: compound groups in [] (when allowed), dates in {}, then a formula.
    /// False, with `value` untouched, when the formula fails or ToFormula does.
    bool ParseValueText(CVelmString text, FormulaContext& context, double& value,
                        BadDates badDates = BadDates::Cleared) const;

    /// Reads a text as it is typed in a format: in a number base by its digits alone, otherwise as ParseValueText.
    bool ParseTyped(CVelmString text, std::uint32_t code, FormulaContext& context, double& value,
                    BadDates badDates = BadDates::Cleared) const;

    /// The first group in {} that is not a date, braces included; empty when there is none.
    CVelmString UnreadableDate(CVelmString text, const CVelmClock& clock) const;
};

}  // namespace velm
