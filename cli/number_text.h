#pragma once

#include <string>
#include <string_view>

#include "formats/decimal_format.h"
#include "formats/value_format.h"
#include "formula/formula_errors.h"

namespace velm {

/// As printf's %.17g.
std::string RawText(double value);

/// Where a fault is that has no known place.
constexpr std::size_t NO_PLACE = CVelmString::npos;

/// What is wrong with a text that ParseValueText does not read or that has an unreadable date; to be asked after it
/// failed, with the same definitions. The position may be NO_PLACE.
FormulaFault ValueFault(const CVelmValueFormat& format, CVelmString text, FormulaContext& formulas);

/// The same of a text in the format that the item's values are typed in.
std::string TypedFault(const CVelmValueFormat& format, std::string_view text, FormulaContext& formulas);

}  // namespace velm
