#include <fmt/format.h>

#include <algorithm>

#include "answer_text.h"
#include "arguments.h"
#include "ask/answer_rates.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "fault_mark.h"
#include "line_stream.h"
#include "platform/cache_folder.h"
#include "platform/terminal.h"
#include "question_words.h"
#include "session.h"

namespace velm {

namespace {

class AskRun {
public:
    explicit AskRun(CommandContext& context)
        : context_(context), questions_(context.services, context.formulas, context.dataFolder, UserCacheFolder()) {}

    int Run(const std::vector<std::string>& words) {
        if (!ReadArguments(context_, words,
                           {{"[QUESTION]...", &words_, "The question; - takes one from every line of input"},
                            {"--raw", &raw_, "Write the value alone with 17 significant digits", "--json"},
                            {"--json", &json_, "Write the answer as JSON"},
                            {"--complete", &complete_, "Print what can stand for the last word instead", "--json"}})) {
            return STATUS_OK;
        }
        if (words_.empty() && !complete_) {
            return StandardInputIsTerminal() && StandardOutputIsTerminal() && !json_ && !raw_
                       ? RunSession(context_, questions_, [this](CVelmStringView question) { return Ask(question); })
                       : AskStream();
        }
        const std::string question = fmt::format("{}", fmt::join(words_, " "));
        if (complete_) {
            return PrintCompletions(question);
        }
        return question == "-" ? AskStream() : AskOnce(question);
    }

private:
    /// Says once when an answer rests on old rates. Ends the command when there is no data folder to know words from.
    CVelmAnswer Ask(CVelmStringView question) {
        CVelmAnswer answer = questions_.Ask(question);
        if (!answer.ok) {
            FilesOfDataFolder(context_);
        }
        if (answer.ok && (json_ || !warned_)) {
            rates_ = OldestRate(answer, context_.services, context_.formulas, context_.dataFolder);
            warned_ = warned_ || WarnOfOldRates(context_, rates_);
        }
        return answer;
    }

    int AskOnce(const std::string& text) {
        const CVelmString question = FromUtf8(text);
        const CVelmAnswer answer = Ask(question);
        if (json_) {
            context_.out.WriteLine(AnswerAsJson(question, answer, rates_, true));
        } else if (answer.ok) {
            PrintAnswer(answer, raw_, context_.out);
        }
        context_.out.Flush();
        if (!answer.ok) {
            Refuse(question, answer.fault);
        }
        for (const CVelmString& note : answer.notes) {
            PrintError(ToUtf8(note));
        }
        return STATUS_OK;
    }

    [[noreturn]] void Refuse(const CVelmString& question, const CVelmQuestionFault& fault) const {
        const CVelmString part = question.substr(std::min(fault.position, question.size()), fault.length);
        const bool isFile = !part.empty() && context_.services.files.Exists(part);
        FailAt(ToUtf8(fault.message) + (isFile ? " (a file here has that name: put a * in quotation marks)" : ""),
               question, fault.position, fault.length);
    }

    /// A line that asks nothing is answered by an empty one, so that answers stay in step with their lines.
    int AskStream() {
        bool asked = false;
        const int status = StreamAnswers(context_, [&](std::string_view line, LineResult& result) {
            asked = true;
            const std::string_view text = Trim(line, " \t");
            return text.empty() || text.front() == '#' || AskLine(line, result);
        });
        if (!asked && status == STATUS_OK && words_.empty()) {
            FailUsage("nothing was asked");
        }
        return status;
    }

    bool AskLine(std::string_view line, LineResult& result) {
        const CVelmString question = FromUtf8(line);
        const CVelmAnswer answer = Ask(question);
        if (json_) {
            result.text = AnswerAsJson(question, answer, answer.ok ? rates_ : std::nullopt, false);
        } else if (answer.ok) {
            result.text = AnswerLine(answer, raw_);
        }
        if (!answer.ok) {
            constexpr std::size_t ENOUGH = 200;
            const std::string asked = ToUtf8(question.substr(0, ENOUGH)) + (question.size() > ENOUGH ? "..." : "");
            result.fault = fmt::format("{}: {}", Quoted(asked), ToUtf8(answer.fault.message));
        }
        for (const CVelmString& note : answer.notes) {
            result.notes.push_back(ToUtf8(note));
        }
        return answer.ok;
    }

    int PrintCompletions(const std::string& question) {
        constexpr std::size_t LIMIT = 200;
        for (const CVelmSuggestion& suggestion : questions_.Suggest(FromUtf8(question), LIMIT)) {
            context_.out.WriteLine(OneLine(ToUtf8(suggestion.word)));
        }
        return STATUS_OK;
    }

    CommandContext& context_;
    CVelmQuestions questions_;
    std::vector<std::string> words_;
    std::optional<CVelmDay> rates_;  ///< the day of the oldest rate in the last answer
    bool warned_ = false;
    bool raw_ = false;
    bool json_ = false;
    bool complete_ = false;
};

}  // namespace

int RunAsk(CommandContext& context, const std::vector<std::string>& arguments) {
    return AskRun(context).Run(arguments);
}

}  // namespace velm
