#pragma once

#include <cstdint>
#include <vector>

#include "model/document.h"
#include "model/entry_fault.h"
#include "platform/text.h"

namespace velm {

/// What a user enters for an item.
struct CVelmItemEntry {
    CVelmString name;
    CVelmString identifier;  ///< may be empty
    CVelmString valueText;
    std::int32_t output = 0;  ///< 1: computed by its formula, the value text; of items of calculation files alone
};

/// What an item has of that.
CVelmItemEntry EntryOf(const CVelmItem& item);

// Each edit stamps the document. One with a fault changes nothing.

/// Appends an item of the type that the document's kind has.
EntryFault AddNewItem(CVelmDocument& document, const CVelmItemEntry& entry, const CVelmClock& clock);

/// An input of a calculation file whose text has changed starts from it: it has no value until the next recalculation.
EntryFault EditItem(CVelmDocument& document, CVelmItem& item, const CVelmItemEntry& entry, const CVelmClock& clock);

/// Moves an item to another position below the number of items.
void MoveItem(CVelmDocument& document, std::size_t from, std::size_t to);

/// Shows or hides all items in the list, by position. False when they were so already; nothing is stamped then.
bool ShowItems(CVelmDocument& document, const std::vector<bool>& shown);
void HideItem(CVelmDocument& document, CVelmItem& item);

/// What may go wrong when an item is deleted.
enum class DeletionRisk {
    None,
    BreaksBridge,  ///< conversions between other units may lead through it
    BreaksOutput,  ///< outputs may be computed from it
};
DeletionRisk RiskOfDeletion(const CVelmDocument& document, const CVelmItem& item);

/// What is asked before an item is deleted.
CVelmString DeletionQuestion(const CVelmDocument& document, const CVelmItem& item);

/// With its conversions.
void DeleteItem(CVelmDocument& document, const CVelmItem& item);

}  // namespace velm
