#include "model/item.h"

#include <algorithm>

#include "model/file_stream.h"
#include "model/value_format_record.h"

namespace velm {

namespace {

constexpr std::int32_t INT_BYTES = 4;

/// The bit of the older format word that says that compound parts follow.
constexpr std::int32_t OLD_FORMAT_HAS_PARTS = 1;

/// Adds the bytes of one read piece; false for a piece that failed.
bool Count(std::int32_t& bytes, std::int32_t piece) {
    bytes += std::max(piece, 0);
    return piece > 0;
}

bool CountInt(CVelmFileStream& stream, std::int32_t& bytes, std::int32_t& value) {
    return Count(bytes, stream.ReadInt(value) ? INT_BYTES : 0);
}

void RemoveTrailingSpaces(CVelmString& text) {
    text.erase(text.find_last_not_of(u' ') + 1);
}

}  // namespace

std::int32_t CVelmItem::Write(CVelmFileStream& stream) const {
    std::int32_t bytes = stream.WriteString(name);
    bytes += stream.WriteString(identifier);
    bytes += stream.WriteString(valueText);
    bytes += std::max(stream.WriteInt(shown), 0);
    return bytes + WriteValueFormat(stream, format);
}

std::int32_t CVelmItem::Read(CVelmFileStream& stream) {
    std::int32_t bytes = 0;
    const bool whole = Count(bytes, stream.ReadString(name)) && Count(bytes, stream.ReadString(identifier)) &&
                       Count(bytes, stream.ReadString(valueText)) && CountInt(stream, bytes, shown) &&
                       Count(bytes, ReadValueFormat(stream, format));
    return whole ? bytes : 0;
}

std::int32_t CVelmItem::ReadOld(CVelmFileStream& stream) {
    std::int32_t bytes = 0;
    std::int32_t formatWord = 0;
    if (!Count(bytes, stream.ReadString(identifier)) || !Count(bytes, stream.ReadString(name)) ||
        !Count(bytes, stream.ReadString(valueText)) || !CountInt(stream, bytes, formatWord)) {
        return 0;
    }
    RemoveTrailingSpaces(identifier);
    RemoveTrailingSpaces(name);
    format.SetAllowedFormats(static_cast<std::uint32_t>(formatWord));
    if ((formatWord & OLD_FORMAT_HAS_PARTS) != 0 && !Count(bytes, ReadCompoundParts(stream, format.compoundParts))) {
        return 0;
    }
    shown = 0;  // the list entries behind the items name those that are shown
    return bytes;
}

void CVelmItem::CopyFrom(const CVelmItem& other) {
    name = other.name;
    format = other.format;
    identifier = other.identifier;
    valueText = other.valueText;
    value = other.value;
    state = other.state;
}

const CVelmString& CVelmItem::ShortName() const {
    return identifier.empty() ? name : identifier;
}

std::int32_t CVelmFormulaItem::Write(CVelmFileStream& stream) const {
    const std::int32_t bytes = CVelmItem::Write(stream);
    return bytes + std::max(stream.WriteInt(output), 0);
}

std::int32_t CVelmFormulaItem::Read(CVelmFileStream& stream) {
    std::int32_t bytes = 0;
    const bool whole = Count(bytes, CVelmItem::Read(stream)) && CountInt(stream, bytes, output);
    return whole ? bytes : 0;
}

std::int32_t CVelmFormulaItem::ReadOld(CVelmFileStream& stream) {
    std::int32_t bytes = 0;
    const bool whole = Count(bytes, CVelmItem::ReadOld(stream)) && CountInt(stream, bytes, output) &&
                       Count(bytes, stream.ReadString(identifier));
    return whole ? bytes : 0;
}

void CVelmFormulaItem::CopyFrom(const CVelmItem& other) {
    CVelmItem::CopyFrom(other);
    if (other.GetType() == ITEM_FORMULA) {
        output = static_cast<const CVelmFormulaItem&>(other).output;
    }
}

std::unique_ptr<CVelmItem> CreateItem(std::int32_t type) {
    switch (type) {
        case ITEM_VALUE:
            return std::make_unique<CVelmValueItem>();
        case ITEM_FORMULA:
            return std::make_unique<CVelmFormulaItem>();
        default:
            return nullptr;
    }
}

}  // namespace velm
