#include "model/item_edits.h"

#include <algorithm>
#include <utility>

#include "formula/formula.h"
#include "formula/functions.h"
#include "model/conversion_document.h"

namespace velm {
namespace {

/// With so many conversions a unit may be a bridge between others.
constexpr std::int32_t BRIDGE_CONVERSIONS = 2;

/// Only a calculation file uses identifiers in formulas; there letter case does not tell them apart.
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

EntryFault CheckEntry(const CVelmDocument& document, const CVelmItem& item, const CVelmItemEntry& entry,
                      const CVelmClock& clock) {
    if (entry.name.empty()) {
        return EntryFault::NameIsEmpty;
    }
    const EntryFault fault = CheckIdentifier(document, item, entry.identifier);
    if (fault != EntryFault::None || entry.output != 1) {
        return fault;
    }
    CVelmString formula = entry.valueText;
    const bool parses = item.format.ToFormula(formula, clock) && CVelmFormula(formula).Parses();
    return parses ? EntryFault::None : EntryFault::FormulaDoesNotParse;
}

}  // namespace

CVelmItemEntry EntryOf(const CVelmItem& item) {
    const bool hasOutput = item.GetType() == ITEM_FORMULA;
    return {item.name, item.identifier, item.valueText,
            hasOutput ? static_cast<const CVelmFormulaItem&>(item).output : 0};
}

EntryFault AddNewItem(CVelmDocument& document, const CVelmItemEntry& entry, const CVelmClock& clock) {
    auto item = CreateItem(document.GetKind() == KIND_CONVERSION ? ITEM_VALUE : ITEM_FORMULA);
    const EntryFault fault = EditItem(document, *item, entry, clock);
    if (fault == EntryFault::None) {
        document.AddItem(std::move(item));
    }
    return fault;
}

EntryFault EditItem(CVelmDocument& document, CVelmItem& item, const CVelmItemEntry& entry, const CVelmClock& clock) {
    if (const EntryFault fault = CheckEntry(document, item, entry, clock); fault != EntryFault::None) {
        return fault;
    }
    if (document.GetKind() == KIND_CALCULATION && item.valueText != entry.valueText) {
        item.state = STATE_NONE;
    }
    item.name = entry.name;
    item.identifier = entry.identifier;
    item.valueText = entry.valueText;
    if (item.GetType() == ITEM_FORMULA) {
        static_cast<CVelmFormulaItem&>(item).output = entry.output;
    }
    document.Touch();
    return EntryFault::None;
}

void MoveItem(CVelmDocument& document, std::size_t from, std::size_t to) {
    const auto first = document.items.begin() + static_cast<std::ptrdiff_t>(std::min(from, to));
    const auto last = document.items.begin() + static_cast<std::ptrdiff_t>(std::max(from, to)) + 1;
    std::rotate(first, from < to ? first + 1 : last - 1, last);
    document.Touch();
}

bool ShowItems(CVelmDocument& document, const std::vector<bool>& shown) {
    bool changed = false;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const std::int32_t flag = shown[i] ? 1 : 0;
        changed = changed || document.items[i]->shown != flag;
        document.items[i]->shown = flag;
    }
    if (changed) {
        document.Touch();
    }
    return changed;
}

void HideItem(CVelmDocument& document, CVelmItem& item) {
    item.shown = 0;
    document.Touch();
}

DeletionRisk RiskOfDeletion(const CVelmDocument& document, const CVelmItem& item) {
    if (document.GetKind() != KIND_CONVERSION) {
        return DeletionRisk::BreaksOutput;
    }
    const auto& conversions = static_cast<const CVelmConversionDoc&>(document);
    return conversions.CountConversions(&item) < BRIDGE_CONVERSIONS ? DeletionRisk::None : DeletionRisk::BreaksBridge;
}

CVelmString DeletionQuestion(const CVelmDocument& document, const CVelmItem& item) {
    const CVelmString name = u"\"" + item.name + u"\"";
    switch (RiskOfDeletion(document, item)) {
        case DeletionRisk::BreaksBridge:
            return name +
                   u" has multiple direct conversion formulas attached to it. It may be used as a bridge to convert "
                   u"between other units.\nDo you really want to delete?";
        case DeletionRisk::BreaksOutput:
            return name + u" may be used to calculate other output values.\nDo you really want to delete?";
        default:
            return u"Do you want to delete " + name + u"?";
    }
}

void DeleteItem(CVelmDocument& document, const CVelmItem& item) {
    document.RemoveItem(&item);
    document.Touch();
}

}  // namespace velm
