#include <utility>
#include <vector>

#include "formula/formula.h"
#include "model/document.h"

namespace velm {

namespace {

/// An output that has no value yet, with its formula parsed once for all sweeps.
struct PendingOutput {
    CVelmItem* item;
    CVelmFormula formula;

    bool Evaluate(FormulaContext& context) const {
        const bool evaluated = formula.Evaluate(context, item->value);
        item->state = evaluated ? STATE_VALID : STATE_NONE;
        return evaluated;
    }
};

CVelmFormula ReadFormula(const CVelmItem& output, const CVelmClock& clock) {
    CVelmString formula;
    return output.format.ToFormula(output.valueText, clock, formula) ? CVelmFormula(formula) : CVelmFormula();
}

void ReadInput(CVelmItem& input, FormulaContext& context) {
    if (input.state == STATE_NONE) {
        const bool parsed = input.format.ParseValueText(input.valueText, context, input.value);
        input.state = parsed ? STATE_VALID : STATE_ERROR;
    }
    if (input.state == STATE_VALID) {
        DefineVariable(context, input.identifier, input.value);
    }
}

/// Evaluates every pending output once, in order; those that got a value are bound at once and leave the list.
/// False when none did.
bool Sweep(std::vector<PendingOutput>& pending, FormulaContext& context) {
    std::vector<PendingOutput> left;
    for (PendingOutput& output : pending) {
        if (output.Evaluate(context)) {
            DefineVariable(context, output.item->identifier, output.item->value);
        } else {
            left.push_back(std::move(output));
        }
    }
    const bool progressed = left.size() < pending.size();
    pending = std::move(left);
    return progressed;
}

}  // namespace

void CVelmCalculationDoc::Recalculate(FormulaContext& context) {
    std::vector<PendingOutput> pending;
    for (const auto& item : items) {
        if (item->IsOutput()) {
            item->state = STATE_NONE;
            pending.push_back({item.get(), ReadFormula(*item, context.Clock())});
        } else {
            ReadInput(*item, context);
        }
    }
    while (Sweep(pending, context)) {
    }
    for (const PendingOutput& output : pending) {
        output.item->state = STATE_ERROR;
    }
    for (const auto& item : items) {
        UndefineVariable(context, item->identifier);
    }
}

}  // namespace velm
