#pragma once

#include <array>
#include <cstdint>

#include "formats/compound_format.h"
#include "formats/format_codes.h"
#include "formula/formula_context.h"
#include "platform/locale.h"
#include "platform/text.h"

namespace velm {

/// Which ways of writing a value an item allows, which one the list shows and which one is typed.
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

    /// Display text, by displayFormat.
    CVelmString FormatValue(double value, const CVelmLocale& locale) const;

    /// Text for the edit box, by inputFormat. Empty when a number base cannot write the value.
    CVelmString FormatValueForInput(double value) const;

    /// The formula that a typed text stands for: compound groups in [] (when allowed) and dates in {} give way to
    /// their values. False when one of these is not finite.
    bool ToFormula(CVelmStringView text, const CVelmClock& clock, CVelmString& formula) const;

    /// Reads a typed value: compound groups in [] (when allowed), dates in {}, then a formula.
    /// False, with `value` untouched, when the formula fails or a group's value is out of range.
    bool ParseValueText(CVelmStringView text, FormulaContext& context, double& value) const;

    /// The numbers of the value's compound parts, the sign dropped. Returns how many were written (0 to 4).
    int SplitCompound(double value, std::array<CVelmString, COMPOUND_PARTS>& texts) const;
};

}  // namespace velm
