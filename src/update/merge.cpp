#include "update/merge.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/file_stream.h"
#include "update/update_file.h"

namespace velm {
namespace {

struct Rate {
    CVelmItem* unit1;
    CVelmItem* unit2;
    double factor;
};

/// The content of an update file.
struct Update {
    std::vector<Rate> rates;
    CVelmString timeStamp;
};

/// By identifier. Deliberate: update files name units in any letter case, whatever it may mean elsewhere. The items
/// that carry one are in the document's order.
using Units = std::unordered_map<CVelmString, std::vector<CVelmItem*>>;

Units UnitsOf(const CVelmDocument& document) {
    Units units;
    for (const auto& item : document.items) {
        if (!item->identifier.empty()) {
            units[FoldCase(item->identifier)].push_back(item.get());
        }
    }
    return units;
}

/// The n-th unit that carries the identifier, counted from 0; null when there is none.
CVelmItem* FindUnit(const Units& units, CVelmStringView identifier, std::size_t n) {
    const auto found = units.find(FoldCase(identifier));
    return found == units.end() || n >= found->second.size() ? nullptr : found->second[n];
}

/// Nothing when the file is not an update file or cannot be read to its end.
std::optional<Update> ReadUpdate(CVelmFileStream& stream, const CVelmDocument& document, FormulaContext& context) {
    CVelmString line;
    if (stream.ReadLine(line) <= 0 || !line.starts_with(UPDATE_MAGIC)) {
        return std::nullopt;
    }
    Update update;
    const Units units = UnitsOf(document);
    while (ReadFilledLine(stream, line)) {
        if (line.starts_with(UPDATED_LINE)) {
            update.timeStamp += u"Downloaded file timestamp: ";
            update.timeStamp.append(line, UPDATED_LINE.size());
        }
        const auto rate = SplitRateLine(line);
        double factor = 0.0;
        if (!rate || !EvaluateFormula(context, rate->factor, factor) || factor == 0.0) {
            continue;
        }
        // A rate between equal identifiers refers to the first two items with it.
        CVelmItem* const unit1 = FindUnit(units, rate->unit1, 0);
        CVelmItem* const unit2 = FindUnit(units, rate->unit2, EqualsNoCase(rate->unit1, rate->unit2) ? 1 : 0);
        if (unit1 != nullptr && unit2 != nullptr) {
            update.rates.push_back({unit1, unit2, factor});
        }
    }
    return stream.Remaining() == 0 ? std::optional(std::move(update)) : std::nullopt;
}

void Apply(const Update& update, CVelmConversionDoc& document) {
    // The first conversion between two units, in either direction.
    std::map<std::pair<CVelmItem*, CVelmItem*>, CVelmConversion*> conversions;
    for (const auto& conversion : document.conversions) {
        conversions.try_emplace(std::minmax(conversion->unit1, conversion->unit2), conversion.get());
    }
    for (const Rate& rate : update.rates) {
        CVelmConversion*& conversion = conversions[std::minmax(rate.unit1, rate.unit2)];
        if (conversion == nullptr) {
            conversion = document.AddConversion(std::make_unique<CVelmConversion>(document));
        }
        conversion->formulaFlag = 0;
        // Deliberate: a conversion stored in the opposite direction is reversed to that of the rate.
        conversion->unit1 = rate.unit1;
        conversion->unit2 = rate.unit2;
        conversion->factor = rate.factor;
        conversion->offset = 0.0;
        conversion->forwardFormula.clear();
        conversion->reverseFormula.clear();
    }
    // The file format's maximum.
    document.Touch(update.timeStamp.substr(0, CVelmFileStream::MAX_STRING));
}

}  // namespace

bool Merge(CVelmConversionDoc& document, const CVelmCatalog& catalog, FormulaContext& context) {
    const CVelmServices& services = catalog.Services();
    const CVelmString& folder = catalog.Folder();
    const auto name = document.fileName.empty()
                          ? std::nullopt
                          : FindInFolder(services.files, folder, document.fileName + CVelmString(UPDATE_EXTENSION));
    // A partially loaded document must not overwrite its file.
    if (!name || !document.EnsureLoaded(folder)) {
        return false;
    }
    CVelmFileStream stream(services.files, services.clock);
    if (!stream.OpenRead(folder + *name)) {
        return false;
    }
    const auto update = ReadUpdate(stream, document, context);
    stream.Close();
    if (!update) {
        return false;
    }
    Apply(*update, document);
    if (document.Save(folder)) {
        services.files.Remove(folder + *name);
    }
    return true;
}

void MergeWhenOpened(CVelmCatalog& catalog, FormulaContext& context) {
    catalog.SetPendingMerge([&context](CVelmConversionDoc& document, const CVelmCatalog& owner) {
        return Merge(document, owner, context);
    });
}

}  // namespace velm
