#pragma once

#include <string>
#include <vector>

#include "output.h"

namespace velm {

/// Rows of UTF-8 cells.
using TableRows = std::vector<std::vector<std::string>>;

/// How many columns of a terminal a text (UTF-8, one line) takes.
std::size_t DisplayWidth(const std::string& text);

/// The rows with every column but the last one padded to its widest cell, as a terminal shows it, and two spaces
/// between columns. Control characters become "?".
std::string TableText(const TableRows& rows);
void PrintTable(const TableRows& rows, CVelmOutput& out);

}  // namespace velm
