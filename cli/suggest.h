#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"

namespace velm {

/// "a, b or c".
std::string AnyOf(const std::vector<std::string>& words);

/// `did you mean "a", "b" or "c"?` with the words nearest to a text; UTF-8.
std::string DidYouMean(std::string_view text, const std::vector<std::string>& words, std::size_t limit = 1);
std::string DidYouMean(CVelmStringView text, const std::vector<CVelmString>& words, std::size_t limit);

}  // namespace velm
