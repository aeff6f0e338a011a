#include <algorithm>
#include <unordered_set>
#include <utility>

#include "model/document.h"
#include "model/file_stream.h"

namespace velm {

void CVelmConversionDoc::RemoveItems(std::size_t first, std::size_t count) {
    first = std::min(first, items.size());
    count = std::min(count, items.size() - first);
    std::unordered_set<const CVelmItem*> removed;
    for (std::size_t i = first; i < first + count; ++i) {
        removed.insert(items[i].get());
    }
    std::erase_if(conversions, [&removed](const auto& conversion) {
        return removed.count(conversion->unit1) > 0 || removed.count(conversion->unit2) > 0;
    });
    CVelmDocument::RemoveItems(first, count);
}

std::int32_t CVelmConversionDoc::WriteTail(CVelmFileStream& stream) const {
    std::int32_t bytes = std::max(stream.WriteInt(static_cast<std::int32_t>(conversions.size())), 0);
    for (const auto& conversion : conversions) {
        bytes += conversion->Write(stream);
    }
    return bytes;
}

bool CVelmConversionDoc::ReadTail(CVelmFileStream& stream) {
    std::int32_t count = 0;
    if (!stream.ReadInt(count)) {
        return false;
    }
    if (count < 0) {
        return FailLoad(LoadStatus::NegativeCount);
    }
    for (std::int32_t i = 0; i < count; ++i) {
        if (stream.Remaining() == 0) {
            DropRecords(count - i);
            return true;
        }
        auto conversion = std::make_unique<CVelmConversion>(*this);
        if (conversion->Read(stream) <= 0) {
            DropRecords(1);
            continue;
        }
        conversions.push_back(std::move(conversion));
    }
    return true;
}

bool CVelmConversionDoc::ReadOldTail(CVelmFileStream& stream) {
    return ReadTail(stream);
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
    MarkModified();
    conversions.push_back(std::move(conversion));
    return conversions.back().get();
}

void CVelmConversionDoc::RemoveConversion(const CVelmConversion* conversion) {
    const auto removed =
        std::erase_if(conversions, [conversion](const auto& candidate) { return candidate.get() == conversion; });
    if (removed > 0) {
        MarkModified();
    }
}

std::int32_t CVelmCalculationDoc::WriteTail(CVelmFileStream&) const {
    return 0;
}

bool CVelmCalculationDoc::ReadTail(CVelmFileStream&) {
    return true;
}

}  // namespace velm
