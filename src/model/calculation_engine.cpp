#include "model/calculation_engine.h"

#include <cstddef>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#include "formula/formula.h"

namespace velm {

namespace {

/// The outputs of one recalculation, swept in order until a sweep computes none; each new value is bound immediately. A
/// failed formula fails again until a name that it reads is bound, so sweeps skip it until then, unless it reads the
/// clock or the random generator.
class OutputSweeps {
public:
    explicit OutputSweeps(FormulaContext& context) : context_(context) {}

    void Add(CVelmItem& item) {
        item.state = STATE_NONE;
        outputs_.push_back({&item, ReadFormula(item)});
    }

    /// Outputs that never get a value end in an error.
    void Run() {
        bool computed = false;
        for (std::size_t position = 0; position < outputs_.size(); ++position) {
            computed = Compute(position) || computed;
        }
        while (computed) {
            computed = Sweep();
        }
        for (const Output& output : outputs_) {
            if (IsPending(output)) {
                output.item->state = STATE_ERROR;
            }
        }
    }

private:
    struct Output {
        CVelmItem* item;
        CVelmFormula formula;
        bool hasFailed = false;
    };

    static bool IsPending(const Output& output) { return output.item->state == STATE_NONE; }

    CVelmFormula ReadFormula(const CVelmItem& item) const {
        CVelmString formula = item.valueText;
        return item.format.ToFormula(formula, context_.Clock()) ? CVelmFormula(formula) : CVelmFormula();
    }

    /// Evaluates the due outputs in order. One that becomes due meanwhile is evaluated in this sweep if it lies ahead,
    /// otherwise in the next. False when none got a value.
    bool Sweep() {
        bool computed = false;
        for (auto next = due_.begin(); next != due_.end();) {
            const std::size_t position = *next;
            due_.erase(next);
            computed = Compute(position) || computed;
            next = due_.upper_bound(position);
        }
        return computed;
    }

    bool Compute(std::size_t position) {
        const Output& output = outputs_[position];
        const bool evaluated = output.formula.Evaluate(context_, output.item->value);
        if (evaluated) {
            output.item->state = STATE_VALID;
            Bind(*output.item);
        } else {
            Postpone(position);
        }
        return evaluated;
    }

    void Bind(const CVelmItem& item) {
        const CVelmStringView name = PlainName(context_, item.identifier);
        if (name.empty()) {
            return;
        }
        context_.Bind(name, item.value);
        const auto found = readers_.find(name);
        if (found == readers_.end()) {
            return;
        }
        for (const std::size_t reader : found->second) {
            if (IsPending(outputs_[reader])) {
                due_.insert(reader);
            }
        }
    }

    void Postpone(std::size_t position) {
        Output& output = outputs_[position];
        if (output.formula.IsVolatile()) {
            due_.insert(position);
        }
        if (!std::exchange(output.hasFailed, true)) {
            for (const CVelmStringView name : output.formula.VariablesRead()) {
                readers_[name].push_back(position);
            }
        }
    }

    FormulaContext& context_;
    std::vector<Output> outputs_;
    std::set<std::size_t> due_;                                              ///< positions
    std::unordered_map<CVelmStringView, std::vector<std::size_t>> readers_;  ///< of each name, those that have failed
};

void ReadInput(CVelmItem& input, FormulaContext& context) {
    if (input.state == STATE_NONE) {
        input.state = input.ReadStoredValue(context, input.value) ? STATE_VALID : STATE_ERROR;
    }
    if (input.state == STATE_VALID) {
        DefineVariable(context, input.identifier, input.value);
    }
}

}  // namespace

void SolveCalculation(const CVelmItems& items, FormulaContext& context) {
    OutputSweeps outputs(context);
    for (const auto& item : items) {
        if (item->IsOutput()) {
            outputs.Add(*item);
        } else {
            ReadInput(*item, context);
        }
    }
    outputs.Run();
    for (const auto& item : items) {
        UndefineVariable(context, item->identifier);
    }
}

}  // namespace velm
