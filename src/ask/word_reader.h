#pragma once

#include <cstddef>
#include <span>

#include "ask/question_tree.h"
#include "ask/unit_index.h"
#include "platform/clock.h"
#include "platform/text.h"

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

/// Whether a character can be part of a word: a letter, or a sign such as ° and µ.
bool IsWordUnit(char16_t unit);

bool IsCurrencySign(char16_t unit);

/// Whether a unit's word can begin with a character: also ', ", % and signs of currencies.
bool BeginsUnitWord(char16_t unit);

/// The end of the letters and digits at a position, or of one other character.
std::size_t WordEnd(CVelmStringView text, std::size_t at);

/// The end of the letters or of the digits at a position, or of one other character: "ft11in" is three.
std::size_t TokenEnd(CVelmStringView text, std::size_t at);

/// The longest word of the index at a position, and what it means; without readings when there is none. `end` bounds
/// it.
QuestionWord FindQuestionWord(const QuestionReaderSetup& setup, CVelmStringView text, std::size_t position,
                              std::size_t end);

}  // namespace velm
