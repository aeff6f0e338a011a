#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// A table of exchange rates: each line is the value of one unit of the base.
struct RatesTable {
    struct Line {
        std::string code;
        std::string rate;  ///< a positive number, in digits and one point
    };

    std::string base = "EUR";
    std::string date;  ///< as it stands in the table; empty when it has none
    std::vector<Line> lines;
};

/// Reads a table in any of the forms below. Ends the command with the reason otherwise.
RatesTable ReadRates(std::string_view bytes);

/// The central bank's XML: <Cube currency='USD' rate='1.0876'/> within <Cube time='2024-07-05'>. Of several days the
/// first, which is the latest, is taken.
RatesTable ReadXmlRates(std::string_view bytes);

/// Adds a line. Ends the command when the code is empty or a duplicate, or the rate is not a positive number.
void AddRate(RatesTable& table, std::string_view code, std::string_view rate);

}  // namespace velm
