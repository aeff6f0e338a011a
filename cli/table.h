#pragma once

#include <string>
#include <vector>

#include "output.h"

namespace velm {

/// Rows of UTF-8 cells.
using TableRows = std::vector<std::vector<std::string>>;

/// Prints the rows with every column but the last one padded to its widest cell, as a terminal shows it, and two
/// spaces between columns. Control characters become "?".
void PrintTable(const TableRows& rows, CVelmOutput& out);

}  // namespace velm
