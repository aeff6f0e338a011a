#include "zone_formula.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <map>

#include "datetime/time_zones.h"
#include "yearly_change.h"

namespace velm::zones {
namespace {

constexpr std::int64_t MINUTE = 60;
constexpr int LOCAL_RULES = 1000;  ///< a zone's code and this much is the zone without daylight saving time

/// What a formula is written for: the function of the formula language, and what is added to a time ahead of UTC.
struct Direction {
    const char* function;
    char plus;
    char minus;
};

constexpr Direction FORWARD{"fromutc", '+', '-'};
constexpr Direction REVERSE{"toutc", '-', '+'};

/// One way to say how an offset changes, right for a part of the years.
struct Candidate {
    ZoneHistory history;
    std::string formula;
    std::int64_t usualOffset;
    std::string exceptions;  ///< in words; empty when there are none
};

/// x at a fixed offset, by the function's own zone that comes nearest to it.
std::string AtOffset(std::int64_t offset, const Direction& direction) {
    const TimeZoneRow* nearest = nullptr;
    const auto distance = [offset](const TimeZoneRow& row) { return std::abs(offset + row.bias * MINUTE); };
    const auto observes = [](const TimeZoneRow& row) { return row.daylightDate.month != 0; };
    for (const TimeZoneRow& row : TimeZones()) {
        if (nearest == nullptr ||
            std::pair(distance(row), observes(row)) < std::pair(distance(*nearest), observes(*nearest))) {
            nearest = &row;
        }
    }
    const int code = nearest->code + (observes(*nearest) ? LOCAL_RULES : 0);
    const std::int64_t rest = (offset + nearest->bias * MINUTE) / MINUTE;
    const std::string call = fmt::format("{}({},x)", direction.function, code);
    return rest == 0 ? call
                     : fmt::format("{}{}{}/1440", call, rest > 0 ? direction.plus : direction.minus, std::abs(rest));
}

std::string OffsetWords(std::int64_t offset) {
    const std::int64_t minutes = std::abs(offset) / MINUTE;
    const std::string rest = minutes % 60 == 0 ? "" : fmt::format(":{:02}", minutes % 60);
    return fmt::format("UTC{}{}{}", offset < 0 ? '-' : '+', minutes / 60, rest);
}

std::string MoreWords(std::int64_t seconds) {
    const std::string amount = std::abs(seconds) == HOUR       ? "an hour"
                               : std::abs(seconds) == HOUR / 2 ? "half an hour"
                                                               : fmt::format("{} minutes", std::abs(seconds) / MINUTE);
    return amount + (seconds > 0 ? " more" : " less");
}

std::string Choice(const std::string& condition, std::int64_t offset, std::int64_t otherwise,
                   const Direction& direction) {
    return fmt::format("iif({},{},{})", condition, AtOffset(offset, direction), AtOffset(otherwise, direction));
}

Candidate FixedOffset(std::int64_t offset, const Direction& direction) {
    return {{offset, {}}, AtOffset(offset, direction), offset, {}};
}

/// One offset from `begin` to `end` of every year that begins in March, another one otherwise.
struct YearlyRule {
    YearlyChange begin;
    YearlyChange end;
    std::int64_t inner;
    std::int64_t outer;

    ZoneHistory History() const {
        ZoneHistory history{outer, {}};
        for (int year = MarchYear(FIRST_TIME) - 1; year <= MarchYear(END_TIME) + 1; ++year) {
            history.changes.push_back({begin.TimeIn(year), outer, inner});
            history.changes.push_back({end.TimeIn(year), inner, outer});
        }
        return history;
    }

    /// Positions are a quarter of a day or more away from the numbers that they are compared with.
    std::string Condition() const {
        if (begin.Position() == end.Position()) {
            return IsBetween(begin.Position(), begin.firstDay, end.firstDay);
        }
        // The two positions do not go back to 0 in the same hour; a week after the end, the first one is over too.
        return fmt::format("({})&({}<{})", IsBetween(begin.Position(), begin.firstDay, end.firstDay + 7),
                           end.Position(), TenthBefore(end.firstDay));
    }

    /// By the clock on the wall before it is changed.
    std::string Words() const {
        std::vector<std::int64_t> begins, ends;
        for (const OffsetChange& change : History().changes) {
            (change.after == inner ? begins : ends).push_back(change.time + change.before);
        }
        const std::string first = FitYearlyChange(begins).value().Words();
        const std::string second = FitYearlyChange(ends).value().Words();
        return inner > outer ? fmt::format("{} from {}, to {}", MoreWords(inner - outer), first, second)
                             : fmt::format("{} from {}, to {}", MoreWords(outer - inner), second, first);
    }

private:
    static double TenthBefore(int day) { return (10 * day - 9) / 10.0; }

    static std::string IsBetween(const std::string& position, int first, int end) {
        return fmt::format("abs({}-{})<{}", position, (TenthBefore(first) + TenthBefore(end)) / 2, (end - first) / 2.0);
    }
};

/// Changes between the same two offsets at the same time of a weekday, in a row of years in which one rule gives them.
struct RunOfChanges {
    std::int64_t before;
    std::int64_t after;
    std::vector<std::int64_t> times;
};

std::vector<RunOfChanges> RunsOfChanges(const ZoneHistory& history) {
    std::vector<RunOfChanges> runs;
    for (const OffsetChange& change : history.changes) {
        const auto run = std::find_if(runs.rbegin(), runs.rend(), [&](const RunOfChanges& candidate) {
            std::vector<std::int64_t> times = candidate.times;
            times.push_back(change.time);
            return candidate.before == change.before && candidate.after == change.after && FitYearlyChange(times);
        });
        if (run != runs.rend()) {
            run->times.push_back(change.time);
        } else {
            runs.push_back({change.before, change.after, {change.time}});
        }
    }
    std::erase_if(runs, [](const RunOfChanges& run) { return run.times.size() < 2; });
    return runs;
}

std::vector<Candidate> YearlyRules(const ZoneHistory& history, const Direction& direction) {
    std::vector<Candidate> rules;
    const std::vector<RunOfChanges> runs = RunsOfChanges(history);
    for (const RunOfChanges& first : runs) {
        for (const RunOfChanges& second : runs) {
            const YearlyChange begin = *FitYearlyChange(first.times);
            const YearlyChange end = *FitYearlyChange(second.times);
            if (first.before == second.after && first.after == second.before && begin.firstDay < end.firstDay) {
                const YearlyRule rule{begin, end, first.after, first.before};
                rules.push_back({rule.History(), Choice(rule.Condition(), rule.inner, rule.outer, direction),
                                 std::min(rule.inner, rule.outer), rule.Words()});
            }
        }
    }
    return rules;
}

/// The change at `first` and those behind it, as long as they lead from one offset to another and back.
std::vector<Candidate> ListsOfDates(const ZoneHistory& history, std::size_t first, const Direction& direction) {
    std::vector<Candidate> lists;
    const auto [unused, outer, inner] = history.changes[first];
    ZoneHistory listed{outer, {}};
    std::string condition;
    for (std::size_t i = first; i + 1 < history.changes.size(); i += 2) {
        const OffsetChange& begin = history.changes[i];
        const OffsetChange& end = history.changes[i + 1];
        if (begin.after != inner || end.after != outer) {
            break;
        }
        listed.changes.push_back(begin);
        listed.changes.push_back(end);
        condition += fmt::format("{}(abs(x-{})<{})", condition.empty() ? "" : "|", MiddleText(begin.time, end.time),
                                 HalfLengthText(begin.time, end.time));
        lists.push_back({listed, Choice(condition, inner, outer, direction), outer,
                         MoreWords(inner - outer) + " on certain dates, given by their middle and half their length"});
    }
    return lists;
}

std::vector<Candidate> Candidates(const ZoneHistory& history, const Direction& direction) {
    std::vector<Candidate> candidates = YearlyRules(history, direction);
    candidates.push_back(FixedOffset(history.firstOffset, direction));
    for (std::size_t i = 0; i < history.changes.size(); ++i) {
        candidates.push_back(FixedOffset(history.changes[i].after, direction));
        std::ranges::move(ListsOfDates(history, i, direction), std::back_inserter(candidates));
    }
    return candidates;
}

/// Finds the stretches of time, each with its candidate, that make the shortest formula.
class Planner {
public:
    Planner(const ZoneHistory& history, const Direction& direction)
        : history_(history), candidates_(Candidates(history, direction)) {}

    struct Plan {
        std::string formula;
        std::string words;
    };

    Plan Make() {
        std::int64_t time = FIRST_TIME - DAY;
        std::string formula, words;
        while (!PlanFrom(time).IsLast()) {
            const Stretch& stretch = PlanFrom(time);
            formula += fmt::format("x<{},{},", ValueText(stretch.until), stretch.candidate->formula);
            words += fmt::format("until {}: {}; ", DateWords(stretch.until + history_.OffsetAt(stretch.until - 1)),
                                 Words(*stretch.candidate));
            time = stretch.until;
        }
        const Candidate& last = *PlanFrom(time).candidate;
        if (formula.empty()) {
            return {last.formula, last.exceptions.empty() ? "the same time all year" : last.exceptions};
        }
        return {"iif(" + formula + last.formula + ")", words + "since then: " + Words(last)};
    }

private:
    struct Stretch {
        const Candidate* candidate = nullptr;
        std::int64_t until = 0;
        std::size_t length = 0;  ///< of the formula from here on

        bool IsLast() const { return until >= END_TIME; }
    };

    static std::string Words(const Candidate& candidate) {
        const std::string offset = OffsetWords(candidate.usualOffset);
        return candidate.exceptions.empty() ? offset : offset + " and " + candidate.exceptions;
    }

    const Stretch& PlanFrom(std::int64_t time) {
        const auto known = plans_.find(time);
        if (known != plans_.end()) {
            return known->second;
        }
        constexpr std::size_t LENGTH_OF_CONDITION = 17;
        Stretch best;
        for (const Candidate& candidate : candidates_) {
            Stretch stretch{&candidate, FirstDifference(candidate.history, history_, time), candidate.formula.size()};
            if (stretch.until == time) {
                continue;
            }
            if (!stretch.IsLast()) {
                stretch.length += LENGTH_OF_CONDITION + PlanFrom(stretch.until).length;
            }
            if (best.candidate == nullptr || stretch.length < best.length) {
                best = stretch;
            }
        }
        return plans_[time] = best;
    }

    const ZoneHistory& history_;
    std::vector<Candidate> candidates_;
    std::map<std::int64_t, Stretch> plans_;
};

}  // namespace

ZoneFormulas MakeFormulas(const ZoneHistory& history) {
    const Planner::Plan forward = Planner(history, FORWARD).Make();
    const ZoneHistory local = OnLocalClock(history);
    return {forward.formula, Planner(local, REVERSE).Make().formula, forward.words};
}

}  // namespace velm::zones
