#pragma once

#include <optional>
#include <span>

#include "ask/answer.h"
#include "ask/evaluation.h"
#include "ask/word_folder.h"

namespace velm {

/// The calculation that a question begins with: "tip 64.50 18%".
struct CVelmSheetName {
    std::uint32_t file = 0;
    std::size_t end = 0;  ///< of the name in the question
};

/// Nothing when the question begins with no calculation's name.
std::optional<CVelmSheetName> FindSheet(const CVelmUnitIndex& index, CVelmStringView text);

/// Answers such a question: what stands behind the name are values for inputs, by name, unit or order; the other inputs
/// keep their stored values. False when it has no answer, with the fault, or with `isStale` when the file has changed.
bool AnswerSheet(CVelmWordFolder& folder, const CVelmUnitIndex& index, const CVelmString& text,
                 const CVelmSheetName& sheet, std::span<const CVelmKeptValue> kept, CVelmAnswer& answer, bool& isStale);

}  // namespace velm
