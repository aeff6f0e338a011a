#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "datetime/calendar_day.h"
#include "model/conversion_document.h"
#include "platform/services.h"
#include "platform/text.h"

namespace velm {

/// The data file that tables of rates are for, without its extension.
constexpr CVelmStringView RATES_FILE = u"Currency";

/// Whether a table may replace rates of a later day, or name a day that has not come yet.
enum class TableAge { NotOlder, Any };

/// What became of a table.
struct CVelmTableMerge {
    bool merged = false;
    CVelmString errorText;             ///< why it was not
    bool isAgeProblem = false;         ///< TableAge::Any would take it
    CVelmDay day{};                    ///< of the rates
    bool dayIsAssumed = false;         ///< the table has none: today's
    std::size_t rateCount = 0;         ///< rates set
    std::vector<CVelmString> unknown;  ///< codes for which the document has no unit
};

/// Sets the document's conversions to the rates of a table (see ReadRatesTable), writes the document, and then the days
/// of its rates. A currency that had a route to the table's base keeps exactly one: its conversion is replaced by the
/// rate, and those between two currencies of the table are removed. Unless `merged`, nothing has changed; a document
/// that cannot be written stays modified in memory.
CVelmTableMerge MergeTable(CVelmConversionDoc& document, const CVelmString& folder, std::string_view table,
                           TableAge age, const CVelmServices& services);

/// Of a table that was merged: "29 rates of 2024-07-05".
CVelmString SummaryOf(const CVelmTableMerge& result);

/// What a user should know besides: which currencies were skipped, and that a day was assumed.
std::vector<CVelmString> RemarksOn(const CVelmTableMerge& result);

}  // namespace velm
