#pragma once

#include "ask/answer.h"
#include "ask/question_tree.h"
#include "ask/resolution.h"
#include "ask/unit_index.h"
#include "platform/locale.h"
#include "platform/text.h"

namespace velm {

/// That there is no such unit, and which are nearest. The first word of a question may have meant a calculation.
CVelmString UnknownWordText(const CVelmUnitIndex& index, CVelmStringView word, bool isFirst);

/// A dimension in words: "a mass", "mass*length" where it has no name.
CVelmString QuantityText(const CVelmUnitIndex& index, const CVelmDimension& dimension);

/// A unit of a tree as it is written behind a value: "km", "EUR/L".
CVelmString UnitLabel(const CVelmUnitIndex& index, const Question& question, const QuestionTree& tree,
                      const std::vector<std::uint8_t>& choice);

/// The value of a question as it was read, with the identifiers of its units.
CVelmString UnderstoodText(const CVelmUnitIndex& index, const Question& question,
                           const std::vector<std::uint8_t>& choice, const CVelmLocale& locale);

/// Why a question has no answer.
CVelmQuestionFault ResolutionFault(const CVelmUnitIndex& index, const Question& question,
                                   const CVelmResolutions& resolutions, const CVelmLocale& locale);

/// How words of several meanings were read, and what else they could mean here.
void AddReadingNotes(const CVelmUnitIndex& index, const Question& question, const CVelmResolutions& resolutions,
                     std::vector<CVelmString>& notes);

}  // namespace velm
