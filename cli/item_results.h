#pragma once

#include <string>
#include <vector>

#include "command.h"
#include "model/document.h"
#include "model/rate_days.h"

namespace velm {

/// What the program's list shows of an item, UTF-8: nothing, its value as its format writes it (`raw`: with 17
/// significant digits), or "Error".
std::string ResultText(const CVelmItem& item, const CVelmLocale& locale, bool raw);

/// Prints names and results in two columns, with a star before what was given.
void PrintResults(const std::vector<CVelmItem*>& items, const std::vector<const CVelmItem*>& given,
                  const CVelmLocale& locale, bool raw, CVelmOutput& out);

/// One object for each item: its names, flags, state, value and text, and the day of the rates behind it.
std::string ResultsAsJson(const std::vector<CVelmItem*>& items, const CVelmLocale& locale, bool indented,
                          const CVelmItemDays& days = {});

/// The items in file order, without those that the list hides or with them.
std::vector<CVelmItem*> ItemsOf(const CVelmDocument& document, bool withHidden);

}  // namespace velm
