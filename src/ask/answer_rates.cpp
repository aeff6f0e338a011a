#include "ask/answer_rates.h"

#include <algorithm>
#include <set>
#include <vector>

#include "model/conversion_document.h"
#include "model/conversion_engine.h"
#include "model/document_kinds.h"
#include "model/rate_days.h"

namespace velm {

namespace {

/// The units of a file that an answer is made of: those of the question first, then those of its rows.
std::vector<CVelmItem*> UnitsOf(const CVelmAnswer& answer, const CVelmString& fileName,
                                const CVelmConversionDoc& file) {
    std::vector<CVelmItem*> units;
    for (const CVelmAnswerUnit& unit : answer.units) {
        if (unit.fileName == fileName && static_cast<std::size_t>(unit.item) < file.items.size()) {
            units.push_back(file.items[static_cast<std::size_t>(unit.item)].get());
        }
    }
    for (const auto& item : file.items) {
        if (std::ranges::any_of(answer.rows, [&](const auto& row) { return row.identifier == item->identifier; })) {
            units.push_back(item.get());
        }
    }
    return units;
}

std::optional<CVelmDay> OldestIn(const CVelmString& fileName, const CVelmAnswer& answer, const CVelmServices& services,
                                 FormulaContext& context, const CVelmString& folder) {
    CVelmConversionDoc file(services);
    file.fileName = fileName.substr(0, fileName.size() - ExtensionOfKind(KIND_CONVERSION).size());
    const CVelmRateDays days = CVelmRateDays::Read(file, folder, services.files);
    if (days.IsEmpty() || !file.Load(folder, true, CVelmString(file.fileName))) {
        return std::nullopt;
    }
    const std::vector<CVelmItem*> units = UnitsOf(answer, fileName, file);
    if (units.empty()) {
        return std::nullopt;
    }
    units.front()->SetValue(1.0);
    const std::vector<const CVelmItem*> asked(units.begin() + 1, units.end());
    const CVelmItemDays found =
        days.DaysOfValues(SolveConversions(file.items, file.conversions, units.front(), asked, context));
    std::optional<CVelmDay> oldest;
    for (const CVelmItem* unit : asked) {
        const auto day = found.find(unit);
        oldest = day != found.end() && (!oldest || day->second < *oldest) ? day->second : oldest;
    }
    return oldest;
}

}  // namespace

std::optional<CVelmDay> OldestRate(const CVelmAnswer& answer, const CVelmServices& services, FormulaContext& context,
                                   const CVelmString& folder) {
    std::set<CVelmString> files;
    for (const CVelmAnswerUnit& unit : answer.units) {
        if (KindOfFileName(unit.fileName) == KIND_CONVERSION) {
            files.insert(unit.fileName);
        }
    }
    std::optional<CVelmDay> oldest;
    for (const CVelmString& file : files) {
        const auto day = OldestIn(file, answer, services, context, folder);
        oldest = day && (!oldest || *day < *oldest) ? day : oldest;
    }
    return oldest;
}

}  // namespace velm
