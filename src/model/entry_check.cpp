#include "model/entry_check.h"

#include <algorithm>

#include "formula/formula.h"
#include "formula/functions.h"
#include "model/document_kinds.h"

namespace velm {
namespace {

EntryFault CheckIdentifier(const CVelmDocument& document, const CVelmItem& item, const CVelmString& identifier) {
    if (identifier.empty()) {
        return EntryFault::None;
    }
    const bool inFormulas = document.GetKind() == KIND_CALCULATION;
    if (inFormulas && !IsPlainName(identifier)) {
        return EntryFault::IdentifierIsNoName;
    }
    if (inFormulas && FindFunction(ToLowerAscii(identifier), 0) != nullptr) {
        return EntryFault::IdentifierIsBuiltIn;
    }
    const bool taken = std::any_of(document.items.begin(), document.items.end(), [&](const auto& other) {
        return other.get() != &item && (inFormulas ? ToLowerAscii(other->identifier) == ToLowerAscii(identifier)
                                                   : other->identifier == identifier);
    });
    return taken ? EntryFault::IdentifierIsTaken : EntryFault::None;
}

}  // namespace

EntryFault CheckItemEntry(const CVelmDocument& document, const CVelmItem& item, const CVelmItemEntry& entry,
                          const CVelmClock& clock) {
    const EntryFault fault = CheckIdentifier(document, item, entry.identifier);
    if (fault != EntryFault::None || !entry.isOutput) {
        return fault;
    }
    CVelmString formula = entry.valueText;
    const bool parses = item.format.ToFormula(formula, clock) && CVelmFormula(formula).Parses();
    return parses ? EntryFault::None : EntryFault::FormulaDoesNotParse;
}

EntryFault TakeLinearEntry(const CVelmLinearEntry& entry, FormulaContext& context, CVelmConversion& conversion) {
    double factor = 0.0;
    double offset = 0.0;
    if (!EvaluateFormula(context, entry.factor, factor)) {
        return EntryFault::FactorDoesNotEvaluate;
    }
    if (!EvaluateFormula(context, entry.offset, offset)) {
        return EntryFault::OffsetDoesNotEvaluate;
    }
    conversion.factor = factor;
    conversion.offset = offset;
    return EntryFault::None;
}

EntryFault CheckFormulaPair(CVelmStringView forward, CVelmStringView reverse) {
    if (!CVelmFormula(forward).Parses()) {
        return EntryFault::ForwardFormulaDoesNotParse;
    }
    const bool reverseWorks = reverse.empty() || CVelmFormula(reverse).Parses();
    return reverseWorks ? EntryFault::None : EntryFault::ReverseFormulaDoesNotParse;
}

}  // namespace velm
