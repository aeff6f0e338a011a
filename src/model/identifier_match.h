#pragma once

#include <span>
#include <unordered_map>
#include <vector>

#include "model/document.h"

namespace velm {

/// What a typed text names in a document. The items are the document's.
struct CVelmIdentifierMatch {
    CVelmItem* item = nullptr;           ///< null when there is none or it is not certain which one
    std::vector<CVelmItem*> candidates;  ///< those that may be meant when it is not certain; each once
};

/// The items of a document by what they are called: by identifier, and by name where that is no item's identifier.
/// Valid until an item is added, removed or renamed.
class CVelmIdentifierIndex {
public:
    explicit CVelmIdentifierIndex(const CVelmDocument& document);

    /// The items that a text names in its very letter case, in file order; an empty text names none.
    std::span<CVelmItem* const> FindExact(CVelmStringView text) const;

    /// The item that a text names exactly or, if letter case leaves no doubt, in another case. In a conversion file
    /// there is doubt when the case that was typed may mean another prefix (mW, MW), a bit instead of a byte or another
    /// symbol. Formulas do not tell identifiers apart by case, so in a calculation file any case will do.
    CVelmIdentifierMatch Match(CVelmStringView text) const;

private:
    const CVelmDocument& document_;
    std::unordered_map<CVelmString, std::vector<CVelmItem*>> items_;
};

}  // namespace velm
