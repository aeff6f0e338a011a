#include "model/conversion_engine.h"

#include <cmath>
#include <utility>

#include "model/document.h"

namespace velm {

// The course of a search depends on the shape of the document (which units and conversions there are, which of them are
// shown and work) and on the states that its steps give, but on no value. While these stay, as they do from one
// keystroke to the next, the steps of the last search lead to the same end as a new one.
//
// The search is depth-first over the units that are not yet solved, and one that no route was found to is open to other
// routes again. Trying such units again and again makes the plain search exponential, so those known to be barren are
// passed over. An unsolved unit is barren when it is not joined, through unsolved units, to any that could be computed
// at once (a working step leads to it from a known unit): entering it could neither succeed nor change anything. Units
// of the current route are closed, so they are never crossed.
//
// Units joined through unsolved ones are barren or open all together. The marks may miss a barren unit but never name a
// wrong one: all units are barren while nothing is known; a unit that is closed only takes paths away; one that becomes
// known revives what it leads to (AnnounceKnown); one that is given up is barren like all its neighbours or revives
// them (GiveUp). A barren unit that was missed is marked when the search gives it up.
//
// The marks lie side by side, apart from the items, so that a search of many units mostly stays within the cache.

namespace {

std::optional<double> EvaluateAt(const CVelmFormula& formula, double x, FormulaContext& context) {
    double result = 0.0;
    context.BindX(x);
    const bool evaluated = formula.Evaluate(context, result);
    context.UnbindX();
    return evaluated ? std::optional(result) : std::nullopt;
}

void StoreResult(CVelmItem& unit, std::optional<double> result) {
    const bool valid = result && std::isfinite(*result);
    unit.state = valid ? STATE_VALID : STATE_ERROR;
    if (valid) {
        unit.value = *result;
    }
}

}  // namespace

bool CVelmConversion::ApplyForward(FormulaContext& context) {
    if (unit1->state != STATE_VALID || !WorksForward()) {
        return false;
    }
    if (IsFormula()) {
        StoreResult(*unit2, EvaluateAt(forward_.Of(forwardFormula), unit1->value, context));
    } else {
        StoreResult(*unit2, unit1->value * factor + offset);
    }
    return true;
}

bool CVelmConversion::ApplyInReverse(FormulaContext& context) {
    if (unit2->state != STATE_VALID || !WorksInReverse()) {
        return false;
    }
    if (IsFormula()) {
        StoreResult(*unit1, EvaluateAt(reverse_.Of(reverseFormula), unit2->value, context));
    } else {
        StoreResult(*unit1, factor == 0.0 ? std::nullopt : std::optional((unit2->value - offset) / factor));
    }
    return true;
}

void CVelmConversionDoc::Recalculate(FormulaContext& context) {
    engine_.Recalculate(items, conversions, currentItem, context);
}

void CVelmConversionEngine::Recalculate(const Items& items, const Conversions& conversions, const CVelmItem* current,
                                        FormulaContext& context) {
    items_ = &items;
    const bool sameShape = Remember(items, conversions, current);
    Reset(current);
    if (!sameShape) {
        BuildSteps();
        Search(context);
    } else if (!Repeat(context)) {
        Reset(current);
        Search(context);
    }
    items_ = nullptr;
}

/// True when the shape is still that of the last call.
bool CVelmConversionEngine::Remember(const Items& items, const Conversions& conversions, const CVelmItem* current) {
    newShape_.known = current != nullptr && current->state == STATE_VALID ? current : nullptr;
    newShape_.items.clear();
    for (const auto& item : items) {
        newShape_.items.push_back({item.get(), item->shown != 0});
    }
    newShape_.conversions.clear();
    for (const auto& conversion : conversions) {
        newShape_.conversions.push_back({conversion.get(), conversion->unit1, conversion->unit2,
                                         conversion->WorksForward(), conversion->WorksInReverse()});
    }
    std::swap(shape_, newShape_);
    return shape_ == newShape_;
}

void CVelmConversionEngine::Reset(const CVelmItem* current) {
    for (const auto& item : *items_) {
        if (item.get() != current) {
            item->state = STATE_NONE;
        }
    }
}

/// Applies the steps of the last search again. False, with the states half done, when one comes to another state.
bool CVelmConversionEngine::Repeat(FormulaContext& context) const {
    for (const Applied& last : applied_) {
        if (!last.step.Apply(context) || last.unit->state != last.state) {
            return false;
        }
    }
    return true;
}

void CVelmConversionEngine::Search(FormulaContext& context) {
    applied_.clear();
    marks_.assign(items_->size(), Mark::Barren);
    if (known_) {
        marks_[*known_] = Mark::Known;
        AnnounceKnown(*known_);
    }
    for (std::uint32_t unit = 0; unit < items_->size(); ++unit) {
        if (marks_[unit] == Mark::Open && shape_.items[unit].shown) {
            Solve(unit, context);
        }
    }
}

/// Groups the conversions by the unit that they compute, each conversion once for either end.
void CVelmConversionEngine::BuildSteps() {
    for (std::size_t i = 0; i < items_->size(); ++i) {
        (*items_)[i]->index = static_cast<std::int32_t>(i);
    }
    known_ = IsOwn(shape_.known) ? std::optional(static_cast<std::uint32_t>(shape_.known->index)) : std::nullopt;
    const std::vector<Join> joins = FindJoins();
    firstStep_.assign(items_->size() + 1, 0);
    for (const Join& join : joins) {
        ++firstStep_[join.unit1];
        ++firstStep_[join.unit2];
    }
    std::uint32_t end = 0;
    for (std::uint32_t& first : firstStep_) {
        end += first;
        first = end;
    }
    steps_.resize(end);
    // Filled from the back, so that each group keeps the conversions' order and its entry ends up at its beginning.
    for (auto join = joins.rbegin(); join != joins.rend(); ++join) {
        const ConversionShape& shape = *join->shape;
        steps_[--firstStep_[join->unit2]] = {shape.conversion, join->unit1, true, shape.worksForward,
                                             shape.worksInReverse};
        steps_[--firstStep_[join->unit1]] = {shape.conversion, join->unit2, false, shape.worksInReverse,
                                             shape.worksForward};
    }
}

/// The conversions between two units of the document. One of a unit with itself never applies: its unit is being solved
/// whenever it is looked at.
std::vector<CVelmConversionEngine::Join> CVelmConversionEngine::FindJoins() const {
    std::vector<Join> joins;
    joins.reserve(shape_.conversions.size());
    for (const ConversionShape& shape : shape_.conversions) {
        if (shape.unit1 != shape.unit2 && IsOwn(shape.unit1) && IsOwn(shape.unit2)) {
            joins.push_back({&shape, static_cast<std::uint32_t>(shape.unit1->index),
                             static_cast<std::uint32_t>(shape.unit2->index)});
        }
    }
    return joins;
}

/// True for an item of the document that is being recalculated; its index is right.
bool CVelmConversionEngine::IsOwn(const CVelmItem* item) const {
    return item != nullptr && item->index >= 0 && static_cast<std::size_t>(item->index) < items_->size() &&
           (*items_)[static_cast<std::size_t>(item->index)].get() == item;
}

/// Depth-first search for a route to `target`; its stack is route_, so that long chains of bridges need none of the
/// program's.
void CVelmConversionEngine::Solve(std::uint32_t target, FormulaContext& context) {
    bool solved = Enter(target, context);
    while (!route_.empty()) {
        Visit& visit = route_.back();
        if (solved) {
            // The bridge entered last has been solved, perhaps with an error, and then the step does not apply.
            solved = Apply(steps_[visit.nextStep - 1], visit.unit, context);
            if (solved) {
                route_.pop_back();
            }
        } else if (const Step* bridge = NextBridge(visit)) {
            solved = Enter(bridge->source, context);
        } else {
            GiveUp(visit.unit);
            route_.pop_back();
        }
    }
}

/// Closes a unit and tries the steps from known units. True when one applied; otherwise the unit joins the route.
bool CVelmConversionEngine::Enter(std::uint32_t unit, FormulaContext& context) {
    marks_[unit] = Mark::Closed;
    for (std::uint32_t i = firstStep_[unit]; i < firstStep_[unit + 1]; ++i) {
        if (marks_[steps_[i].source] == Mark::Known && Apply(steps_[i], unit, context)) {
            return true;
        }
    }
    route_.push_back({unit, firstStep_[unit]});
    return false;
}

bool CVelmConversionEngine::Apply(const Step& step, std::uint32_t unit, FormulaContext& context) {
    if (!step.Apply(context)) {
        return false;
    }
    CVelmItem* const item = (*items_)[unit].get();
    applied_.push_back({step, item, item->state});
    if (item->state == STATE_VALID) {
        marks_[unit] = Mark::Known;
        AnnounceKnown(unit);
    }
    return true;
}

/// The next step whose source is worth solving first, null when there is none left. A step that will not apply counts
/// as well: solving its source may make other units known.
const CVelmConversionEngine::Step* CVelmConversionEngine::NextBridge(Visit& visit) const {
    while (visit.nextStep < firstStep_[visit.unit + 1]) {
        const Step& step = steps_[visit.nextStep++];
        if (marks_[step.source] == Mark::Open) {
            return &step;
        }
    }
    return nullptr;
}

/// Takes the mark of the route off a unit.
void CVelmConversionEngine::GiveUp(std::uint32_t unit) {
    marks_[unit] = Mark::Barren;
    for (std::uint32_t i = firstStep_[unit]; i < firstStep_[unit + 1]; ++i) {
        const Step& step = steps_[i];
        const Mark source = marks_[step.source];
        if (source == Mark::Open || (source == Mark::Known && step.works)) {
            Revive(unit);
            return;
        }
    }
}

/// Revives the units that one newly known leads to.
void CVelmConversionEngine::AnnounceKnown(std::uint32_t unit) {
    for (std::uint32_t i = firstStep_[unit]; i < firstStep_[unit + 1]; ++i) {
        if (steps_[i].worksBack) {
            Revive(steps_[i].source);
        }
    }
}

/// Opens a barren unit and every one joined to it.
void CVelmConversionEngine::Revive(std::uint32_t unit) {
    const auto visit = [this](std::uint32_t candidate) {
        if (marks_[candidate] == Mark::Barren) {
            marks_[candidate] = Mark::Open;
            toRevive_.push_back(candidate);
        }
    };
    visit(unit);
    while (!toRevive_.empty()) {
        const std::uint32_t next = toRevive_.back();
        toRevive_.pop_back();
        for (std::uint32_t i = firstStep_[next]; i < firstStep_[next + 1]; ++i) {
            visit(steps_[i].source);
        }
    }
}

}  // namespace velm
