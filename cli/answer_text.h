#pragma once

#include <optional>
#include <string>

#include "ask/answer.h"
#include "datetime/calendar_day.h"
#include "output.h"

namespace velm {

/// An answer on one line: "26.2 mi = 42.1648128 km", several rows with "; " between them. `raw`: the values alone, with
/// 17 digits and tabs between them.
std::string AnswerLine(const CVelmAnswer& answer, bool raw);

/// Prints an answer: several rows as a table below the question as understood, or the values alone.
void PrintAnswer(const CVelmAnswer& answer, bool raw, CVelmOutput& out);

/// One object: the question, then what was understood, the rows and the notes, or the fault. Its position and length
/// count UTF-16 units of the question, as JavaScript does. `rates` is the day of the oldest rate in the answer.
std::string AnswerAsJson(CVelmStringView question, const CVelmAnswer& answer, const std::optional<CVelmDay>& rates,
                         bool indented);

}  // namespace velm
