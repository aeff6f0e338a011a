#include "table.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli_error.h"

namespace velm {

// fmt pads a text to its number of bytes, which are never fewer than its columns.
std::size_t DisplayWidth(const std::string& text) {
    return 2 * text.size() - fmt::formatted_size("{:{}}", text, text.size());
}

std::string TableText(const TableRows& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], DisplayWidth(OneLine(row[i])));
        }
    }
    std::string text;
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string cell = OneLine(row[i]);
            text += i + 1 < row.size() ? fmt::format("{:{}}  ", cell, widths[i]) : cell;
        }
        text += '\n';
    }
    return text;
}

void PrintTable(const TableRows& rows, CVelmOutput& out) {
    out.Write(TableText(rows));
}

}  // namespace velm
