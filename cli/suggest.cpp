#include "suggest.h"

#include <algorithm>
#include <array>

#include "cli_error.h"

namespace velm {

namespace {

constexpr std::size_t COMPARED_UNITS = 64;

/// How many letters must be put in, left out, changed or swapped with their neighbor to make one text of the other,
/// letter case left aside. Only the first units of long texts are compared.
int EditDistance(CVelmStringView a, CVelmStringView b) {
    a = a.substr(0, COMPARED_UNITS);
    b = b.substr(0, COMPARED_UNITS);
    const auto same = [&](std::size_t i, std::size_t j) { return FoldCase(a[i - 1]) == FoldCase(b[j - 1]); };
    using Row = std::array<int, COMPARED_UNITS + 1>;
    Row beforeLast{};
    Row last{};
    Row row{};
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = static_cast<int>(j);
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        beforeLast = last;
        last = row;
        row[0] = static_cast<int>(i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same(i, j) ? 0 : 1)});
            if (i > 1 && j > 1 && same(i, j - 1) && same(i - 1, j)) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
    }
    return row[b.size()];
}

/// The candidates nearest to a text, nearest first, each once; at most `limit`, empty ones never.
std::vector<CVelmString> Closest(CVelmStringView text, const std::vector<CVelmString>& candidates, std::size_t limit) {
    std::vector<std::pair<int, CVelmStringView>> ranked;
    for (const CVelmString& candidate : candidates) {
        if (!candidate.empty()) {
            ranked.emplace_back(EditDistance(text, candidate), candidate);
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
