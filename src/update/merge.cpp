#include "update/merge.h"

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/file_stream.h"
#include "model/folder_names.h"
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

/// Index of the units by identifier.
class CVelmUnitFinder {
public:
    explicit CVelmUnitFinder(const CVelmDocument& document) {
        for (const auto& item : document.items) {
            if (!item->identifier.empty()) {
                units_[FoldCase(item->identifier)].push_back(item.get());
            }
        }
    }

    /// Nothing when either unit is missing. A rate between equal identifiers refers to the first two items with it.
    std::optional<std::pair<CVelmItem*, CVelmItem*>> Find(CVelmStringView a, CVelmStringView b) const {
        const CVelmString foldedA = FoldCase(a);
        const CVelmString foldedB = FoldCase(b);
        const auto first = units_.find(foldedA);
        const auto second = units_.find(foldedB);
        if (first == units_.end() || second == units_.end()) {
            return std::nullopt;
        }
        const std::size_t position2 = foldedA == foldedB ? 1 : 0;
        if (position2 == second->second.size()) {
            return std::nullopt;
        }
        return std::pair(first->second.front(), second->second[position2]);
    }

private:
    std::unordered_map<CVelmString, std::vector<CVelmItem*>> units_;  ///< by identifier, in the document's order
};

/// Index of the first conversion between two units in either direction.
class CVelmConversionFinder {
public:
    explicit CVelmConversionFinder(CVelmConversionDoc& document) : document_(document) {
        for (const auto& conversion : document.conversions) {
            conversions_.try_emplace(KeyOf(conversion->unit1, conversion->unit2), conversion.get());
        }
    }

    CVelmConversion& FindOrAdd(CVelmItem* a, CVelmItem* b) {
        CVelmConversion*& found = conversions_[KeyOf(a, b)];
        if (found == nullptr) {
            found = document_.AddConversion(std::make_unique<CVelmConversion>(document_));
        }
        return *found;
    }

private:
    using Key = std::pair<const CVelmItem*, const CVelmItem*>;

    static Key KeyOf(const CVelmItem* a, const CVelmItem* b) { return std::less<>()(a, b) ? Key(a, b) : Key(b, a); }

    CVelmConversionDoc& document_;
    std::map<Key, CVelmConversion*> conversions_;
};

bool HasUpdateMagic(CVelmFileStream& stream) {
    std::array<char, UPDATE_MAGIC.size()> magic;
    const std::int32_t count = stream.Read(magic.size(), magic.data());
    return count == static_cast<std::int32_t>(magic.size()) &&
           FromUtf8(std::string_view(magic.data(), magic.size())) == UPDATE_MAGIC;
}

/// Nothing when the file is not an update file or cannot be read to its end.
std::optional<Update> ReadUpdate(CVelmFileStream& stream, const CVelmDocument& document, FormulaContext& context) {
    if (!HasUpdateMagic(stream)) {
        return std::nullopt;
    }
    Update update;
    const CVelmUnitFinder units(document);
    CVelmString line;
    stream.ReadLine(line);  // the rest of the first line
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
        if (const auto pair = units.Find(rate->unit1, rate->unit2)) {
            update.rates.push_back({pair->first, pair->second, factor});
        }
    }
    return stream.Remaining() == 0 ? std::optional(std::move(update)) : std::nullopt;
}

void Apply(const Update& update, CVelmConversionDoc& document) {
    CVelmConversionFinder conversions(document);
    for (const Rate& rate : update.rates) {
        CVelmConversion& conversion = conversions.FindOrAdd(rate.unit1, rate.unit2);
        conversion.formulaFlag = 0;
        // Deliberate: a conversion stored in the opposite direction is reversed to that of the rate.
        conversion.unit1 = rate.unit1;
        conversion.unit2 = rate.unit2;
        conversion.factor = rate.factor;
        conversion.offset = 0.0;
        conversion.forwardFormula.clear();
        conversion.reverseFormula.clear();
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
