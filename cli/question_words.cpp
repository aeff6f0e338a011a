#include "question_words.h"

#include <fmt/format.h>

#include <algorithm>

#include "table.h"

namespace velm {

namespace {

constexpr std::size_t MAX_LISTED = 20;

/// How many units at the end of a text the word continues, letter case left aside.
std::size_t Continued(CVelmStringView text, CVelmStringView word) {
    std::size_t length = std::min(text.size(), word.size());
    while (length > 0 && !EqualsNoCase(text.substr(text.size() - length), word.substr(0, length))) {
        --length;
    }
    return length;
}

std::size_t CommonLength(CVelmStringView a, CVelmStringView b) {
    std::size_t length = 0;
    while (length < std::min(a.size(), b.size()) && FoldCase(a[length]) == FoldCase(b[length])) {
        ++length;
    }
    return length;
}

std::string ListOf(const std::vector<CVelmSuggestion>& suggestions) {
    TableRows rows;
    for (const CVelmSuggestion& suggestion : suggestions) {
        if (rows.size() == MAX_LISTED) {
            rows.push_back({fmt::format("and {} more", suggestions.size() - MAX_LISTED)});
            break;
        }
        const CVelmString file = suggestion.fileName.substr(0, suggestion.fileName.rfind(u'.'));
        rows.push_back({ToUtf8(suggestion.word), ToUtf8(suggestion.name), ToUtf8(file)});
    }
    return TableText(rows);
}

}  // namespace

LineCompletion CompleteQuestion(CVelmQuestions& questions, std::string_view typed) {
    constexpr std::size_t LIMIT = 1000;
    const CVelmString text = FromUtf8(typed);
    const std::vector<CVelmSuggestion> suggestions = questions.Suggest(text, LIMIT);
    if (suggestions.empty()) {
        return {};
    }
    const CVelmString& first = suggestions.front().word;
    CVelmStringView common = first;
    for (const CVelmSuggestion& suggestion : suggestions) {
        common = common.substr(0, CommonLength(common, suggestion.word));
    }
    const std::size_t continued = Continued(text, first);
    LineCompletion completion;
    completion.text = ToUtf8(CVelmStringView(text).substr(text.size() - continued));
    completion.replaced = completion.text.size();
    if (common.size() > continued) {
        completion.text = ToUtf8(common);
    }
    if (suggestions.size() == 1) {
        completion.text += ' ';
    } else if (common.size() <= continued) {
        completion.choices = ListOf(suggestions);
    }
    return completion;
}

}  // namespace velm
