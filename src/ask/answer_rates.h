#pragma once

#include <optional>

#include "ask/answer.h"
#include "datetime/calendar_day.h"
#include "formula/formula_context.h"
#include "platform/services.h"

namespace velm {

/// The day of the oldest exchange rate that an answer rests on; nothing when no rate in it has a day. `folder` is the
/// data folder that was asked, with a separator at the end.
std::optional<CVelmDay> OldestRate(const CVelmAnswer& answer, const CVelmServices& services, FormulaContext& context,
                                   const CVelmString& folder);

}  // namespace velm
