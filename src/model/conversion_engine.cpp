#include "model/conversion_engine.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace velm {

// The search is depth-first over the units that are not yet solved, and one that no route was found to is open to other
// routes again. Trying such units again and again makes the plain search exponential, so those known to be unreachable
// are passed over. An unsolved unit is unreachable when no path through unsolved units links it to one that could be
// computed at once (a working step leads to it from a known unit): entering it could neither succeed nor change
// anything. Units of the current route are closed, so they are never crossed.
//
// Units linked through unsolved ones are unreachable or open all together. The marks may miss an unreachable unit but
// are never wrong about one: all units are unreachable while nothing is known; closing a unit only takes paths away;
// one that becomes known reopens what it leads to (SetKnown); one that the search backtracks from is unreachable
// like all its neighbors or reopens them (Backtrack). A missed unit is marked when the search backtracks from it.
//
// The marks lie side by side, apart from the items, so that a search of many units mostly stays within the cache.

namespace {

/// True for an item of the document; its index is right.
bool IsOwn(const CVelmItems& items, const CVelmItem* item) {
    return item != nullptr && item->index >= 0 && static_cast<std::size_t>(item->index) < items.size() &&
           items[static_cast<std::size_t>(item->index)].get() == item;
}

/// A conversion of a unit with itself never applies: its unit is being solved whenever it is looked at.
bool IsEdge(const CVelmItems& items, const CVelmConversion& conversion) {
    return conversion.unit1 != conversion.unit2 && IsOwn(items, conversion.unit1) && IsOwn(items, conversion.unit2);
}

class Search {
public:
    Search(const CVelmItems& items, const CVelmConversions& conversions, FormulaContext& context)
        : items_(items), context_(context), marks_(items.size(), Mark::Unreachable) {
        BuildSteps(conversions);
        taken_.reserve(items.size());
    }

    /// Solves for the units that are shown or asked for. Returns the steps that it took, in order.
    std::vector<CVelmStepTaken> Run(const CVelmItem* current, std::span<const CVelmItem* const> asked) {
        if (IsOwn(items_, current) && current->state == STATE_VALID) {
            SetKnown(static_cast<std::size_t>(current->index));
        }
        std::vector<bool> isAsked(items_.size());
        for (const CVelmItem* item : asked) {
            isAsked[static_cast<std::size_t>(item->index)] = true;
        }
        for (std::size_t unit = 0; unit < items_.size(); ++unit) {
            if (marks_[unit] == Mark::Open && (items_[unit]->shown != 0 || isAsked[unit])) {
                Solve(unit);
            }
        }
        return std::move(taken_);
    }

private:
    /// State of a unit during the search.
    enum class Mark : std::uint8_t {
        Unreachable,  ///< not solved, and entering it is futile
        Open,         ///< not solved
        Known,        ///< has a value
        Closed,       ///< on the route, or solved with an error
    };

    /// One way to compute a unit: from another unit, by a conversion, in one of its two directions.
    struct Step {
        CVelmConversionStep step;
        std::size_t source;
        bool works;
        bool worksBack;  ///< in the other direction
    };

    /// A unit on the current route and the step that is tried next for it.
    struct Visit {
        std::size_t unit;
        std::size_t nextStep;
    };

    /// Groups the conversions by the unit that they compute, each conversion once for either end.
    void BuildSteps(const CVelmConversions& conversions) {
        firstStep_.resize(items_.size() + 1);
        for (const auto& conversion : conversions) {
            if (IsEdge(items_, *conversion)) {
                ++firstStep_[static_cast<std::size_t>(conversion->unit1->index)];
                ++firstStep_[static_cast<std::size_t>(conversion->unit2->index)];
            }
        }
        std::partial_sum(firstStep_.begin(), firstStep_.end(), firstStep_.begin());
        steps_.resize(firstStep_.back());
        // Filled backward, so that each group keeps the conversions' order and its entry ends at its start.
        for (auto conversion = conversions.rbegin(); conversion != conversions.rend(); ++conversion) {
            if (IsEdge(items_, **conversion)) {
                AddSteps(**conversion);
            }
        }
    }

    void AddSteps(CVelmConversion& conversion) {
        const auto unit1 = static_cast<std::size_t>(conversion.unit1->index);
        const auto unit2 = static_cast<std::size_t>(conversion.unit2->index);
        const bool forward = conversion.WorksForward();
        const bool reverse = conversion.WorksInReverse();
        steps_[--firstStep_[unit2]] = {{&conversion, true}, unit1, forward, reverse};
        steps_[--firstStep_[unit1]] = {{&conversion, false}, unit2, reverse, forward};
    }

    std::span<const Step> StepsTo(std::size_t unit) const {
        return {steps_.data() + firstStep_[unit], steps_.data() + firstStep_[unit + 1]};
    }

    /// Depth-first search for a route to `target`. Its stack is route_, so that long chains of bridges need none of the
    /// program's.
    void Solve(std::size_t target) {
        bool solved = Enter(target);
        while (!route_.empty()) {
            Visit& visit = route_.back();
            if (solved) {
                // The bridge entered last has been solved, perhaps with an error, and then the step does not apply.
                solved = Apply(steps_[visit.nextStep - 1], visit.unit);
                if (solved) {
                    route_.pop_back();
                }
            } else if (const Step* bridge = NextBridge(visit)) {
                solved = Enter(bridge->source);
            } else {
                Backtrack(visit.unit);
                route_.pop_back();
            }
        }
    }

    /// Closes a unit and tries the steps from known units. True when one applied; otherwise the unit joins the route.
    bool Enter(std::size_t unit) {
        marks_[unit] = Mark::Closed;
        for (const Step& step : StepsTo(unit)) {
            if (marks_[step.source] == Mark::Known && Apply(step, unit)) {
                return true;
            }
        }
        route_.push_back({unit, firstStep_[unit]});
        return false;
    }

    bool Apply(const Step& step, std::size_t unit) {
        if (!step.step.Apply(context_)) {
            return false;
        }
        const CVelmItem* const item = items_[unit].get();
        taken_.push_back({step.step, item, item->state});
        if (item->state == STATE_VALID) {
            SetKnown(unit);
        }
        return true;
    }

    /// Reopens the units that the newly known unit leads to.
    void SetKnown(std::size_t unit) {
        marks_[unit] = Mark::Known;
        for (const Step& step : StepsTo(unit)) {
            if (step.worksBack) {
                Reopen(step.source);
            }
        }
    }

    /// The next step whose source is worth solving first, null when there is none left. A step that will not apply
    /// counts as well: solving its source may make other units known.
    const Step* NextBridge(Visit& visit) const {
        while (visit.nextStep < firstStep_[visit.unit + 1]) {
            const Step& step = steps_[visit.nextStep++];
            if (marks_[step.source] == Mark::Open) {
                return &step;
            }
        }
        return nullptr;
    }

    /// Removes a unit from the route.
    void Backtrack(std::size_t unit) {
        marks_[unit] = Mark::Unreachable;
        for (const Step& step : StepsTo(unit)) {
            const Mark source = marks_[step.source];
            if (source == Mark::Open || (source == Mark::Known && step.works)) {
                Reopen(unit);
                return;
            }
        }
    }

    /// Opens an unreachable unit and every one linked to it.
    void Reopen(std::size_t unit) {
        const auto visit = [this](std::size_t candidate) {
            if (marks_[candidate] == Mark::Unreachable) {
                marks_[candidate] = Mark::Open;
                toReopen_.push_back(candidate);
            }
        };
        visit(unit);
        while (!toReopen_.empty()) {
            const std::size_t next = toReopen_.back();
            toReopen_.pop_back();
            for (const Step& step : StepsTo(next)) {
                visit(step.source);
            }
        }
    }

    const CVelmItems& items_;
    FormulaContext& context_;
    std::vector<Step> steps_;             ///< grouped by the unit computed, in the conversions' order
    std::vector<std::size_t> firstStep_;  ///< by unit, one more at the end
    std::vector<Visit> route_;            ///< the units being solved, the target first
    std::vector<Mark> marks_;             ///< by unit
    std::vector<std::size_t> toReopen_;
    std::vector<CVelmStepTaken> taken_;
};

}  // namespace

std::vector<CVelmStepTaken> SolveConversions(const CVelmItems& items, const CVelmConversions& conversions,
                                             const CVelmItem* current, std::span<const CVelmItem* const> asked,
                                             FormulaContext& context) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i]->index = static_cast<std::int32_t>(i);
        if (items[i].get() != current) {
            items[i]->state = STATE_NONE;
        }
    }
    return Search(items, conversions, context).Run(current, asked);
}

std::vector<const CVelmItem*> FindFailedBridges(const CVelmItems& items, const CVelmConversions& conversions) {
    std::vector<std::vector<const CVelmItem*>> leadsTo(items.size());
    for (const auto& conversion : conversions) {
        if (!IsEdge(items, *conversion)) {
            continue;
        }
        if (conversion->WorksForward()) {
            leadsTo[static_cast<std::size_t>(conversion->unit1->index)].push_back(conversion->unit2);
        }
        if (conversion->WorksInReverse()) {
            leadsTo[static_cast<std::size_t>(conversion->unit2->index)].push_back(conversion->unit1);
        }
    }
    std::vector<const CVelmItem*> bridges(items.size());
    std::vector<const CVelmItem*> reached;
    for (const auto& item : items) {
        if (item->state == STATE_ERROR) {
            reached.push_back(item.get());
        }
    }
    for (std::size_t next = 0; next < reached.size(); ++next) {
        const CVelmItem* const source = reached[next];
        const CVelmItem* const bridge =
            source->state == STATE_ERROR ? source : bridges[static_cast<std::size_t>(source->index)];
        for (const CVelmItem* unit : leadsTo[static_cast<std::size_t>(source->index)]) {
            const CVelmItem*& found = bridges[static_cast<std::size_t>(unit->index)];
            if (unit->state == STATE_NONE && found == nullptr) {
                found = bridge;
                reached.push_back(unit);
            }
        }
    }
    return bridges;
}

bool RepeatSteps(std::span<const CVelmStepTaken> steps, FormulaContext& context) {
    return std::all_of(steps.begin(), steps.end(), [&context](const CVelmStepTaken& taken) {
        return taken.step.Apply(context) && taken.unit->state == taken.state;
    });
}

}  // namespace velm
