#pragma once

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/document.h"

namespace velm {

/// The items of a document by what they are called: by identifier, and by name where that is no item's identifier.
class CVelmItemIndex {
public:
    /// With `ignoreCase` texts that differ in letter case alone are the same.
    explicit CVelmItemIndex(const CVelmDocument& document, bool ignoreCase = false);

    /// The items that a text names, in file order; an empty text names none.
    std::span<CVelmItem* const> Find(CVelmStringView text) const;

private:
    CVelmString Key(CVelmStringView text) const { return ignoreCase_ ? FoldCase(text) : CVelmString(text); }

    bool ignoreCase_;
    std::unordered_map<CVelmString, std::vector<CVelmItem*>> items_;
};

/// The item that a text (UTF-8) names, exactly or else ignoring letter case. Ends the command with the nearest ones
/// when there is none, and with the list when there are several. `what` is the word for an item in the message.
CVelmItem& FindItem(const CVelmDocument& document, const std::string& text, const std::string& what);

/// `did you mean ...?` with the identifiers and names that are nearest to a text.
std::string DidYouMeanItem(const CVelmDocument& document, CVelmStringView text, std::size_t limit);

}  // namespace velm
