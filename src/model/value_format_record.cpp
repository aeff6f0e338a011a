#include "model/value_format_record.h"

#include <utility>

#include "model/record_stream.h"

namespace velm {

std::int32_t ReadCompoundParts(CVelmFileStream& stream, CVelmCompoundParts& parts) {
    CVelmRecordReader record(stream);
    for (CVelmCompoundPart& part : parts) {
        if (!record.String(part.label) || !record.Double(part.factor)) {
            return 0;
        }
    }
    return record.Bytes();
}

std::int32_t ReadValueFormat(CVelmFileStream& stream, CVelmValueFormat& format) {
    std::int32_t allowed = 0;
    std::int32_t display = 0;
    std::int32_t input = 0;
    CVelmRecordReader record(stream);
    if (!record.Int(allowed) || !record.Int(display) || !record.Int(input)) {
        return 0;
    }
    const auto allowedFormats = static_cast<std::uint32_t>(allowed);
    if ((allowedFormats & FMT_COMPOUND) != 0) {
        CVelmCompoundParts parts;
        if (!record.Part(ReadCompoundParts(stream, parts))) {
            return 0;
        }
        format.compoundParts = std::move(parts);
    }
    format.allowedFormats = allowedFormats;
    format.displayFormat = static_cast<std::uint32_t>(display);
    format.inputFormat = static_cast<std::uint32_t>(input);
    return record.Bytes();
}

std::int32_t WriteValueFormat(CVelmFileStream& stream, const CVelmValueFormat& format) {
    CVelmRecordWriter record(stream);
    for (const std::uint32_t word : {format.allowedFormats, format.displayFormat, format.inputFormat}) {
        record.Int(static_cast<std::int32_t>(word));
    }
    if ((format.allowedFormats & FMT_COMPOUND) != 0) {
        for (const CVelmCompoundPart& part : format.compoundParts) {
            record.String(part.label);
            record.Double(part.factor);
        }
    }
    return record.Bytes();
}

}  // namespace velm
