#pragma once

#include <optional>
#include <span>

#include "ask/answer.h"
#include "ask/question_tree.h"
#include "ask/unit_index.h"
#include "platform/clock.h"

namespace velm {

/// What a question is read with.
struct QuestionReaderSetup {
    const CVelmUnitIndex& index;
    const CVelmClock& clock;
    std::span<const CVelmString> names = {};  ///< of values kept earlier

    /// The second way to read what has two: "min/km" as a quotient rather than as the unit of that name, "5 pm" as
    /// picometers, "101b" as a binary number.
    bool isSecondTry = false;

    /// Numbers follow each other with blanks between them, as the inputs of a calculation do.
    bool isList = false;

    /// The only file whose units count; INDEX_NO_ITEM: all do.
    std::uint32_t onlyFile = INDEX_NO_ITEM;
};

/// A text with the characters that people use for operators, quotation marks and minus signs replaced by the formula
/// language's; as long as the text.
CVelmString PlainQuestion(CVelmStringView text);

/// Reads a part of the question's text as a value into `tree`; its words are added to the question's.
bool ReadQuestionValue(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t end,
                       QuestionTree& tree, QuestionFault& fault);

/// The same of a part that is one word for a unit; false, with nothing added, for any other.
bool ReadQuestionUnit(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t end,
                      QuestionTree& tree);

/// Reads one value of a list, with its unit, and leaves `next` behind it.
bool ReadListedValue(const QuestionReaderSetup& setup, Question& question, std::size_t start, std::size_t& next,
                     QuestionTree& tree, QuestionFault& fault);

/// The longest word of the index at a position, and what it means; without readings when there is none. `end` bounds
/// it.
QuestionWord FindQuestionWord(const QuestionReaderSetup& setup, CVelmStringView text, std::size_t position,
                              std::size_t end);

}  // namespace velm
