#include <fmt/ranges.h>

#include <algorithm>

#include "arguments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "formats/format_table.h"
#include "json.h"
#include "number_text.h"
#include "page_section.h"
#include "table.h"

namespace velm {

namespace {

/// The first and the last day; nothing for a document without dated rates.
std::optional<std::pair<CVelmDay, CVelmDay>> DaysOfRates(const CVelmDocument& document, const CVelmRateDays& days) {
    const auto* conversionDoc = dynamic_cast<const CVelmConversionDoc*>(&document);
    return conversionDoc == nullptr ? std::nullopt : days.Range(*conversionDoc);
}

void WriteItem(const CVelmItem& item, CVelmJson& json) {
    json.BeginObject();
    json.Text("id", item.identifier);
    json.Text("name", item.name);
    json.Integer("type", item.GetType());
    json.Boolean("output", item.IsOutput());
    json.Boolean("shown", item.shown != 0);
    json.Text("text", item.valueText);
    json.Integer("allowed", item.format.allowedFormats);
    json.Integer("display", item.format.displayFormat);
    json.Integer("input", item.format.inputFormat);
    json.BeginArray("parts");
    for (const CVelmCompoundPart& part : item.format.compoundParts) {
        json.BeginArray();
        json.Text(part.label);
        json.Number(part.factor);
        json.EndArray();
    }
    json.EndArray();
    json.EndObject();
}

void WriteConversion(const CVelmConversion& conversion, const CVelmRateDays& days, CVelmJson& json) {
    json.BeginObject();
    json.Integer("unit1", conversion.unit1->index);
    json.Integer("unit2", conversion.unit2->index);
    json.Boolean("formula", conversion.IsFormula());
    json.Number("factor", conversion.factor);
    json.Number("offset", conversion.offset);
    json.Text("forward", conversion.forwardFormula);
    json.Text("reverse", conversion.reverseFormula);
    if (const auto day = days.DayOf(conversion)) {
        json.Text("date", DayText(*day));
    }
    json.EndObject();
}

std::string DocumentAsJson(const CVelmDocument& document, const CVelmRateDays& days) {
    CVelmJson json(true);
    json.BeginObject();
    json.Integer("kind", document.GetKind());
    json.Text("title", document.title);
    json.Text("category", document.category);
    json.Text("file", document.fileName);
    json.Text("updated", document.updatedText);
    if (const auto range = DaysOfRates(document, days)) {
        WriteRatesDate(range->first, json);
    }
    json.BeginArray("items");
    for (const auto& item : document.items) {
        WriteItem(*item, json);
    }
    json.EndArray();
    json.BeginArray("conversions");
    if (const auto* conversions = ConversionsOf(document)) {
        for (const auto& conversion : *conversions) {
            WriteConversion(*conversion, days, json);
        }
    }
    json.EndArray();
    json.EndObject();
    return json.Result();
}

std::string LinearText(const CVelmConversion& conversion) {
    std::string text = "x * " + ShortestText(conversion.factor);
    if (conversion.offset != 0.0) {
        text += (conversion.offset < 0.0 ? " - " : " + ") + ShortestText(std::abs(conversion.offset));
    }
    return text;
}

void AddConversionRows(const CVelmConversion& conversion, const CVelmRateDays& days, TableRows& rows) {
    const std::string from = ToUtf8(conversion.unit1->ShortName());
    const std::string to = ToUtf8(conversion.unit2->ShortName());
    if (!conversion.IsFormula()) {
        rows.push_back({fmt::format("  {} -> {}", from, to), LinearText(conversion)});
        if (const auto day = days.DayOf(conversion)) {
            rows.back().push_back(ToUtf8(DayText(*day)));
        }
        return;
    }
    if (conversion.WorksForward()) {
        rows.push_back({fmt::format("  {} -> {}", from, to), ToUtf8(conversion.forwardFormula)});
    }
    if (conversion.WorksInReverse()) {
        rows.push_back({fmt::format("  {} -> {}", to, from), ToUtf8(conversion.reverseFormula)});
    }
}

void PrintDocument(const CVelmDocument& document, const CVelmRateDays& days, CVelmOutput& out) {
    TableRows header{{"Title:", ToUtf8(document.title)},
                     {"Category:", ToUtf8(document.category)},
                     {"File:", ToUtf8(document.FileNameWithExtension())},
                     {"Updated:", ToUtf8(document.updatedText)}};
    if (const auto range = DaysOfRates(document, days)) {
        const std::string first = ToUtf8(DayText(range->first));
        header.push_back(
            {"Rates:", range->first == range->second ? first : first + " to " + ToUtf8(DayText(range->second))});
    }
    PrintTable(header, out);
    out.WriteLine(fmt::format("\n{} items", document.items.size()));
    TableRows rows;
    for (const auto& item : document.items) {
        const char* formulaMark = item->IsOutput() ? "= " : "";
        rows.push_back(
            {"  " + ToUtf8(item->identifier), ToUtf8(item->name), formulaMark + ToUtf8(item->valueText),
             fmt::format("{}{}", fmt::join(FormatWords(item->format), ", "), item->shown != 0 ? "" : " (hidden)")});
    }
    PrintTable(rows, out);
    const auto* conversions = ConversionsOf(document);
    if (conversions == nullptr) {
        return;
    }
    out.WriteLine(fmt::format("\n{} conversions", conversions->size()));
    TableRows conversionRows;
    for (const auto& conversion : *conversions) {
        AddConversionRows(*conversion, days, conversionRows);
    }
    PrintTable(conversionRows, out);
}

/// Says so when the file has changed since the text was written.
void PrintSources(const CommandContext& context, const CVelmString& folder, const CVelmDocument& document) {
    const CVelmString name = document.FileNameWithExtension();
    const std::vector<std::string> lines = ReadSection(context.services, folder, name);
    if (lines.empty()) {
        Fail(fmt::format("no text reference in {} has the sources of {}", ToUtf8(folder), ToUtf8(name)));
    }
    for (const std::string& line : lines) {
        context.out.WriteLine(OneLine(line));
    }
    const std::string day = fmt::format("{}, {}", ToUtf8(name), ToUtf8(document.updatedText));
    if (std::find(lines.begin(), lines.end(), day) == lines.end()) {
        PrintError(fmt::format("{} changed on {}; these are the sources of the original file", ToUtf8(name),
                               ToUtf8(document.updatedText)));
    }
}

/// Every text that an item which takes a value is called by on the command line.
void PrintNames(const CVelmDocument& document, CVelmOutput& out) {
    for (const auto& item : document.items) {
        for (const CVelmString& text : {item->identifier, item->name}) {
            if (!item->IsOutput() && !text.empty()) {
                out.WriteLine(OneLine(ToUtf8(text)));
            }
        }
    }
}

}  // namespace

int RunShow(CommandContext& context, const std::vector<std::string>& arguments) {
    std::string file;
    bool json = false;
    bool names = false;
    bool sources = false;
    if (!ReadArguments(context, arguments,
                       {{"FILE", &file, "Data file: a path or a name in the data folder"},
                        {"--json", &json, "Write everything as JSON"},
                        {"--names", &names, "Print the names of the units or inputs alone, one to a line", "--json"},
                        {"--sources", &sources,
                         "Print what the file is about and where its numbers and formulas come from", "--json"}})) {
        return STATUS_OK;
    }
    const DataFilePath path = FindDataFile(context, file);
    const std::unique_ptr<CVelmDocument> document = OpenDataFile(context, path, file);
    if (sources) {
        PrintSources(context, path.folder, *document);
        return STATUS_OK;
    }
    if (names) {
        PrintNames(*document, context.out);
        return STATUS_OK;
    }
    const CVelmRateDays days = RateDaysOf(context, path, *document);
    if (json) {
        context.out.WriteLine(DocumentAsJson(*document, days));
    } else {
        PrintDocument(*document, days, context.out);
    }
    if (const auto range = DaysOfRates(*document, days)) {
        WarnOfOldRates(context, range->first);
    }
    return STATUS_OK;
}

}  // namespace velm
