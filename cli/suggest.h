#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"

namespace velm {

/// How many letters must be put in, left out, changed or swapped with their neighbour to make one text of the other,
/// letter case left aside. Only the first 64 units of long texts are compared.
int EditDistance(CVelmStringView a, CVelmStringView b);

/// The candidates nearest to a text, nearest first, each once; at most `limit`, empty ones never.
std::vector<CVelmString> Closest(CVelmStringView text, const std::vector<CVelmString>& candidates, std::size_t limit);

/// "a, b or c".
std::string AnyOf(const std::vector<std::string>& words);

/// `did you mean "a", "b" or "c"?` with the words nearest to a text; UTF-8.
std::string DidYouMean(std::string_view text, const std::vector<std::string>& words, std::size_t limit = 1);
std::string DidYouMean(CVelmStringView text, const std::vector<CVelmString>& words, std::size_t limit);

}  // namespace velm
