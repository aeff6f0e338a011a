#include "find_item.h"

#include <fmt/format.h>

#include "cli_error.h"
#include "model/identifier_match.h"
#include "suggest.h"

namespace velm {

namespace {

std::string Describe(const CVelmItem& item) {
    return item.identifier.empty() ? Quoted(ToUtf8(item.name))
                                   : fmt::format("{} ({})", Quoted(ToUtf8(item.identifier)), ToUtf8(item.name));
}

}  // namespace

CVelmItem& FindItem(const CVelmDocument& document, const std::string& text, const std::string& what) {
    const CVelmString wanted = FromUtf8(text);
    const CVelmIdentifierMatch match = CVelmIdentifierIndex(document).Match(wanted);
    if (match.item != nullptr) {
        return *match.item;
    }
    std::vector<std::string> candidates;
    for (const CVelmItem* item : match.candidates) {
        candidates.push_back(Describe(*item));
    }
    if (candidates.size() > 1) {
        Fail(fmt::format("{} {} could be {}", what, Quoted(text), AnyOf(candidates)));
    }
    const std::string file = ToUtf8(document.FileNameWithExtension());
    if (!candidates.empty()) {
        Fail(fmt::format("{} has no {} {} in this letter case; did you mean {}?", file, what, Quoted(text),
                         candidates.front()));
    }
    Fail(fmt::format("{} has no {} {}; {}", file, what, Quoted(text), DidYouMeanItem(document, wanted, 3)));
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
