#include "update/rates_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <unordered_set>
#include <utility>

#include "update/xml_reader.h"

namespace velm {
namespace {

constexpr CVelmStringView BLANKS = u" \t\r";
constexpr CVelmStringView CSV_START = u"Date";
constexpr CVelmStringView NOT_QUOTED = u"N/A";
constexpr CVelmStringView BASE_WORD = u"base";
constexpr CVelmStringView DATE_WORD = u"date";

CVelmString Quoted(CVelmStringView text) {
    constexpr std::size_t MAX_LENGTH = 60;
    return u"\"" + CVelmString(text.substr(0, MAX_LENGTH)) + (text.size() > MAX_LENGTH ? u"...\"" : u"\"");
}

/// A positive number with a reciprocal, in digits with at most one point, perhaps with an exponent.
std::optional<double> ReadRate(CVelmStringView text) {
    const std::string utf8 = ToUtf8(text);
    double value = 0.0;
    const auto [end, error] = std::from_chars(utf8.data(), utf8.data() + utf8.size(), value);
    const bool isNumber = error == std::errc() && end == utf8.data() + utf8.size();
    return isNumber && std::isnormal(value) && value > 0.0 && std::isfinite(1.0 / value) ? std::optional(value)
                                                                                         : std::nullopt;
}

/// Splits a line at its commas; fields are trimmed.
std::vector<CVelmStringView> Split(CVelmStringView text) {
    std::vector<CVelmStringView> fields;
    for (;;) {
        const std::size_t end = text.find(u',');
        fields.push_back(Trim(text.substr(0, end), BLANKS));
        if (end == CVelmStringView::npos) {
            return fields;
        }
        text.remove_prefix(end + 1);
    }
}

/// The lines that are neither empty nor comments.
std::vector<CVelmStringView> FilledLines(CVelmStringView text) {
    std::vector<CVelmStringView> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(u"\r\n"), text.size());
        const CVelmStringView line = Trim(text.substr(0, end), BLANKS);
        if (!line.empty() && line.front() != u'#') {
            lines.push_back(line);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// Collects the days of a table and keeps the latest. Each operation is false, with the reason, for what no table
/// holds.
class CVelmTableBuilder {
public:
    explicit CVelmTableBuilder(CVelmString& error) : error_(error) {}

    bool Fail(const CVelmString& text) {
        error_ = u"the table of rates cannot be read: " + text;
        return false;
    }

    /// Begins the rates of another day.
    bool BeginDay(CVelmStringView text) {
        EndDay();
        return SetDay(text);
    }

    bool SetDay(CVelmStringView text) {
        table_.day = ReadDay(text);
        return table_.day || Fail(Quoted(text) + u" is not a day; write 2026-09-29");
    }

    void SetBase(CVelmStringView base) { base_ = base; }

    bool Add(CVelmStringView code, CVelmStringView rate) {
        if (code.empty()) {
            return Fail(u"a rate has no code");
        }
        const auto value = ReadRate(rate);
        if (!value) {
            return Fail(u"the rate of " + Quoted(code) + u" is not a positive number: " + Quoted(rate));
        }
        if (!codes_.insert(FoldCase(code)).second) {
            return Fail(Quoted(code) + u" occurs twice");
        }
        table_.rates.push_back({CVelmString(code), *value});
        return true;
    }

    std::optional<CVelmRatesTable> Finish() {
        EndDay();
        latest_.base = base_;
        const auto base = std::ranges::find_if(
            latest_.rates, [this](const CVelmTableRate& rate) { return EqualsNoCase(rate.code, base_); });
        if (base != latest_.rates.end()) {
            if (base->value != 1.0) {
                Fail(u"the rate of its base " + Quoted(base_) + u" is not 1");
                return std::nullopt;
            }
            latest_.rates.erase(base);
        }
        if (latest_.rates.empty()) {
            Fail(u"it has no rates");
            return std::nullopt;
        }
        return std::move(latest_);
    }

private:
    void EndDay() {
        if (!table_.rates.empty() && (latest_.rates.empty() || latest_.day < table_.day)) {
            latest_ = std::move(table_);
        }
        table_ = {};
        codes_.clear();
    }

    CVelmString& error_;
    CVelmString base_ = CVelmRatesTable().base;
    CVelmRatesTable table_;
    CVelmRatesTable latest_;
    std::unordered_set<CVelmString> codes_;  ///< of the day's rates, folded
};

/// <Cube currency='USD' rate='1.0876'/> within <Cube time='2024-07-05'>
bool ReadXml(CVelmStringView text, CVelmTableBuilder& table) {
    CVelmXmlReader reader(text);
    for (;;) {
        const XmlEvent event = reader.Next();
        if (event == XmlEvent::Error) {
            return table.Fail(reader.ErrorText());
        }
        if (event == XmlEvent::Finished) {
            return true;
        }
        if (event == XmlEvent::End || reader.Name() != u"Cube") {
            continue;
        }
        const auto time = reader.Attribute(u"time");
        if (time && !table.BeginDay(*time)) {
            return false;
        }
        const auto currency = reader.Attribute(u"currency");
        const auto rate = reader.Attribute(u"rate");
        if ((currency || rate) && !table.Add(currency.value_or(CVelmString()), rate.value_or(CVelmString()))) {
            return false;
        }
    }
}

/// A line of codes behind "Date", then a line of rates for each day. Lines may end with a comma.
bool ReadCsv(const std::vector<CVelmStringView>& lines, CVelmTableBuilder& table) {
    const std::vector<CVelmStringView> codes = Split(lines.front());
    for (std::size_t row = 1; row < lines.size(); ++row) {
        const std::vector<CVelmStringView> rates = Split(lines[row]);
        if (rates.size() != codes.size()) {
            return table.Fail(u"the line of " + Quoted(rates.front()) + u" needs one rate for each code");
        }
        if (!table.BeginDay(rates.front())) {
            return false;
        }
        for (std::size_t i = 1; i < codes.size(); ++i) {
            const bool isPastEnd = i + 1 == codes.size() && codes[i].empty() && rates[i].empty();
            if (!isPastEnd && rates[i] != NOT_QUOTED && !table.Add(codes[i], rates[i])) {
                return false;
            }
        }
    }
    return true;
}

/// A code and its rate in each line, with optional lines "base CODE" and "date DAY".
bool ReadPlain(const std::vector<CVelmStringView>& lines, CVelmTableBuilder& table) {
    for (const CVelmStringView line : lines) {
        const std::size_t end = std::min(line.find_first_of(u" \t,;"), line.size());
        const CVelmStringView code = line.substr(0, end);
        CVelmStringView rest = Trim(line.substr(end), BLANKS);
        rest = Trim(rest.substr(rest.starts_with(u',') || rest.starts_with(u';') ? 1 : 0), BLANKS);
        if (rest.empty()) {
            return table.Fail(u"a line has no rate: " + Quoted(line));
        }
        if (code == BASE_WORD) {
            table.SetBase(rest);
        } else if (!(code == DATE_WORD ? table.SetDay(rest) : table.Add(code, rest))) {
            return false;
        }
    }
    return true;
}

bool ReadText(CVelmStringView text, CVelmTableBuilder& table) {
    const CVelmStringView start = Trim(text, u" \t\r\n");
    if (start.starts_with(u'<')) {
        return ReadXml(text, table);
    }
    const std::vector<CVelmStringView> lines = FilledLines(text);
    if (lines.empty()) {
        return table.Fail(u"it is empty");
    }
    const CVelmStringView first = lines.front();
    return Trim(first.substr(0, first.find(u',')), BLANKS) == CSV_START ? ReadCsv(lines, table)
                                                                        : ReadPlain(lines, table);
}

}  // namespace

std::optional<CVelmRatesTable> ReadRatesTable(std::string_view bytes, CVelmString& error) {
    CVelmTableBuilder table(error);
    if (bytes.size() > MAX_TABLE_SIZE) {
        table.Fail(u"it is too large");
        return std::nullopt;
    }
    // Text in UTF-16 is full of them.
    if (bytes.find('\0') != std::string_view::npos) {
        table.Fail(u"it is not UTF-8 text; save it as UTF-8");
        return std::nullopt;
    }
    bytes.remove_prefix(bytes.starts_with(UTF8_MARK) ? UTF8_MARK.size() : 0);
    return ReadText(FromUtf8(bytes), table) ? table.Finish() : std::nullopt;
}

}  // namespace velm
