#include "update/unit_finder.h"

namespace velm {

CVelmUnitFinder::CVelmUnitFinder(const CVelmDocument& document) {
    for (const auto& item : document.items) {
        if (!item->identifier.empty()) {
            units_[FoldCase(item->identifier)].push_back(item.get());
        }
    }
}

CVelmItem* CVelmUnitFinder::Find(CVelmStringView identifier, std::size_t n) const {
    const auto found = units_.find(FoldCase(identifier));
    return found == units_.end() || n >= found->second.size() ? nullptr : found->second[n];
}

}  // namespace velm
