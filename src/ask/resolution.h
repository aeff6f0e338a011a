#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "ask/evaluation.h"

namespace velm {

/// How a question is understood: one reading for each of its words, and what they give.
struct CVelmResolution {
    std::vector<std::uint8_t> choice;
    CVelmAskedValue value;
    CVelmAskedValue target;  ///< one of the unit asked for, when the target has a unit
    int cost = 0;            ///< smaller is better
    bool isInFile = false;   ///< the value and the target are units of one file, whose conversions apply
};

struct CVelmResolutions {
    std::vector<CVelmResolution> found;  ///< best first; empty: the question has no answer

    /// Why not, of the best choice of readings: a value that cannot be computed, or one that the target does not fit.
    EvaluationError error;
    bool isTargetError = false;
    bool isUnfit = false;
    CVelmResolution tried;
};

/// Chooses readings for the words of a question so that its parts fit together.
CVelmResolutions Resolve(const CVelmUnitIndex& index, FormulaContext& context, const Question& question,
                         std::span<const CVelmKeptValue> kept);

/// Whether two readings are one and the same unit.
bool IsSameUnit(const CVelmUnitIndex& index, const CVelmReading& a, const CVelmReading& b);

}  // namespace velm
