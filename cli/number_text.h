#pragma once

#include <string>

#include "formats/value_format.h"

namespace velm {

/// As printf's %.17g.
std::string RawText(double value);

/// The shortest text that reads back as the same double.
std::string ShortestText(double value);

/// What is wrong with a typed text that is no value in a format; to be asked after it failed, with the same
/// definitions.
std::string ValueFault(const CVelmValueFormat& format, CVelmStringView text, FormulaContext& formulas);

}  // namespace velm
