#include <fmt/format.h>

#include "arguments.h"
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

class ConvertRun {
public:
    explicit ConvertRun(CommandContext& context) : context_(context) {}

    int Run(const std::vector<std::string>& words) {
        if (!ReadArguments(context_, words,
                           {{"FILE", &file_, "Conversion file: a path or a name in the data folder"},
                            {"UNIT", &unitText_, "Identifier or name of the value's unit"},
                            {"VALUE", &value_, "As typed in the program; - takes one from every line of input"},
                            {"--to UNIT", &targetTexts_, "Print the value in this unit alone; may be repeated"},
                            {"--raw", &raw_, "Write numbers with 17 significant digits", "--json"},
                            {"--json", &json_, "Write every item as JSON"}})) {
            return STATUS_OK;
        }
        Prepare();
        return value_ == "-" ? ConvertStream() : ConvertOnce();
    }

private:
    void Prepare() {
        const DataFilePath path = FindDataFile(context_, file_);
        document_ = OpenDataFile(context_, path, file_, KIND_CONVERSION);
        rateDays_ = RateDaysOf(context_, path, *document_);
        unit_ = &FindItem(*document_, unitText_, "unit");
        for (const std::string& text : targetTexts_) {
            targets_.push_back(&FindItem(*document_, text, "unit"));
        }
        printed_ = targets_.empty() ? ItemsOf(*document_, json_) : targets_;
    }

    int ConvertOnce() {
        if (!ConvertNext(value_)) {
            Fail(fmt::format("convert: cannot read {} as a value of {}: {}", Quoted(value_), ToUtf8(unit_->name),
                             TypedFault(unit_->format, value_, context_.formulas)));
        }
        if (json_) {
            context_.out.WriteLine(ResultsAsJson(printed_, context_.services.locale, true, days_));
        } else if (targets_.empty()) {
            LeaveOutUnreachable();
            PrintResults(printed_, {unit_}, context_.services.locale, raw_, context_.out);
        } else {
            PrintTargets();
        }
        return STATUS_OK;
    }

    CVelmConversionDoc& Document() const { return static_cast<CVelmConversionDoc&>(*document_); }

    std::vector<const CVelmItem*> FailedBridges() const {
        return FindFailedBridges(document_->items, Document().conversions);
    }

    /// Units of another kind stay out of the list; those that a failed conversion leaves empty do not.
    void LeaveOutUnreachable() {
        const std::vector<const CVelmItem*> bridges = FailedBridges();
        std::erase_if(printed_, [&](const CVelmItem* item) {
            return item->state == STATE_NONE && bridges[static_cast<std::size_t>(item->index)] == nullptr;
        });
    }

    void PrintTargets() {
        for (const CVelmItem* item : printed_) {
            if (item->state != STATE_VALID) {
                FailWithout(*item);
            }
        }
        for (const CVelmItem* item : printed_) {
            context_.out.WriteLine(ResultText(*item, context_.services.locale, raw_));
        }
    }

    [[noreturn]] void FailWithout(const CVelmItem& item) const {
        const std::string from = ToUtf8(unit_->name);
        const std::string to = ToUtf8(item.name);
        if (item.state == STATE_ERROR) {
            Fail(fmt::format("convert: {} of {} has no value in {}", Quoted(value_), from, to));
        }
        if (const CVelmItem* const bridge = FailedBridges()[static_cast<std::size_t>(item.index)]) {
            Fail(fmt::format("convert: {} of {} has no value in {} because it has none in {}", Quoted(value_), from, to,
                             ToUtf8(bridge->name)));
        }
        Fail(fmt::format("convert: {} has no conversion from {} to {}", ToUtf8(document_->fileName), from, to));
    }

    /// The same for one value of many: the routes found for the first serve the others.
    bool ConvertNext(std::string_view text) {
        const Entered entered = EnterText(Document(), *unit_, FromUtf8(text), targets_, steps_, context_.formulas);
        if (entered == Entered::ByNewSteps) {
            TakeDays();
        }
        return entered != Entered::Nothing;
    }

    /// The days of the rates by which the printed values are computed, with a warning for old ones.
    void TakeDays() {
        days_ = rateDays_.DaysOfValues(steps_);
        std::optional<CVelmDay> oldest;
        for (const CVelmItem* item : printed_) {
            const auto day = days_.find(item);
            oldest = day != days_.end() && (!oldest || day->second < *oldest) ? day->second : oldest;
        }
        if (oldest && !warned_) {
            WarnOfOldRates(context_, oldest);
            warned_ = true;
        }
    }

    /// One line for a value: the units asked for, or all that the list shows, with tabs between them.
    int ConvertStream() {
        return StreamLines(context_, [this](std::string_view line, std::string& result) {
            if (!ConvertNext(line)) {
                return false;
            }
            if (json_) {
                result = ResultsAsJson(printed_, context_.services.locale, false, days_);
                return true;
            }
            for (const CVelmItem* item : printed_) {
                if (!targets_.empty() && item->state != STATE_VALID) {
                    return false;
                }
                result += item == printed_.front() ? "" : "\t";
                result += ResultText(*item, context_.services.locale, raw_);
            }
            return true;
        });
    }

    CommandContext& context_;
    std::string file_;
    std::string unitText_;
    std::string value_;
    std::vector<std::string> targetTexts_;
    bool raw_ = false;
    bool json_ = false;
    std::unique_ptr<CVelmDocument> document_;
    CVelmItem* unit_ = nullptr;
    std::vector<CVelmItem*> targets_;
    std::vector<CVelmItem*> printed_;
    std::vector<CVelmStepTaken> steps_;
    CVelmRateDays rateDays_;
    CVelmItemDays days_;  ///< of the items that the steps computed
    bool warned_ = false;
};

}  // namespace

int RunConvert(CommandContext& context, const std::vector<std::string>& arguments) {
    return ConvertRun(context).Run(arguments);
}

}  // namespace velm
