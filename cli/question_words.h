#pragma once

#include <string>
#include <string_view>

#include "ask/questions.h"
#include "line_editor.h"

namespace velm {

/// What the Tab key makes of a question: the letters that all words which fit have in common, or a blank behind the
/// only one; when there is nothing to add, the words to choose from.
LineCompletion CompleteQuestion(CVelmQuestions& questions, std::string_view typed);

}  // namespace velm
