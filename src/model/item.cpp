#include "model/item.h"

#include "model/record_stream.h"
#include "model/value_format_record.h"

namespace velm {

namespace {

/// The bit of the older format word that says that compound parts follow.
constexpr std::int32_t OLD_FORMAT_HAS_PARTS = 1;

void RemoveTrailingSpaces(CVelmString& text) {
    text.erase(text.find_last_not_of(u' ') + 1);
}

}  // namespace

std::int32_t CVelmItem::Write(CVelmFileStream& stream) const {
    CVelmRecordWriter record(stream);
    record.String(name);
    record.String(identifier);
    record.String(valueText);
    record.Int(shown);
    record.Part(WriteValueFormat(stream, format));
    return record.Bytes();
}

std::int32_t CVelmItem::Read(CVelmFileStream& stream) {
    CVelmRecordReader record(stream);
    const bool whole = record.String(name) && record.String(identifier) && record.String(valueText) &&
                       record.Int(shown) && record.Part(ReadValueFormat(stream, format));
    return whole ? record.Bytes() : 0;
}

std::int32_t CVelmItem::ReadOld(CVelmFileStream& stream) {
    CVelmRecordReader record(stream);
    std::int32_t formatWord = 0;
    if (!record.String(identifier) || !record.String(name) || !record.String(valueText) || !record.Int(formatWord)) {
        return 0;
    }
    RemoveTrailingSpaces(identifier);
    RemoveTrailingSpaces(name);
    format.SetAllowedFormats(static_cast<std::uint32_t>(formatWord));
    if ((formatWord & OLD_FORMAT_HAS_PARTS) != 0 && !record.Part(ReadCompoundParts(stream, format.compoundParts))) {
        return 0;
    }
    shown = 0;  // the list entries behind the items name those that are shown
    return record.Bytes();
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
    CVelmRecordWriter record(stream);
    record.Part(CVelmItem::Write(stream));
    record.Int(output);
    return record.Bytes();
}

std::int32_t CVelmFormulaItem::Read(CVelmFileStream& stream) {
    CVelmRecordReader record(stream);
    return record.Part(CVelmItem::Read(stream)) && record.Int(output) ? record.Bytes() : 0;
}

std::int32_t CVelmFormulaItem::ReadOld(CVelmFileStream& stream) {
    CVelmRecordReader record(stream);
    const bool whole = record.Part(CVelmItem::ReadOld(stream)) && record.Int(output) && record.String(identifier);
    return whole ? record.Bytes() : 0;
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
