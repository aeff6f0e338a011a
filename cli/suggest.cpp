#include "suggest.h"

#include <algorithm>

#include "cli_error.h"
#include "platform/text_distance.h"

namespace velm {

namespace {

/// The candidates nearest to a text, nearest first, each once; at most `limit`, empty ones never.
std::vector<CVelmString> Closest(CVelmStringView text, const std::vector<CVelmString>& candidates, std::size_t limit) {
    std::vector<std::pair<int, CVelmStringView>> ranked;
    for (const CVelmString& candidate : candidates) {
        if (!candidate.empty()) {
            ranked.emplace_back(TextDistance(text, candidate), candidate);
        }
    }
    std::stable_sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<CVelmString> closest;
    for (const auto& [distance, candidate] : ranked) {
        if (closest.size() < limit && std::find(closest.begin(), closest.end(), candidate) == closest.end()) {
            closest.emplace_back(candidate);
        }
    }
    return closest;
}

}  // namespace

std::string AnyOf(const std::vector<std::string>& words) {
    std::string list;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const char* separator = i + 1 == words.size() ? " or " : ", ";
        list += (i == 0 ? "" : separator) + words[i];
    }
    return list;
}

std::string DidYouMean(CVelmStringView text, const std::vector<CVelmString>& words, std::size_t limit) {
    std::vector<std::string> closest;
    for (const CVelmString& word : Closest(text, words, limit)) {
        closest.push_back(Quoted(ToUtf8(word)));
    }
    return closest.empty() ? "there are none" : "did you mean " + AnyOf(closest) + "?";
}

std::string DidYouMean(std::string_view text, const std::vector<std::string>& words, std::size_t limit) {
    std::vector<CVelmString> wide;
    wide.reserve(words.size());
    for (const std::string& word : words) {
        wide.push_back(FromUtf8(word));
    }
    return DidYouMean(FromUtf8(text), wide, limit);
}

}  // namespace velm
