#include "model/value_entry.h"

#include <algorithm>

namespace velm {
namespace {

/// Stores a typed text as that of an input.
void StoreTyped(const CVelmTypedInput& typed) {
    typed.item->valueText = typed.text;
    CompleteTyped(typed.item->valueText, typed.item->format.TypedFormat());
}

/// Whether an input got its value from its text, and not from a date that is none.
bool HasItsValue(const CVelmItem& input, const CVelmClock& clock) {
    CVelmString formula = input.valueText;
    return input.state == STATE_VALID && input.format.ToFormula(formula, clock, BadDates::Refused);
}

}  // namespace

Entered EnterText(CVelmConversionDoc& document, CVelmItem& unit, CVelmStringView text,
                  std::span<const CVelmItem* const> asked, std::vector<CVelmStepTaken>& steps,
                  FormulaContext& context) {
    double value = 0.0;
    if (!unit.format.ParseTyped(CVelmString(text), unit.format.TypedFormat(), context, value, BadDates::Refused)) {
        return Entered::Nothing;
    }
    unit.SetValue(value);
    document.currentItem = &unit;
    if (!steps.empty() && RepeatSteps(steps, context)) {
        return Entered::BySameSteps;
    }
    steps = SolveConversions(document.items, document.conversions, &unit, asked, context);
    return Entered::ByNewSteps;
}

const CVelmTypedInput* EnterTexts(CVelmCalculationDoc& document, std::span<const CVelmTypedInput> inputs,
                                  FormulaContext& context) {
    std::ranges::for_each(inputs, StoreTyped);
    for (const auto& item : document.items) {
        item->state = STATE_NONE;
    }
    document.Recalculate(context);
    const auto unread = std::ranges::find_if(
        inputs, [&context](const CVelmTypedInput& typed) { return !HasItsValue(*typed.item, context.Clock()); });
    return unread == inputs.end() ? nullptr : &*unread;
}

}  // namespace velm
