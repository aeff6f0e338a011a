#include "table.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli_error.h"

namespace velm {

namespace {

std::size_t DisplayWidth(const std::string& text) {
    return fmt::detail::compute_width(fmt::string_view(text));
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
            line += cell;
            if (i + 1 < row.size()) {
                line.append(widths[i] - DisplayWidth(cell) + 2, ' ');
            }
        }
        out.WriteLine(line);
    }
}

}  // namespace velm
