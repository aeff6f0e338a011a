#include "table.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli_error.h"

namespace velm {

namespace {

/// How many columns of a terminal the text takes: fmt pads it to its number of bytes, which are never fewer.
std::size_t DisplayWidth(const std::string& text) {
    return 2 * text.size() - fmt::formatted_size("{:{}}", text, text.size());
}

}  // namespace

void PrintTable(const TableRows& rows, CVelmOutput& out) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], DisplayWidth(OneLine(row[i])));
        }
    }
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string cell = OneLine(row[i]);
            line += i + 1 < row.size() ? fmt::format("{:{}}  ", cell, widths[i]) : cell;
        }
        out.WriteLine(line);
    }
}

}  // namespace velm
