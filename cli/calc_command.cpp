#include <fmt/format.h>

#include <algorithm>

#include "arguments.h"
#include "assignments.h"
#include "cli_error.h"
#include "commands.h"
#include "data_file.h"
#include "find_item.h"
#include "item_results.h"
#include "line_stream.h"
#include "model/value_entry.h"
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
        return streamed_.item == nullptr ? CalculateOnce() : CalculateStream();
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
            if (streamed_.item != nullptr) {
                FailUsage("calc: only one VALUE can be -");
            }
            streamed_.item = &input;
            return;
        }
        const auto known = std::ranges::find(given_, &input, &CVelmTypedInput::item);
        CVelmTypedInput& typed = known == given_.end() ? given_.emplace_back() : *known;
        typed = {&input, FromUtf8(assignment.value)};
    }

    const CVelmTypedInput* Enter(std::span<const CVelmTypedInput> inputs) {
        return EnterTexts(static_cast<CVelmCalculationDoc&>(*document_), inputs, context_.formulas);
    }

    int CalculateOnce() {
        if (const CVelmTypedInput* const unread = Enter(given_)) {
            const CVelmItem& input = *unread->item;
            const std::string text = ToUtf8(unread->text);
            Fail(fmt::format("calc: cannot read {} as a value of {}: {}", Quoted(text), ToUtf8(input.ShortName()),
                             TypedFault(input.format, text, context_.formulas)));
        }
        if (json_) {
            context_.out.WriteLine(ResultsAsJson(ItemsOf(*document_, true), context_.services.locale, true));
            return STATUS_OK;
        }
        std::vector<const CVelmItem*> given;
        std::ranges::transform(given_, std::back_inserter(given), &CVelmTypedInput::item);
        PrintResults(ItemsOf(*document_, false), given, context_.services.locale, false, context_.out);
        return STATUS_OK;
    }

    /// One line for a value: the outputs that the list shows, with tabs between them.
    int CalculateStream() {
        Enter(given_);
        return StreamLines(context_, [this](std::string_view line, std::string& result) {
            streamed_.text = FromUtf8(line);
            if (Enter({&streamed_, 1}) != nullptr) {
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
    std::vector<CVelmTypedInput> given_;
    CVelmTypedInput streamed_;
};

}  // namespace

int RunCalc(CommandContext& context, const std::vector<std::string>& arguments) {
    return CalcRun(context).Run(arguments);
}

}  // namespace velm
