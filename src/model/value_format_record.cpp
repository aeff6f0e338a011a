#include "model/value_format_record.h"

#include <utility>

namespace velm {

std::int32_t ReadCompoundParts(CVelmFileStream& stream, CVelmCompoundParts& parts) {
    const std::uint64_t start = stream.Position();
    for (CVelmCompoundPart& part : parts) {
        if (stream.ReadString(part.label) <= 0 || !stream.ReadDouble(part.factor)) {
            return 0;
        }
    }
    return stream.BytesSince(start);
}

std::int32_t ReadValueFormat(CVelmFileStream& stream, CVelmValueFormat& format) {
    std::int32_t allowed = 0;
    std::int32_t display = 0;
    std::int32_t input = 0;
    const std::uint64_t start = stream.Position();
    if (!stream.ReadInt(allowed) || !stream.ReadInt(display) || !stream.ReadInt(input)) {
        return 0;
    }
    const auto allowedFormats = static_cast<std::uint32_t>(allowed);
    if ((allowedFormats & FMT_COMPOUND) != 0) {
        CVelmCompoundParts parts;
        if (ReadCompoundParts(stream, parts) <= 0) {
            return 0;
        }
        format.compoundParts = std::move(parts);
    }
    format.allowedFormats = allowedFormats;
    format.displayFormat = static_cast<std::uint32_t>(display);
    format.inputFormat = static_cast<std::uint32_t>(input);
    return stream.BytesSince(start);
}

std::int32_t WriteValueFormat(CVelmFileStream& stream, const CVelmValueFormat& format) {
    const std::uint64_t start = stream.Position();
    for (const std::uint32_t word : {format.allowedFormats, format.displayFormat, format.inputFormat}) {
        stream.WriteInt(static_cast<std::int32_t>(word));
    }
    if ((format.allowedFormats & FMT_COMPOUND) != 0) {
        for (const CVelmCompoundPart& part : format.compoundParts) {
            stream.WriteString(part.label);
            stream.WriteDouble(part.factor);
        }
    }
    return stream.BytesSince(start);
}

}  // namespace velm
