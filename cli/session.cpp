#include "session.h"

#include "answer_text.h"
#include "cli_error.h"
#include "fault_mark.h"
#include "line_editor.h"
#include "platform/state_folder.h"
#include "question_words.h"

namespace velm {

namespace {

constexpr std::string_view PROMPT = "> ";

constexpr std::string_view GREETING = "Ask, for example, 26.2 mi in km. \"help\" says more; Ctrl+D ends.\n";

constexpr std::string_view HELP =
    "  26.2 mi in km              a value in another unit; without \"in km\", in every unit\n"
    "  5'11\" in cm                feet and inches; 5 ft 11 in\n"
    "  3 kg * 9.81 m/s^2 in lbf   units in formulas, with every function of the program\n"
    "  180 cm in ft in            an answer in two units\n"
    "  64.50 + 18%                percentages\n"
    "  w = 80 kg                  a name for a value; \"ans\" is the last answer\n"
    "  tip 64.50 18% 3 people     a calculation file and its inputs\n"
    "  today + 90 days            dates; 9:30 New York in Tokyo\n"
    "Tab completes units and files, Up brings back earlier questions, Ctrl+C drops the line, Ctrl+D ends.\n";

CVelmString HistoryFile() {
    const CVelmString folder = UserStateFolder();
    return folder.empty() ? folder : folder + u"history";
}

class Session {
public:
    Session(CommandContext& context, CVelmQuestions& questions, const AskFunction& ask)
        : out_(context.out),
          ask_(ask),
          editor_(OpenLineEditor(std::string(PROMPT), HistoryFile(),
                                 [&questions](std::string_view typed) { return CompleteQuestion(questions, typed); })) {
    }

    int Run() {
        Print(GREETING);
        for (;;) {
            const std::optional<std::string> line = editor_->ReadLine();
            if (!line) {
                Print("\n");
                return STATUS_OK;
            }
            const std::string_view asked = Trim(std::string_view(*line), " \t");
            if (asked == "exit" || asked == "quit") {
                return STATUS_OK;
            }
            if (asked == "help" || asked == "?") {
                Print(HELP);
            } else if (!asked.empty() && asked.front() != '#') {
                Answer(*line);
            }
        }
    }

private:
    void Answer(const std::string& line) {
        const CVelmString question = FromUtf8(line);
        const CVelmAnswer answer = ask_(question);
        if (!answer.ok) {
            // The question stands right above, behind the prompt.
            out_.WriteLine(std::string(PROMPT.size(), ' ') +
                           FaultMark(question, answer.fault.position, answer.fault.length));
            out_.WriteLine(OneLine(ToUtf8(answer.fault.message)));
        } else {
            PrintAnswer(answer, false, out_);
        }
        for (const CVelmString& note : answer.notes) {
            out_.WriteLine("  (" + OneLine(ToUtf8(note)) + ")");
        }
        out_.Flush();
    }

    void Print(std::string_view text) {
        out_.Write(text);
        out_.Flush();
    }

    CVelmOutput& out_;
    const AskFunction& ask_;
    std::unique_ptr<CVelmLineEditor> editor_;
};

}  // namespace

int RunSession(CommandContext& context, CVelmQuestions& questions, const AskFunction& ask) {
    return Session(context, questions, ask).Run();
}

}  // namespace velm
