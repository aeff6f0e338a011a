#include "answer_text.h"

#include <cmath>

#include "cli_error.h"
#include "json.h"
#include "number_text.h"
#include "table.h"

namespace velm {

namespace {

std::string RowText(const CVelmAnswerRow& row, bool raw) {
    return raw && row.hasValue ? RawText(row.value) : ToUtf8(row.TextWithUnit());
}

std::string RowName(const CVelmAnswerRow& row) {
    return ToUtf8(row.name.empty() ? row.identifier : row.name);
}

void WriteRow(const CVelmAnswerRow& row, CVelmJson& json) {
    json.BeginObject();
    json.Text("id", row.identifier);
    json.Text("name", row.name);
    json.Number("value", row.hasValue ? row.value : NAN);
    json.Text("text", row.TextWithUnit());
    json.EndObject();
}

void WriteFault(const CVelmQuestionFault& fault, CVelmJson& json) {
    json.BeginObject("fault");
    json.Text("message", fault.message);
    json.Integer("position", static_cast<std::int64_t>(fault.position));
    json.Integer("length", static_cast<std::int64_t>(fault.length));
    json.EndObject();
}

void WriteAnswer(const CVelmAnswer& answer, CVelmJson& json) {
    json.Text("understood", answer.understood);
    json.BeginArray("rows");
    for (const CVelmAnswerRow& row : answer.rows) {
        WriteRow(row, json);
    }
    json.EndArray();
    json.BeginArray("notes");
    for (const CVelmString& note : answer.notes) {
        json.Text(note);
    }
    json.EndArray();
}

}  // namespace

std::string AnswerLine(const CVelmAnswer& answer, bool raw) {
    if (!raw && answer.rows.size() == 1) {
        return OneLine(ToUtf8(answer.Line()));
    }
    std::string line = raw ? "" : OneLine(ToUtf8(answer.understood)) + " = ";
    for (const CVelmAnswerRow& row : answer.rows) {
        line += &row == &answer.rows.front() ? "" : raw ? "\t" : "; ";
        line += OneLine(raw ? RowText(row, true) : RowName(row) + ": " + RowText(row, false));
    }
    return line;
}

void PrintAnswer(const CVelmAnswer& answer, bool raw, CVelmOutput& out) {
    if (answer.rows.size() == 1) {
        out.WriteLine(AnswerLine(answer, raw));
        return;
    }
    if (!raw) {
        out.WriteLine(OneLine(ToUtf8(answer.understood)));
    }
    TableRows rows;
    for (const CVelmAnswerRow& row : answer.rows) {
        rows.push_back({"  " + RowName(row), RowText(row, raw)});
    }
    PrintTable(rows, out);
}

std::string AnswerAsJson(CVelmStringView question, const CVelmAnswer& answer, const std::optional<CVelmDay>& rates,
                         bool indented) {
    CVelmJson json(indented);
    json.BeginObject();
    json.Text("question", question);
    if (answer.ok) {
        WriteAnswer(answer, json);
    } else {
        WriteFault(answer.fault, json);
    }
    if (rates) {
        WriteRatesDate(*rates, json);
    }
    json.EndObject();
    return json.Result();
}

}  // namespace velm
