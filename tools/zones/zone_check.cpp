#include "zone_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

#include "datetime/date_time.h"
#include "formula/formula.h"
#include "yearly_change.h"
#include "zone_history.h"

namespace velm::zones {
namespace {

constexpr std::int64_t QUARTER = HOUR / 4;
constexpr double MILLISECOND = 0.001 / DAY;

/// Farther than any clock is put forward or back.
constexpr std::int64_t CALM = 3 * HOUR;

class ZoneCheck {
public:
    ZoneCheck(const ZoneHistory& history, const ZoneCase& zoneCase, const CVelmClock& clock)
        : history_(history),
          forward_(FromUtf8(zoneCase.forward)),
          reverse_(FromUtf8(zoneCase.reverse)),
          context_(clock) {}

    /// Where the formulas are wrong; empty when they are right.
    std::string Run() {
        std::int64_t time = FIRST_TIME;
        std::int64_t offset = history_.OffsetAt(time);
        for (const OffsetChange& change : history_.changes) {
            time = CheckHours(time, change.time - CALM, offset);
            time = CheckHoursAround(time, change);
            CheckChange(change);
            offset = change.after;
        }
        CheckHours(time, END_TIME, offset);
        return fault_;
    }

private:
    void Expect(const CVelmFormula& formula, std::int64_t x, std::int64_t expected) {
        double value = 0.0;
        context_.BindX(ValueOf(x));
        const bool evaluates = formula.Evaluate(context_, value);
        if (fault_.empty() && (!evaluates || !(std::abs(value - ValueOf(expected)) < MILLISECOND))) {
            fault_ =
                fmt::format("{} time on {}, {} h after midnight, is {} s off",
                            &formula == &forward_ ? "local" : "universal", DateWords(expected),
                            static_cast<double>(expected % DAY) / HOUR, std::round((value - ValueOf(expected)) * DAY));
        }
    }

    double ValueOf(std::int64_t time) const { return value1970_ + static_cast<double>(time) / DAY; }

    /// The hours up to `end` with one offset. Returns the first hour behind them.
    std::int64_t CheckHours(std::int64_t time, std::int64_t end, std::int64_t offset) {
        for (; time < std::min(end, END_TIME); time += HOUR) {
            Expect(forward_, time, time + offset);
            Expect(reverse_, time + offset, time);
        }
        return time;
    }

    std::int64_t CheckHoursAround(std::int64_t time, const OffsetChange& change) {
        for (; time < change.time + CALM; time += HOUR) {
            const std::int64_t local = time + (time < change.time ? change.before : change.after);
            const bool isSecond = time >= change.time && local - change.before < change.time;
            Expect(forward_, time, local);
            Expect(reverse_, local, isSecond ? local - change.before : time);
        }
        return time;
    }

    void CheckChange(const OffsetChange& change) {
        Expect(forward_, change.time - 1, change.time - 1 + change.before);
        Expect(forward_, change.time, change.time + change.after);
        for (std::int64_t left = change.time + change.before; left < change.time + change.after; left += QUARTER) {
            Expect(reverse_, left, left - change.before);
        }
    }

    const ZoneHistory& history_;
    const CVelmFormula forward_;
    const CVelmFormula reverse_;
    FormulaContext context_;
    const double value1970_ = DateTime::FromFields(1970, 1, 1).value;
    std::string fault_;
};

}  // namespace

std::vector<std::string> FindFaults(const std::vector<ZoneCase>& cases, const CVelmClock& clock) {
    std::vector<std::string> faults;
    std::set<std::tuple<ZoneHistory, std::string, std::string>> right;  // many zones are alike
    for (const ZoneCase& zoneCase : cases) {
        const ZoneHistory history = ZoneClock(zoneCase.zone).History();
        if (right.contains({history, zoneCase.forward, zoneCase.reverse})) {
            continue;
        }
        const std::string fault = ZoneCheck(history, zoneCase, clock).Run();
        if (fault.empty()) {
            right.emplace(history, zoneCase.forward, zoneCase.reverse);
        } else {
            faults.push_back(zoneCase.zone + ": " + fault);
        }
    }
    return faults;
}

}  // namespace velm::zones
