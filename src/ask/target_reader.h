#pragma once

#include "ask/question_reader.h"

namespace velm {

/// Reads a whole question: a value, and a target behind "in", "to", "as", "into", "->", "→" or "=". Every way to split
/// the text is tried, the last word first. False with the fault when none can be read; the text is PlainQuestion's.
bool ReadQuestion(const QuestionReaderSetup& setup, Question& question, QuestionFault& fault);

/// Reads a part of the question's text as a target.
bool ReadQuestionTarget(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t end,
                        QuestionTarget& target, QuestionFault& fault);

}  // namespace velm
