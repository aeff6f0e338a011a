#pragma once

#include <functional>

#include "ask/questions.h"
#include "command.h"

namespace velm {

using AskFunction = std::function<CVelmAnswer(CVelmStringView question)>;

/// Answers what a user types at a terminal, by asking, until the input ends; `questions` completes the words. Returns
/// the exit status.
int RunSession(CommandContext& context, CVelmQuestions& questions, const AskFunction& ask);

}  // namespace velm
