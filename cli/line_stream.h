#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "command.h"

namespace velm {

/// Computes the result of one line; false when it has none. Both texts are UTF-8, the line without its end.
using LineFunction = std::function<bool(std::string_view line, std::string& result)>;

/// Reads standard input line by line and prints one result line for each; without a result "error", with the line on
/// standard error. Answers all complete lines before waiting for more input; memory is bounded by the longest line, and
/// a line above 1 MiB has no result. Returns the exit status.
int StreamLines(CommandContext& context, const LineFunction& convert);

}  // namespace velm
