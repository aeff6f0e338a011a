#include "update/merge.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "model/file_stream.h"
#include "model/rate_days.h"
#include "update/unit_finder.h"
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
    CVelmString path;
    std::vector<Rate> rates;
    CVelmString timeStamp;
    std::optional<CVelmDay> day;  ///< of the rates; none when the time stamp names no day
};

/// Nothing when the file is not an update file or cannot be read to its end.
std::optional<Update> ReadUpdate(CVelmFileStream& stream, const CVelmDocument& document, FormulaContext& context,
                                 const CVelmClock& clock) {
    CVelmString line;
    if (stream.ReadLine(line) <= 0 || !line.starts_with(UPDATE_MAGIC)) {
        return std::nullopt;
    }
    Update update;
    const CVelmUnitFinder units(document);
    CVelmString stamp;
    while (ReadFilledLine(stream, line)) {
        if (line.starts_with(UPDATED_LINE)) {
            update.timeStamp += u"Downloaded file timestamp: ";
            stamp = line.substr(UPDATED_LINE.size());
            update.timeStamp += stamp;
        }
        const auto rate = SplitRateLine(line);
        double factor = 0.0;
        if (!rate || !EvaluateFormula(context, rate->factor, factor) || factor == 0.0) {
            continue;
        }
        // A rate between equal identifiers refers to the first two items with it.
        CVelmItem* const unit1 = units.Find(rate->unit1);
        CVelmItem* const unit2 = units.Find(rate->unit2, EqualsNoCase(rate->unit1, rate->unit2) ? 1 : 0);
        if (unit1 != nullptr && unit2 != nullptr) {
            update.rates.push_back({unit1, unit2, factor});
        }
    }
    update.day = update.timeStamp.empty() ? Today(clock) : ReadDay(Trim(CVelmStringView(stamp), u" \t"));
    return stream.Remaining() == 0 ? std::optional(std::move(update)) : std::nullopt;
}

/// The update that waits for the document, which is loaded for it; nothing when there is none or it cannot be read.
std::optional<Update> ReadPending(CVelmConversionDoc& document, const CVelmString& folder,
                                  const CVelmServices& services, FormulaContext& context) {
    const auto name = document.fileName.empty()
                          ? std::nullopt
                          : FindInFolder(services.files, folder, document.fileName + CVelmString(UPDATE_EXTENSION));
    // A partially loaded document must not overwrite its file.
    if (!name || !document.EnsureLoaded(folder)) {
        return std::nullopt;
    }
    CVelmFileStream stream(services.files, services.clock);
    if (!stream.OpenRead(folder + *name)) {
        return std::nullopt;
    }
    auto update = ReadUpdate(stream, document, context, services.clock);
    if (update) {
        update->path = folder + *name;
    }
    return update;
}

/// The first conversion between two units, in either direction.
using Conversions = std::map<std::pair<CVelmItem*, CVelmItem*>, CVelmConversion*>;

Conversions ConversionsOf(const CVelmConversionDoc& document) {
    Conversions conversions;
    for (const auto& conversion : document.conversions) {
        conversions.try_emplace(std::minmax(conversion->unit1, conversion->unit2), conversion.get());
    }
    return conversions;
}

/// The latest day of a rate that the update would replace.
std::optional<CVelmDay> LatestDay(const Update& update, const CVelmConversionDoc& document, const CVelmRateDays& days) {
    const Conversions conversions = ConversionsOf(document);
    std::optional<CVelmDay> latest;
    for (const Rate& rate : update.rates) {
        const auto found = conversions.find(std::minmax(rate.unit1, rate.unit2));
        latest = found == conversions.end() ? latest : std::max(latest, days.DayOf(*found->second));
    }
    return latest;
}

void Apply(const Update& update, CVelmConversionDoc& document, CVelmRateDays& days) {
    Conversions conversions = ConversionsOf(document);
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
        if (update.day) {
            days.Set(*conversion, *update.day);
        }
    }
    // The file format's maximum.
    document.Touch(update.timeStamp.substr(0, CVelmFileStream::MAX_STRING));
}

}  // namespace

bool Merge(CVelmConversionDoc& document, const CVelmCatalog& catalog, FormulaContext& context) {
    const CVelmServices& services = catalog.Services();
    const CVelmString& folder = catalog.Folder();
    const auto update = ReadPending(document, folder, services, context);
    if (!update) {
        return false;
    }
    CVelmRateDays days = CVelmRateDays::Read(document, folder, services.files);
    Apply(*update, document, days);
    if (document.Save(folder)) {
        days.Write(document, folder, services.files);
        services.files.Remove(update->path);
    }
    return true;
}

std::optional<CVelmOlderUpdate> RemoveOlderUpdate(CVelmConversionDoc& document, const CVelmString& folder,
                                                  const CVelmServices& services, FormulaContext& context) {
    const auto update = ReadPending(document, folder, services, context);
    if (!update || !update->day) {
        return std::nullopt;
    }
    const auto held = LatestDay(*update, document, CVelmRateDays::Read(document, folder, services.files));
    if (!held || *held <= *update->day) {
        return std::nullopt;
    }
    services.files.Remove(update->path);
    return CVelmOlderUpdate{*update->day, *held};
}

void MergeWhenOpened(CVelmCatalog& catalog, FormulaContext& context) {
    catalog.SetPendingMerge([&context](CVelmConversionDoc& document, const CVelmCatalog& owner) {
        return Merge(document, owner, context);
    });
}

}  // namespace velm
