#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "model/document.h"
#include "platform/text.h"

namespace velm {

/// Index of a document's units by identifier. Deliberate: update files and tables of rates name units in any letter
/// case, whatever it may mean elsewhere.
class CVelmUnitFinder {
public:
    /// The document keeps its items while the finder is used.
    explicit CVelmUnitFinder(const CVelmDocument& document);

    /// The n-th unit that carries the identifier, counted from 0 in the document's order; null when there is none.
    CVelmItem* Find(CVelmStringView identifier, std::size_t n = 0) const;

private:
    std::unordered_map<CVelmString, std::vector<CVelmItem*>> units_;  ///< by folded identifier
};

}  // namespace velm
