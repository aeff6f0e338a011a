#include "update/table_merge.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "model/rate_days.h"
#include "update/rates_table.h"
#include "update/unit_finder.h"

namespace velm {
namespace {

/// A rate of the table and the unit of the document that it is for.
struct KnownRate {
    CVelmItem* unit;
    double value;
};

/// For each unit linked to `base`: the conversion by which a walk from there reaches it first.
using Links = std::unordered_map<const CVelmItem*, CVelmConversion*>;

Links LinksFrom(const CVelmItem* base, const CVelmConversions& conversions) {
    std::unordered_map<const CVelmItem*, std::vector<CVelmConversion*>> ofUnit;
    for (const auto& conversion : conversions) {
        ofUnit[conversion->unit1].push_back(conversion.get());
        ofUnit[conversion->unit2].push_back(conversion.get());
    }
    Links links{{base, nullptr}};
    std::vector<const CVelmItem*> reached{base};
    for (std::size_t next = 0; next < reached.size(); ++next) {
        const CVelmItem* const unit = reached[next];
        for (CVelmConversion* conversion : ofUnit[unit]) {
            const CVelmItem* const other = conversion->unit1 == unit ? conversion->unit2 : conversion->unit1;
            if (links.try_emplace(other, conversion).second) {
                reached.push_back(other);
            }
        }
    }
    return links;
}

void SetRate(CVelmConversion& conversion, CVelmItem* base, const KnownRate& rate) {
    conversion.formulaFlag = 0;
    conversion.unit1 = base;
    conversion.unit2 = rate.unit;
    conversion.factor = rate.value;
    conversion.offset = 0.0;
    conversion.forwardFormula.clear();
    conversion.reverseFormula.clear();
}

/// The latest day of a rate that would be replaced.
std::optional<CVelmDay> LatestDay(const std::vector<KnownRate>& rates, const Links& links, const CVelmRateDays& days) {
    std::optional<CVelmDay> latest;
    for (const KnownRate& rate : rates) {
        const auto link = links.find(rate.unit);
        latest = link == links.end() ? latest : std::max(latest, days.DayOf(*link->second));
    }
    return latest;
}

void Apply(const std::vector<KnownRate>& rates, CVelmItem* base, const Links& links, const CVelmDay& day,
           CVelmConversionDoc& document, CVelmRateDays& days) {
    std::unordered_set<const CVelmItem*> units{base};
    std::unordered_set<const CVelmConversion*> set;
    for (const KnownRate& rate : rates) {
        const auto link = links.find(rate.unit);
        CVelmConversion& conversion =
            link != links.end() ? *link->second : *document.AddConversion(std::make_unique<CVelmConversion>(document));
        SetRate(conversion, base, rate);
        days.Set(conversion, day);
        units.insert(rate.unit);
        set.insert(&conversion);
    }
    std::erase_if(document.conversions, [&](const auto& conversion) {
        return units.contains(conversion->unit1) && units.contains(conversion->unit2) &&
               !set.contains(conversion.get());
    });
    document.Touch(u"Rates of " + DayText(day));
}

/// The table's rates of units that the document has; the codes of the others go to `unknown`.
std::vector<KnownRate> FindRates(const CVelmRatesTable& table, const CVelmUnitFinder& units,
                                 std::vector<CVelmString>& unknown) {
    std::vector<KnownRate> rates;
    for (const CVelmTableRate& rate : table.rates) {
        if (CVelmItem* const unit = units.Find(rate.code)) {
            rates.push_back({unit, rate.value});
        } else {
            unknown.push_back(rate.code);
        }
    }
    return rates;
}

/// Why rates of that day are refused; empty when they are not.
CVelmString AgeProblem(const CVelmDay& day, const std::optional<CVelmDay>& held, const CVelmDay& today) {
    if (held > day) {
        return u"its rates are of " + DayText(day) + u", older than those of " + DayText(*held) + u" in the data file";
    }
    // Tables come from other time zones, too.
    return DaysBetween(today, day) > 1 ? u"its day, " + DayText(day) + u", has not come yet" : CVelmString();
}

}  // namespace

CVelmTableMerge MergeTable(CVelmConversionDoc& document, const CVelmString& folder, std::string_view table,
                           TableAge age, const CVelmServices& services) {
    CVelmTableMerge result;
    const auto refuse = [&result](const CVelmString& reason) {
        result.errorText = u"the table of rates is not used: " + reason;
        return result;
    };
    const auto read = ReadRatesTable(table, result.errorText);
    if (!read) {
        return result;
    }
    if (!document.EnsureLoaded(folder)) {
        return refuse(document.FileNameWithExtension() + u" cannot be read");
    }
    const CVelmDay today = Today(services.clock);
    result.day = read->day.value_or(today);
    result.dayIsAssumed = !read->day;
    const CVelmUnitFinder units(document);
    CVelmItem* const base = units.Find(read->base);
    const std::vector<KnownRate> rates = FindRates(*read, units, result.unknown);
    if (base == nullptr || rates.empty()) {
        return refuse(document.FileNameWithExtension() +
                      (base == nullptr ? u" has no \"" + read->base + u"\", the base of its rates"
                                       : CVelmString(u" has none of its currencies")));
    }
    const Links links = LinksFrom(base, document.conversions);
    CVelmRateDays days = CVelmRateDays::Read(document, folder, services.files);
    const CVelmString problem = AgeProblem(result.day, LatestDay(rates, links, days), today);
    if (age == TableAge::NotOlder && !problem.empty()) {
        result.isAgeProblem = true;
        return refuse(problem);
    }
    Apply(rates, base, links, result.day, document, days);
    result.rateCount = rates.size();
    result.merged = true;
    if (document.Save(folder)) {
        days.Write(document, folder, services.files);
    }
    return result;
}

CVelmString SummaryOf(const CVelmTableMerge& result) {
    return IntegerText(static_cast<std::int64_t>(result.rateCount)) +
           (result.rateCount == 1 ? u" rate of " : u" rates of ") + DayText(result.day);
}

std::vector<CVelmString> RemarksOn(const CVelmTableMerge& result) {
    constexpr std::size_t MOST = 12;
    std::vector<CVelmString> remarks;
    CVelmString codes;
    for (std::size_t i = 0; i < std::min(result.unknown.size(), MOST); ++i) {
        codes += (i == 0 ? u"" : u", ") + result.unknown[i];
    }
    if (result.unknown.size() > MOST) {
        codes += u" and " + IntegerText(static_cast<std::int64_t>(result.unknown.size() - MOST)) + u" more";
    }
    if (!codes.empty()) {
        remarks.push_back(u"skipped, because there is no such unit: " + codes);
    }
    if (result.dayIsAssumed) {
        remarks.push_back(u"the table has no date; its rates count as those of today, " + DayText(result.day));
    }
    return remarks;
}

}  // namespace velm
