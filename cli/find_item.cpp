#include "find_item.h"

#include <fmt/format.h>

#include <array>

#include "cli_error.h"
#include "suggest.h"

namespace velm {

namespace {

struct Rule {
    CVelmString CVelmItem::*text;
    bool ignoreCase;

    bool Matches(const CVelmItem& item, const CVelmString& wanted) const {
        return ignoreCase ? EqualsNoCase(item.*text, wanted) : item.*text == wanted;
    }
};

/// Tried in this order; the first that matches anything decides.
constexpr std::array<Rule, 4> RULES{{{&CVelmItem::identifier, false},
                                     {&CVelmItem::name, false},
                                     {&CVelmItem::identifier, true},
                                     {&CVelmItem::name, true}}};

std::string Describe(const CVelmItem& item) {
    return item.identifier.empty() ? Quoted(ToUtf8(item.name))
                                   : fmt::format("{} ({})", Quoted(ToUtf8(item.identifier)), ToUtf8(item.name));
}

[[noreturn]] void FailAmbiguous(const std::string& text, const std::string& what,
                                const std::vector<CVelmItem*>& found) {
    std::vector<std::string> list;
    list.reserve(found.size());
    for (const CVelmItem* item : found) {
        list.push_back(Describe(*item));
    }
    Fail(fmt::format("{} {} can be any of {}", what, Quoted(text), fmt::join(list, ", ")));
}

}  // namespace

std::vector<CVelmString> ItemNames(const CVelmDocument& document) {
    std::vector<CVelmString> names;
    for (const auto& item : document.items) {
        names.push_back(item->identifier);
        names.push_back(item->name);
    }
    return names;
}

CVelmItem& FindItem(const CVelmDocument& document, const std::string& text, const std::string& what) {
    const CVelmString wanted = FromUtf8(text);
    for (const Rule& rule : RULES) {
        std::vector<CVelmItem*> found;
        for (const auto& item : document.items) {
            if (!wanted.empty() && rule.Matches(*item, wanted)) {
                found.push_back(item.get());
            }
        }
        if (found.size() > 1) {
            FailAmbiguous(text, what, found);
        }
        if (!found.empty()) {
            return *found.front();
        }
    }
    Fail(fmt::format("{} has no {} {}; {}", ToUtf8(document.FileNameWithExtension()), what, Quoted(text),
                     DidYouMean(wanted, ItemNames(document), 3)));
}

}  // namespace velm
