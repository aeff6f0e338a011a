#pragma once

#include <array>

#include "platform/text.h"

namespace velm {

constexpr int COMPOUND_PARTS = 4;

/// One part of a compound number. Factor 0 turns the item's value into the unit of part 0; factor i says how
/// many units of part i make one of part i - 1. A zero factor ends the list of parts.
struct CVelmCompoundPart {
    CVelmString label;
    double factor = 0.0;
};

using CVelmCompoundParts = std::array<CVelmCompoundPart, COMPOUND_PARTS>;

/// "5 ft 3 in ": each part's number and label, each followed by a space. A negative value is "(5 ft 3 in )".
/// Only the last part may carry a fraction, of up to three decimals, and what rounds up there is not carried over.
CVelmString FormatCompound(const CVelmCompoundParts& parts, double value);

/// The parts' numbers alone, the sign dropped. Returns how many texts were written (0 to 4).
int SplitCompound(const CVelmCompoundParts& parts, double value, std::array<CVelmString, COMPOUND_PARTS>& texts);

/// The value of a typed group such as "[5 3]" or "[1h 2m 5s]": its first four numbers, whatever stands between them.
/// A number that is missing counts as 0. Not finite when a number or the factors are out of range.
double ParseCompound(const CVelmCompoundParts& parts, CVelmStringView group);

}  // namespace velm
