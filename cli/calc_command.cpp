#include <fmt/format.h>

#include <unordered_map>

#include "arguments.h"
#include "assignments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "find_item.h"
#include "formats/format_table.h"
#include "item_results.h"
#include "line_stream.h"
#include "number_text.h"

namespace velm {

namespace {

class CalcRun {
public:
    explicit CalcRun(CommandContext& context) : context_(context) {}

    int Run(const std::vector<std::string>& words) {
        if (!ReadArguments(context_, words,
                           {{"FILE", &file_, "Calculation file: a path or a name in the data folder"},
                            {"[ID=VALUE]...", &assignmentWords_,
                             "Give an input a value, as typed in the program; one VALUE may be - for one from every "
                             "line of input"},
                            {"--json", &json_, "Write every item as JSON"}})) {
            return STATUS_OK;
        }
        Prepare();
        return streamed_ == nullptr ? CalculateOnce() : CalculateStream();
    }

private:
    void Prepare() {
        for (const std::string& word : assignmentWords_) {
            assignments_.push_back(SplitAssignment("calc", word));
        }
        document_ = OpenDataFile(context_, file_, KIND_CALCULATION);
        for (const Assignment& assignment : assignments_) {
            Give(assignment);
        }
    }

    void Give(const Assignment& assignment) {
        CVelmItem& input = FindItem(*document_, assignment.name, "input");
        if (input.IsOutput()) {
            FailUsage(fmt::format("calc: {} is computed; it cannot be given a value", Quoted(assignment.name)));
        }
        if (assignment.IsStreamed()) {
            if (streamed_ != nullptr) {
                FailUsage("calc: only one VALUE can be -");
            }
            streamed_ = &input;
            return;
        }
        Type(assignment.value, input);
        given_.push_back(&input);
    }

    /// Read when the inputs before it have their values, whose names it may use.
    void Type(std::string_view text, CVelmItem& input) {
        input.valueText = FromUtf8(text);
        CompleteTyped(input.valueText, input.format.TypedFormat());
        typed_[&input] = text;
    }

    void Calculate() {
        for (const auto& item : document_->items) {
            item->state = STATE_NONE;
        }
        document_->Recalculate(context_.formulas);
    }

    /// A date that is none is calculated with as the cleared one.
    bool IsRead(const CVelmItem& input) const {
        return input.state == STATE_VALID &&
               input.format.UnreadableDate(input.valueText, context_.formulas.Clock()).empty();
    }

    int CalculateOnce() {
        Calculate();
        for (const CVelmItem* input : given_) {
            if (!IsRead(*input)) {
                const std::string& text = typed_.at(input);
                Fail(fmt::format("calc: cannot read {} as a value of {}: {}", Quoted(text), ToUtf8(input->ShortName()),
                                 TypedFault(input->format, text, context_.formulas)));
            }
        }
        if (json_) {
            context_.out.WriteLine(ResultsAsJson(ItemsOf(*document_, true), context_.services.locale, true));
            return STATUS_OK;
        }
        PrintResults(ItemsOf(*document_, false), given_, context_.services.locale, false, context_.out);
        return STATUS_OK;
    }

    /// One line for a value: the outputs that the list shows, with tabs between them.
    int CalculateStream() {
        return StreamLines(context_, [this](std::string_view line, std::string& result) {
            Type(line, *streamed_);
            Calculate();
            if (!IsRead(*streamed_)) {
                return false;
            }
            if (json_) {
                result = ResultsAsJson(ItemsOf(*document_, true), context_.services.locale, false);
                return true;
            }
            const char* separator = "";
            for (const CVelmItem* item : ItemsOf(*document_, false)) {
                if (item->IsOutput()) {
                    result += separator + ResultText(*item, context_.services.locale, false);
                    separator = "\t";
                }
            }
            return true;
        });
    }

    CommandContext& context_;
    std::string file_;
    std::vector<std::string> assignmentWords_;
    bool json_ = false;
    std::vector<Assignment> assignments_;
    std::unique_ptr<CVelmDocument> document_;
    std::vector<const CVelmItem*> given_;
    std::unordered_map<const CVelmItem*, std::string> typed_;
    CVelmItem* streamed_ = nullptr;
};

}  // namespace

int RunCalc(CommandContext& context, const std::vector<std::string>& arguments) {
    return CalcRun(context).Run(arguments);
}

}  // namespace velm
