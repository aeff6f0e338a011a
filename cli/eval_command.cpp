#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "arguments.h"
#include "assignments.h"
#include "cli_error.h"
#include "commands.h"
#include "fault_mark.h"
#include "formats/format_table.h"
#include "formats/value_format.h"
#include "line_stream.h"
#include "number_text.h"
#include "suggest.h"

namespace velm {

namespace {

struct AngleWord {
    const char* word;
    AngleMode mode;
};

constexpr std::array<AngleWord, 3> ANGLE_WORDS{
    {{"rad", AngleMode::Radians}, {"deg", AngleMode::Degrees}, {"gra", AngleMode::Grads}}};

std::vector<std::string> AngleWords() {
    std::vector<std::string> words;
    words.reserve(ANGLE_WORDS.size());
    for (const AngleWord& angle : ANGLE_WORDS) {
        words.emplace_back(angle.word);
    }
    return words;
}

void SetAngleMode(FormulaContext& formulas, const std::string& word) {
    for (const AngleWord& angle : ANGLE_WORDS) {
        if (angle.word == word) {
            formulas.SetAngle(angle.mode);
            return;
        }
    }
    const std::vector<std::string> words = AngleWords();
    FailUsage(fmt::format("eval: {} is not an angle mode; {}", Quoted(word), DidYouMean(word, words, words.size())));
}

/// Splits a list at commas outside parentheses.
std::vector<std::string> SplitList(const std::string& list) {
    std::vector<std::string> pieces(1);
    int depth = 0;
    for (const char c : list) {
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (c == ',' && depth == 0) {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    return pieces;
}

void ReadParts(const std::string& list, FormulaContext& formulas, CVelmValueFormat& format) {
    const std::vector<std::string> pieces = SplitList(list);
    if (pieces.size() > COMPOUND_PARTS) {
        FailUsage(fmt::format("eval: --parts takes at most {} parts", COMPOUND_PARTS));
    }
    format.compoundParts = {};
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const std::size_t colon = pieces[i].rfind(':');
        if (colon == std::string::npos) {
            FailUsage(fmt::format("eval: {} in --parts is not of the form LABEL:FACTOR", Quoted(pieces[i])));
        }
        format.compoundParts[i].label = FromUtf8(pieces[i].substr(0, colon));
        const std::string factor = pieces[i].substr(colon + 1);
        double& value = format.compoundParts[i].factor;
        if (!EvaluateFormula(formulas, FromUtf8(factor), value) || value <= 0.0) {
            Fail(fmt::format("eval: the factor {} of --parts is not a positive number", Quoted(factor)));
        }
    }
}

/// The words of an option, whose first one is the default.
std::string Choices(std::vector<std::string> words) {
    words.front() += " (the default)";
    return AnyOf(words);
}

class EvalRun {
public:
    explicit EvalRun(CommandContext& context) : context_(context) { format_.allowedFormats = FMT_COMPOUND; }

    int Run(const std::vector<std::string>& words) {
        if (!ReadArguments(
                context_, words,
                {{"FORMULA", &formula_, "The formula; - takes one from every line of standard input"},
                 {"[NAME=VALUE]...", &assignmentWords_, "Define a variable; one VALUE may be - instead of FORMULA"},
                 {"--angle UNIT", &angle_, "Angles in " + Choices(AngleWords())},
                 {"--as FORMAT", &as_, "Write as " + Choices(FormatWords()), "--raw"},
                 {"--plain", &plain_, "Write it as for typing instead", "--raw"},
                 {"--parts LABEL:FACTOR,...", &parts_, "The parts of compound numbers, at most four"},
                 {"--raw", &raw_, "Write the number with 17 significant digits"}})) {
            return STATUS_OK;
        }
        Prepare();
        return streamed_ == nullptr && formula_ != "-" ? EvaluateOnce() : EvaluateStream();
    }

private:
    void Prepare() {
        SetAngleMode(context_.formulas, angle_);
        if (!parts_.empty()) {
            ReadParts(parts_, context_.formulas, format_);
        }
        const FormatKind* const format = FindFormat(as_);
        if (format == nullptr) {
            FailUsage(fmt::format("eval: {} is not a format; {}", Quoted(as_), DidYouMean(as_, FormatWords())));
        }
        format_.displayFormat = format->code;
        format_.inputFormat = format->code;
        for (const std::string& word : assignmentWords_) {
            assignments_.push_back(SplitAssignment("eval", word));
        }
        for (const Assignment& assignment : assignments_) {
            Define(assignment);
        }
    }

    /// Each value may use the names before it. A streamed one, and those behind it, get theirs with every line.
    void Define(const Assignment& assignment) {
        double value = 0.0;
        if (assignment.IsStreamed()) {
            if (streamed_ != nullptr || formula_ == "-") {
                FailUsage("eval: only one of FORMULA and the values can be -");
            }
            streamed_ = &assignment;
        } else if (streamed_ == nullptr && !Evaluate(assignment.value, value)) {
            Refuse(assignment.value, " for " + assignment.name);
        }
        const CVelmString name = FromUtf8(assignment.name);
        if (!DefineVariable(context_.formulas, name, value)) {
            FailUsage(fmt::format("eval: {} is not a name", Quoted(assignment.name)));
        }
        double readBack = 0.0;
        const bool known = EvaluateFormula(context_.formulas, name, readBack);
        if (!known || (readBack != value && !(std::isnan(readBack) && std::isnan(value)))) {
            FailUsage(fmt::format("eval: {} already has a meaning in formulas", Quoted(assignment.name)));
        }
    }

    bool Evaluate(std::string_view text, double& value) const {
        return format_.ParseValueText(FromUtf8(text), context_.formulas, value, BadDates::Refused);
    }

    [[noreturn]] void Refuse(const std::string& text, const std::string& purpose) const {
        const CVelmString formula = FromUtf8(text);
        const FormulaFault fault = ValueFault(format_, formula, context_.formulas);
        const std::string message =
            fmt::format("eval: cannot evaluate {}{}: {}", Quoted(text), purpose, ToUtf8(fault.message));
        if (fault.position == NO_PLACE) {
            Fail(message);
        }
        FailAt(message, formula, fault.position, fault.length);
    }

    std::string Text(double value) const {
        if (raw_) {
            return RawText(value);
        }
        return ToUtf8(plain_ ? format_.FormatValueForInput(value)
                             : format_.FormatValue(value, context_.services.locale));
    }

    int EvaluateOnce() {
        double value = 0.0;
        if (!Evaluate(formula_, value)) {
            Refuse(formula_, "");
        }
        context_.out.WriteLine(Text(value));
        return STATUS_OK;
    }

    /// Defines the streamed value and those after it, which may use it. Forgets those of the previous line first.
    bool DefineStreamed(std::string_view line) {
        const Assignment* const end = assignments_.data() + assignments_.size();
        for (const Assignment* assignment = streamed_; assignment != end; ++assignment) {
            UndefineVariable(context_.formulas, FromUtf8(assignment->name));
        }
        for (const Assignment* assignment = streamed_; assignment != end; ++assignment) {
            double value = 0.0;
            if (!Evaluate(assignment == streamed_ ? line : assignment->value, value)) {
                return false;
            }
            DefineVariable(context_.formulas, FromUtf8(assignment->name), value);
        }
        return true;
    }

    int EvaluateStream() {
        return StreamLines(context_, [this](std::string_view line, std::string& result) {
            double value = 0.0;
            const bool streams = streamed_ != nullptr;
            if ((streams && !DefineStreamed(line)) || !Evaluate(streams ? formula_ : line, value)) {
                return false;
            }
            result = Text(value);
            return true;
        });
    }

    CommandContext& context_;
    std::string formula_;
    std::vector<std::string> assignmentWords_;
    std::string angle_ = ANGLE_WORDS.front().word;
    std::string as_ = std::string(Formats().front().word);
    std::string parts_;
    bool plain_ = false;
    bool raw_ = false;
    CVelmValueFormat format_;
    std::vector<Assignment> assignments_;
    const Assignment* streamed_ = nullptr;
};

}  // namespace

int RunEval(CommandContext& context, const std::vector<std::string>& arguments) {
    return EvalRun(context).Run(arguments);
}

}  // namespace velm
