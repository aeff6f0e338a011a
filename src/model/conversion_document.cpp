#include "model/conversion_document.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "model/conversion_engine.h"
#include "model/file_format.h"

namespace velm {

void CVelmConversionDoc::RemoveItems(std::size_t first, std::size_t count) {
    first = std::min(first, items.size());
    count = std::min(count, items.size() - first);
    std::unordered_set<const CVelmItem*> removed;
    for (std::size_t i = first; i < first + count; ++i) {
        removed.insert(items[i].get());
    }
    std::erase_if(conversions, [&removed](const auto& conversion) {
        return removed.contains(conversion->unit1) || removed.contains(conversion->unit2);
    });
    CVelmDocument::RemoveItems(first, count);
}

void CVelmConversionDoc::Recalculate(FormulaContext& context) {
    SolveConversions(items, conversions, currentItem, {}, context);
}

std::int32_t CVelmConversionDoc::WriteTail(CVelmFileStream& stream) const {
    const std::uint64_t start = stream.Position();
    stream.WriteInt(static_cast<std::int32_t>(conversions.size()));
    for (const auto& conversion : conversions) {
        conversion->Write(stream);
    }
    return stream.BytesSince(start);
}

LoadStatus CVelmConversionDoc::ReadTail(CVelmFileStream& stream) {
    std::int32_t count = 0;
    if (const LoadStatus status = ReadCount(stream, count); status != LoadStatus::Ok) {
        return status;
    }
    for (std::int32_t i = 0; i < count; ++i) {
        if (stream.Remaining() == 0) {
            droppedRecords += count - i;
            break;
        }
        auto conversion = std::make_unique<CVelmConversion>(*this);
        if (conversion->Read(stream) > 0) {
            conversions.push_back(std::move(conversion));
        } else {
            ++droppedRecords;
        }
    }
    return LoadStatus::Ok;
}

CVelmConversion* CVelmConversionDoc::FindConversion(const CVelmItem* a, const CVelmItem* b) const {
    for (const auto& conversion : conversions) {
        const bool forward = conversion->unit1 == a && conversion->unit2 == b;
        const bool reverse = conversion->unit1 == b && conversion->unit2 == a;
        if (forward || reverse) {
            return conversion.get();
        }
    }
    return nullptr;
}

std::int32_t CVelmConversionDoc::CountConversions(const CVelmItem* item) const {
    return static_cast<std::int32_t>(std::count_if(
        conversions.begin(), conversions.end(),
        [item](const auto& conversion) { return conversion->unit1 == item || conversion->unit2 == item; }));
}

CVelmConversion* CVelmConversionDoc::AddConversion(std::unique_ptr<CVelmConversion> conversion) {
    modified = true;
    conversions.push_back(std::move(conversion));
    return conversions.back().get();
}

void CVelmConversionDoc::RemoveConversion(const CVelmConversion* conversion) {
    const auto removed =
        std::erase_if(conversions, [conversion](const auto& candidate) { return candidate.get() == conversion; });
    modified = modified || removed > 0;
}

}  // namespace velm
