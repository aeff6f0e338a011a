#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "formula/formula_context.h"
#include "model/conversion.h"
#include "model/item.h"

namespace velm {

/// A conversion in one of its two directions.
struct CVelmConversionStep {
    CVelmConversion* conversion;  ///< not owned
    bool forward;

    /// See CVelmConversion.
    bool Apply(FormulaContext& context) const {
        return forward ? conversion->ApplyForward(context) : conversion->ApplyInReverse(context);
    }
};

/// A step that a search took, and the state that it gave its unit.
struct CVelmStepTaken {
    CVelmConversionStep step;
    const CVelmItem* unit;
    std::int32_t state;
};

/// Gives every item but `current` (which keeps its value and state; may be null) a new state: 1 and a value when a
/// route of conversions leads to it, 2 when its route failed, 0 when there is none. A hidden item gets a value when it
/// is among `asked` (items of the document) or a route leads through it. Sets the items' indices to their positions.
/// Returns the steps that it took, in order.
std::vector<CVelmStepTaken> SolveConversions(const CVelmItems& items, const CVelmConversions& conversions,
                                             const CVelmItem* current, std::span<const CVelmItem* const> asked,
                                             FormulaContext& context);

/// After a search, for every item the unit whose failed conversion left it without a value: the nearest in state 2 from
/// which conversions lead to it. Null for items in another state than 0 and for those that no route leads to.
std::vector<const CVelmItem*> FindFailedBridges(const CVelmItems& items, const CVelmConversions& conversions);

/// Repeats the steps for another value of the current item in an otherwise unchanged document, at a fraction of the
/// cost of a search. False when a step yields another state than before: search again then.
bool RepeatSteps(std::span<const CVelmStepTaken> steps, FormulaContext& context);

}  // namespace velm
