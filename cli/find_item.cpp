#include "find_item.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli_error.h"
#include "suggest.h"

namespace velm {

namespace {

std::string Describe(const CVelmItem& item) {
    return item.identifier.empty() ? Quoted(ToUtf8(item.name))
                                   : fmt::format("{} ({})", Quoted(ToUtf8(item.identifier)), ToUtf8(item.name));
}

}  // namespace

CVelmItemIndex::CVelmItemIndex(const CVelmDocument& document, bool ignoreCase) : ignoreCase_(ignoreCase) {
    decltype(items_) names;
    for (const auto& item : document.items) {
        items_[Key(item->identifier)].push_back(item.get());
        names[Key(item->name)].push_back(item.get());
    }
    items_.merge(names);  // keeps the items that have the text as their identifier
    items_.erase(CVelmString());
}

std::span<CVelmItem* const> CVelmItemIndex::Find(CVelmStringView text) const {
    const auto found = items_.find(Key(text));
    return found == items_.end() ? std::span<CVelmItem* const>() : found->second;
}

CVelmItem& FindItem(const CVelmDocument& document, const std::string& text, const std::string& what) {
    const CVelmString wanted = FromUtf8(text);
    for (const bool ignoreCase : {false, true}) {
        const CVelmItemIndex index(document, ignoreCase);
        const std::span<CVelmItem* const> found = index.Find(wanted);
        if (found.size() > 1) {
            std::vector<std::string> list(found.size());
            std::transform(found.begin(), found.end(), list.begin(), [](const auto* item) { return Describe(*item); });
            Fail(fmt::format("{} {} could be {}", what, Quoted(text), AnyOf(list)));
        }
        if (!found.empty()) {
            return *found.front();
        }
    }
    Fail(fmt::format("{} has no {} {}; {}", ToUtf8(document.FileNameWithExtension()), what, Quoted(text),
                     DidYouMeanItem(document, wanted, 3)));
}

std::string DidYouMeanItem(const CVelmDocument& document, CVelmStringView text, std::size_t limit) {
    std::vector<CVelmString> names;
    for (const auto& item : document.items) {
        names.push_back(item->identifier);
        names.push_back(item->name);
    }
    return DidYouMean(text, names, limit);
}

}  // namespace velm
