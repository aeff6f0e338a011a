#pragma once

#include "ask/questions.h"
#include "command.h"

namespace velm {

/// Answers the questions that a user types at a terminal until the input ends. Returns the exit status.
int RunSession(CommandContext& context, CVelmQuestions& questions);

}  // namespace velm
