#pragma once

#include <string>
#include <string_view>

#include "formats/decimal_format.h"
#include "formats/value_format.h"

namespace velm {

/// As printf's %.17g.
std::string RawText(double value);

/// What is wrong with a text that ParseValueText does not read or that has an unreadable date; to be asked after it
/// failed, with the same definitions.
std::string ValueFault(const CVelmValueFormat& format, CVelmString text, FormulaContext& formulas);

/// The same of a text in the format that the item's values are typed in.
std::string TypedFault(const CVelmValueFormat& format, std::string_view text, FormulaContext& formulas);

}  // namespace velm
