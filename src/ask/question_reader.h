#pragma once

#include <cstddef>

#include "ask/question_tree.h"
#include "ask/word_reader.h"

namespace velm {

/// Reads a part of the question's text as a value into `tree`; its words are added to the question's.
bool ReadQuestionValue(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t end,
                       QuestionTree& tree, QuestionFault& fault);

/// The same of a part that is one word for a unit; false, with nothing added, for any other.
bool ReadQuestionUnit(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t end,
                      QuestionTree& tree);

/// Reads one value of a list, with its unit, and leaves `next` behind it.
bool ReadListedValue(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t& next,
                     QuestionTree& tree, QuestionFault& fault);

}  // namespace velm
