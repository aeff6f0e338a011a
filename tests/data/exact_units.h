#pragma once

#include <map>
#include <set>
#include <vector>

#include "platform/text.h"

namespace velm::test {

constexpr long double EXACT_INCH = 0.0254L;
constexpr long double EXACT_MILE = 63360 * EXACT_INCH;
constexpr long double EXACT_LITER = 0.001L;
constexpr long double EXACT_GALLON = 231 * EXACT_INCH * EXACT_INCH * EXACT_INCH;
constexpr long double EXACT_GALLON_UK = 4.54609L * EXACT_LITER;

/// What the units of a data file are by definition, known apart from the file.
struct ExactFile {
    const char16_t* name;
    std::map<CVelmString, long double> sizes;  ///< by identifier, as multiples of one unit of any kind
    std::set<CVelmString> inexact;             ///< measured units, and those that are no multiple of the others
};

/// Every conversion file with units that are exact by definition.
const std::vector<ExactFile>& ExactFiles();

}  // namespace velm::test
