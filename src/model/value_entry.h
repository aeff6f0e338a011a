#pragma once

#include <span>
#include <vector>

#include "model/calculation_document.h"
#include "model/conversion_document.h"
#include "model/conversion_engine.h"

namespace velm {

// Values as they are entered where the others are computed immediately. A group in {} that is no date has none.

/// What an entry did: nothing, as the text has no value, or the other values were computed, by steps taken before or by
/// new ones.
enum class Entered { Nothing, BySameSteps, ByNewSteps };

/// Gives a unit of the document the value of a typed text, makes it the current item and computes the other units, the
/// hidden ones only if they are among `asked`. `steps` are those of the last entry of that unit in the unchanged
/// document, or empty; they spare the search while they still lead to the same states.
Entered EnterText(CVelmConversionDoc& document, CVelmItem& unit, CVelmStringView text,
                  std::span<const CVelmItem* const> asked, std::vector<CVelmStepTaken>& steps, FormulaContext& context);

/// A text typed for an input of a calculation document.
struct CVelmTypedInput {
    CVelmItem* item = nullptr;
    CVelmString text;
};

/// Gives inputs their texts, each of which may use the inputs before it in the file, and computes all items anew.
/// Returns the first of the texts that has no value; null when each has one.
const CVelmTypedInput* EnterTexts(CVelmCalculationDoc& document, std::span<const CVelmTypedInput> inputs,
                                  FormulaContext& context);

}  // namespace velm
