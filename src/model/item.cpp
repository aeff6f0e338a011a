#include "model/item.h"

#include <algorithm>

#include "model/file_stream.h"

namespace velm {

namespace {

/// Set in the older format word when compound parts follow.
constexpr std::int32_t OLD_FORMAT_HAS_PARTS = 1;

void RemoveTrailingSpaces(CVelmString& text) {
    text.erase(text.find_last_not_of(u' ') + 1);
}

bool ReadCompoundParts(CVelmFileStream& stream, CVelmCompoundParts& parts) {
    return std::all_of(parts.begin(), parts.end(), [&stream](CVelmCompoundPart& part) {
        return stream.ReadString(part.label) > 0 && stream.ReadDouble(part.factor);
    });
}

/// The three format words, and the compound parts when the item allows them.
bool ReadValueFormat(CVelmFileStream& stream, CVelmValueFormat& format) {
    for (std::uint32_t* word : {&format.allowedFormats, &format.displayFormat, &format.inputFormat}) {
        std::int32_t code = 0;
        if (!stream.ReadInt(code)) {
            return false;
        }
        *word = static_cast<std::uint32_t>(code);
    }
    return (format.allowedFormats & FMT_COMPOUND) == 0 || ReadCompoundParts(stream, format.compoundParts);
}

void WriteValueFormat(CVelmFileStream& stream, const CVelmValueFormat& format) {
    for (const std::uint32_t word : {format.allowedFormats, format.displayFormat, format.inputFormat}) {
        stream.WriteInt(static_cast<std::int32_t>(word));
    }
    if ((format.allowedFormats & FMT_COMPOUND) != 0) {
        for (const CVelmCompoundPart& part : format.compoundParts) {
            stream.WriteString(part.label);
            stream.WriteDouble(part.factor);
        }
    }
}

}  // namespace

std::int32_t CVelmItem::Write(CVelmFileStream& stream) const {
    const std::uint64_t start = stream.Position();
    stream.WriteString(name);
    stream.WriteString(identifier);
    stream.WriteString(valueText);
    stream.WriteInt(shown);
    WriteValueFormat(stream, format);
    return stream.BytesSince(start);
}

std::int32_t CVelmItem::Read(CVelmFileStream& stream) {
    const std::uint64_t start = stream.Position();
    const bool whole = stream.ReadString(name) > 0 && stream.ReadString(identifier) > 0 &&
                       stream.ReadString(valueText) > 0 && stream.ReadInt(shown) && ReadValueFormat(stream, format);
    return whole ? stream.BytesSince(start) : 0;
}

std::int32_t CVelmItem::ReadOld(CVelmFileStream& stream) {
    const std::uint64_t start = stream.Position();
    std::int32_t formatWord = 0;
    if (stream.ReadString(identifier) <= 0 || stream.ReadString(name) <= 0 || stream.ReadString(valueText) <= 0 ||
        !stream.ReadInt(formatWord)) {
        return 0;
    }
    RemoveTrailingSpaces(identifier);
    RemoveTrailingSpaces(name);
    format.SetAllowedFormats(static_cast<std::uint32_t>(formatWord));
    if ((formatWord & OLD_FORMAT_HAS_PARTS) != 0 && !ReadCompoundParts(stream, format.compoundParts)) {
        return 0;
    }
    shown = 0;  // the list entries behind the items name those that are shown
    return stream.BytesSince(start);
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

CVelmString CVelmItem::ValueInList(const CVelmLocale& locale) const {
    if (state == STATE_NONE) {
        return {};
    }
    return state == STATE_VALID ? format.FormatValue(value, locale) : u"Error";
}

std::int32_t CVelmFormulaItem::Write(CVelmFileStream& stream) const {
    const std::uint64_t start = stream.Position();
    CVelmItem::Write(stream);
    stream.WriteInt(output);
    return stream.BytesSince(start);
}

std::int32_t CVelmFormulaItem::Read(CVelmFileStream& stream) {
    const std::uint64_t start = stream.Position();
    return CVelmItem::Read(stream) > 0 && stream.ReadInt(output) ? stream.BytesSince(start) : 0;
}

std::int32_t CVelmFormulaItem::ReadOld(CVelmFileStream& stream) {
    const std::uint64_t start = stream.Position();
    const bool whole = CVelmItem::ReadOld(stream) > 0 && stream.ReadInt(output) && stream.ReadString(identifier) > 0;
    return whole ? stream.BytesSince(start) : 0;
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
