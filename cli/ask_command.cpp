#include <fmt/format.h>

#include "ask/questions.h"
#include "cli_error.h"
#include "commands.h"
#include "json.h"
#include "platform/cache_folder.h"
#include "platform/text_distance.h"
#include "suggest.h"
#include "table.h"

namespace velm {

namespace {

std::string AnswerAsJson(const CVelmAnswer& answer) {
    CVelmJson json(true);
    json.BeginObject();
    json.Text("question", answer.understood);
    json.BeginArray("rows");
    for (const CVelmAnswerRow& row : answer.rows) {
        json.BeginObject();
        json.Text("id", row.identifier);
        json.Text("name", row.name);
        json.Number("value", row.value);
        json.Text("text", row.text);
        json.EndObject();
    }
    json.EndArray();
    json.BeginArray("notes");
    for (const CVelmString& note : answer.notes) {
        json.Text(note);
    }
    json.EndArray();
    json.EndObject();
    return json.Result();
}

void PrintAnswer(const CVelmAnswer& answer, CVelmOutput& out) {
    if (answer.rows.size() == 1) {
        out.WriteLine(ToUtf8(answer.Line()));
    } else {
        out.WriteLine(ToUtf8(answer.understood));
        TableRows rows;
        for (const CVelmAnswerRow& row : answer.rows) {
            rows.push_back({"  " + ToUtf8(row.name.empty() ? row.identifier : row.name), ToUtf8(row.TextWithUnit())});
        }
        PrintTable(rows, out);
    }
    for (const CVelmString& note : answer.notes) {
        out.WriteLine("  " + ToUtf8(note));
    }
}

/// A mistyped command is read as a question, which is then not what was meant.
void FailIfCommand(const std::string& word) {
    static constexpr int MOST_MISTAKES = 2;
    const std::vector<std::string> names = CommandNames();
    for (const std::string& name : names) {
        if (TextDistance(FromUtf8(word), FromUtf8(name)) <= MOST_MISTAKES && word.size() > name.size() / 2) {
            FailUsage(fmt::format("unknown command {}; {}", Quoted(word), DidYouMean(word, names)));
        }
    }
}

}  // namespace

int RunAsk(CommandContext& context, const std::vector<std::string>& words) {
    std::string question;
    bool json = false;
    for (const std::string& word : words) {
        if (word == "--json") {
            json = true;
            continue;
        }
        question += question.empty() ? "" : " ";
        question += word;
    }
    CVelmQuestions questions(context.services, context.formulas, context.dataFolder, UserCacheFolder());
    const CVelmAnswer answer = questions.Ask(FromUtf8(question));
    if (!answer.ok) {
        FailIfCommand(words.front());
        Fail(ToUtf8(answer.fault.message));
    }
    if (json) {
        context.out.WriteLine(AnswerAsJson(answer));
    } else {
        PrintAnswer(answer, context.out);
    }
    return STATUS_OK;
}

}  // namespace velm
