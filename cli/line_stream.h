#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "command.h"

namespace velm {

/// What is made of one line; false when the line has no result. Both texts are UTF-8, the line without its end.
using LineFunction = std::function<bool(std::string_view line, std::string& result)>;

/// Reads standard input line by line and prints one result line for each: "error", and the line on standard error, for
/// one without a result. Everything read is answered before more input is waited for; memory is bounded by the
/// longest line, and a line above 1 MiB has no result. Returns the exit status.
int StreamLines(CommandContext& context, const LineFunction& convert);

}  // namespace velm
