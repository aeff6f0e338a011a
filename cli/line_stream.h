#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "command.h"

namespace velm {

/// Computes the result of one line; false when it has none. Both texts are UTF-8, the line without its end.
using LineFunction = std::function<bool(std::string_view line, std::string& result)>;

/// Reads standard input line by line and prints one result line for each; without a result "error", with the line on
/// standard error. Answers all complete lines before waiting for more input; memory is bounded by the longest line, and
/// a line above 1 MiB has no result. Returns the exit status.
int StreamLines(CommandContext& context, const LineFunction& convert);

/// What a line gets, UTF-8.
struct LineResult {
    std::string text;                ///< of a failed line: what is printed instead of "error"
    std::string fault;               ///< why a line failed; empty says no more than that it has no result
    std::vector<std::string> notes;  ///< each goes to standard error with the number of the line
};

/// Computes the result of one line, which is passed empty; false when it failed.
using AnswerFunction = std::function<bool(std::string_view line, LineResult& result)>;

/// The same with a result that says more than a text does.
int StreamAnswers(CommandContext& context, const AnswerFunction& answer);

}  // namespace velm
