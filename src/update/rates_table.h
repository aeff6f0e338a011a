#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "datetime/calendar_day.h"
#include "platform/text.h"

namespace velm {

/// The largest table that is read, in bytes.
constexpr std::size_t MAX_TABLE_SIZE = 16 << 20;

/// How much of a currency one unit of the table's base is worth.
struct CVelmTableRate {
    CVelmString code;  ///< as the table spells it
    double value;      ///< positive, finite, and so is its reciprocal
};

/// A table of exchange rates of one day.
struct CVelmRatesTable {
    CVelmString base = u"EUR";
    std::optional<CVelmDay> day;
    std::vector<CVelmTableRate> rates;  ///< at least one; no code twice in any letter case, the base left out
};

/// Reads a table (UTF-8): the central bank's XML, its CSV with a day in each row, or a code and a rate in each line. Of
/// several days the latest is taken. Nothing, with the reason, unless the whole table can be read.
std::optional<CVelmRatesTable> ReadRatesTable(std::string_view bytes, CVelmString& error);

}  // namespace velm
