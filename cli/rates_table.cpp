#include "rates_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "cli_error.h"
#include "platform/text.h"

namespace velm {

namespace {

constexpr std::string_view BLANKS = " \t\r";

/// Splits the text at any of the characters; fields are trimmed.
std::vector<std::string_view> Split(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t end = text.find_first_of(separators);
        fields.push_back(Trim(text.substr(0, end), BLANKS));
        if (end == std::string_view::npos) {
            return fields;
        }
        text.remove_prefix(end + 1);
    }
}

/// The lines that are neither empty nor comments.
std::vector<std::string_view> FilledLines(std::string_view bytes) {
    std::vector<std::string_view> lines = Split(bytes, "\n");
    std::erase_if(lines, [](std::string_view line) { return line.empty() || line.front() == '#'; });
    return lines;
}

/// The central bank's CSV: a line of codes after "Date", then a line of rates for each day, the latest first.
RatesTable ReadCsvRates(const std::vector<std::string_view>& lines) {
    RatesTable table;
    const std::vector<std::string_view> codes = Split(lines[0], ",");
    const std::vector<std::string_view> rates =
        lines.size() > 1 ? Split(lines[1], ",") : std::vector<std::string_view>();
    if (rates.size() != codes.size()) {
        Fail("the rates table needs one rate for each code of its first line");
    }
    table.date = rates[0];
    for (std::size_t i = 1; i < codes.size(); ++i) {
        // Lines end with a comma; currencies not quoted on that day are "N/A".
        if (!codes[i].empty() && rates[i] != "N/A") {
            AddRate(table, codes[i], rates[i]);
        }
    }
    return table;
}

/// A code and its rate on each line, with optional "base CODE" and "date TEXT" lines.
RatesTable ReadPlainRates(const std::vector<std::string_view>& lines) {
    RatesTable table;
    for (const std::string_view line : lines) {
        const std::size_t end = line.find_first_of(" \t,;");
        if (end == std::string_view::npos) {
            Fail(fmt::format("the rates table has a line without a rate: {}", Quoted(std::string(line))));
        }
        const std::string_view code = line.substr(0, end);
        std::string_view rest = Trim(line.substr(end), BLANKS);
        rest = Trim(rest.substr(rest.starts_with(',') || rest.starts_with(';') ? 1 : 0), BLANKS);
        if (code == "base") {
            table.base = rest;
        } else if (code == "date") {
            table.date = rest;
        } else {
            AddRate(table, code, rest);
        }
    }
    return table;
}

/// Digits and at most one point, as the formulas of update files read them.
std::string PlainNumber(double value) {
    char text[512];
    const auto result = std::to_chars(std::begin(text), std::end(text), value, std::chars_format::fixed);
    return {text, result.ptr};
}

}  // namespace

void AddRate(RatesTable& table, std::string_view code, std::string_view rate) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(rate.data(), rate.data() + rate.size(), value);
    if (error != std::errc() || end != rate.data() + rate.size() || !std::isfinite(value) || value <= 0.0) {
        Fail(fmt::format("the rate of {} is not a positive number: {}", Quoted(std::string(code)),
                         Quoted(std::string(rate))));
    }
    const bool known = std::any_of(table.lines.begin(), table.lines.end(),
                                   [code](const RatesTable::Line& line) { return line.code == code; });
    if (code.empty()) {
        Fail("the rates table has a rate without a code");
    }
    if (known) {
        Fail(fmt::format("the rates table has {} twice", Quoted(std::string(code))));
    }
    const bool isPlain = rate.find_first_not_of("0123456789.") == std::string_view::npos;
    table.lines.push_back({std::string(code), isPlain ? std::string(rate) : PlainNumber(value)});
}

RatesTable ReadRates(std::string_view bytes) {
    bytes.remove_prefix(bytes.starts_with(UTF8_MARK) ? UTF8_MARK.size() : 0);
    const std::vector<std::string_view> lines = FilledLines(bytes);
    if (lines.empty()) {
        Fail("the rates table is empty");
    }
    RatesTable table;
    if (lines[0].front() == '<') {
        table = ReadXmlRates(bytes);
    } else if (Split(lines[0], ",")[0] == "Date") {
        table = ReadCsvRates(lines);
    } else {
        table = ReadPlainRates(lines);
    }
    // The base's rate to itself is redundant.
    std::erase_if(table.lines, [&table](const RatesTable::Line& line) { return line.code == table.base; });
    if (table.lines.empty()) {
        Fail("the rates table has no rates");
    }
    return table;
}

}  // namespace velm
