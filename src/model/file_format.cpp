#include "model/file_format.h"

#include <cstring>
#include <utility>
#include <vector>

namespace velm {

namespace {

constexpr std::size_t SIZE_POSITION = 4;

LoadStatus ReadOlderHeader(CVelmFileStream& stream, CVelmFileHeader& header) {
    header.isOlder = true;
    if (stream.ReadString(header.title) <= 0) {
        return LoadStatus::Truncated;
    }
    return ReadCount(stream, header.itemCount);
}

LoadStatus ReadCurrentHeader(CVelmFileStream& stream, CVelmFileHeader& header) {
    std::int32_t size = 0;
    if (!stream.ReadInt(size)) {
        return LoadStatus::Truncated;
    }
    if (static_cast<std::uint32_t>(size) != stream.GetSize()) {
        return LoadStatus::SizeMismatch;
    }
    if (stream.ReadString(header.updatedText) <= 0 || stream.ReadString(header.title) <= 0 ||
        stream.ReadString(header.category) <= 0) {
        return LoadStatus::Truncated;
    }
    return ReadCount(stream, header.itemCount);
}

/// Three words each; only the second counts: the index of an item that is shown.
LoadStatus ReadListEntries(CVelmFileStream& stream, const CVelmItems& items) {
    std::int32_t count = 0;
    if (const LoadStatus status = ReadCount(stream, count); status != LoadStatus::Ok) {
        return status;
    }
    for (std::int32_t i = 0; i < count; ++i) {
        std::int32_t ignored = 0;
        std::int32_t index = 0;
        if (!stream.ReadInt(ignored) || !stream.ReadInt(index) || !stream.ReadInt(ignored)) {
            return LoadStatus::Truncated;
        }
        if (index >= 0 && static_cast<std::size_t>(index) < items.size() && items[static_cast<std::size_t>(index)]) {
            items[static_cast<std::size_t>(index)]->shown = 1;
        }
    }
    return LoadStatus::Ok;
}

/// Null stands for an item whose record could not be read.
LoadStatus ReadItems(CVelmFileStream& stream, const CVelmFileHeader& header, CVelmItems& items) {
    for (std::int32_t i = 0; i < header.itemCount; ++i) {
        std::int32_t type = 0;
        if (!stream.ReadInt(type)) {
            return LoadStatus::Truncated;
        }
        std::unique_ptr<CVelmItem> item = CreateItem(type);
        if (item == nullptr) {
            return LoadStatus::UnknownItemType;
        }
        const std::int32_t bytes = header.isOlder ? item->ReadOld(stream) : item->Read(stream);
        items.push_back(bytes > 0 ? std::move(item) : nullptr);
    }
    return header.isOlder ? ReadListEntries(stream, items) : LoadStatus::Ok;
}

void NumberItems(const CVelmDocument& document) {
    std::int32_t position = 0;
    for (const auto& item : document.items) {
        item->index = position++;
    }
}

}  // namespace

LoadStatus ReadCount(CVelmFileStream& stream, std::int32_t& count) {
    if (!stream.ReadInt(count)) {
        return LoadStatus::Truncated;
    }
    return count < 0 ? LoadStatus::NegativeCount : LoadStatus::Ok;
}

LoadStatus ReadHeader(CVelmFileStream& stream, CVelmFileHeader& header) {
    std::int32_t magic = 0;
    if (!stream.ReadInt(magic)) {
        return LoadStatus::Truncated;
    }
    CVelmCalendarTime time;
    if (stream.GetTime(time)) {
        header.time = time;
    }
    switch (static_cast<std::uint32_t>(magic)) {
        case FILE_MAGIC:
            return ReadCurrentHeader(stream, header);
        case FILE_MAGIC_OLDER:
            return ReadOlderHeader(stream, header);
        default:
            return LoadStatus::UnknownFormat;
    }
}

LoadStatus ReadContent(CVelmFileStream& stream, const CVelmFileHeader& header, CVelmDocument& document) {
    LoadStatus status = ReadItems(stream, header, document.items);
    if (status == LoadStatus::Ok) {
        status = header.isOlder ? document.ReadOldTail(stream) : document.ReadTail(stream);
    }
    document.droppedRecords += static_cast<std::int64_t>(std::erase(document.items, nullptr));
    NumberItems(document);
    return status;
}

std::optional<std::string> DocumentBytes(const CVelmDocument& document) {
    NumberItems(document);
    CVelmFileStream stream;
    stream.WriteInt(static_cast<std::int32_t>(FILE_MAGIC));
    stream.WriteInt(0);  // the size, once it is known
    stream.WriteString(document.updatedText);
    stream.WriteString(document.title);
    stream.WriteString(document.category);
    stream.WriteInt(static_cast<std::int32_t>(document.ItemCount()));
    for (const auto& item : document.items) {
        stream.WriteInt(item->GetType());
        item->Write(stream);
    }
    document.WriteTail(stream);
    auto bytes = stream.TakeBytes();
    if (bytes) {
        const auto size = static_cast<std::uint32_t>(bytes->size());
        std::memcpy(bytes->data() + SIZE_POSITION, &size, sizeof size);
    }
    return bytes;
}

}  // namespace velm
