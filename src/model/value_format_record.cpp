#include "model/value_format_record.h"

#include <algorithm>
#include <utility>

namespace velm {
namespace {

constexpr std::int32_t INT_BYTES = 4;
constexpr std::int32_t DOUBLE_BYTES = 8;

bool ReadCode(CVelmFileStream& stream, std::uint32_t& code) {
    std::int32_t word = 0;
    if (!stream.ReadInt(word)) {
        return false;
    }
    code = static_cast<std::uint32_t>(word);
    return true;
}

std::int32_t WriteCode(CVelmFileStream& stream, std::uint32_t code) {
    return std::max(stream.WriteInt(static_cast<std::int32_t>(code)), 0);
}

}  // namespace

std::int32_t ReadCompoundParts(CVelmFileStream& stream, CVelmCompoundParts& parts) {
    std::int32_t bytes = 0;
    for (CVelmCompoundPart& part : parts) {
        const std::int32_t labelBytes = stream.ReadString(part.label);
        if (labelBytes <= 0 || !stream.ReadDouble(part.factor)) {
            return 0;
        }
        bytes += labelBytes + DOUBLE_BYTES;
    }
    return bytes;
}

std::int32_t ReadValueFormat(CVelmFileStream& stream, CVelmValueFormat& format) {
    std::uint32_t allowed = 0;
    std::uint32_t display = 0;
    std::uint32_t input = 0;
    if (!ReadCode(stream, allowed) || !ReadCode(stream, display) || !ReadCode(stream, input)) {
        return 0;
    }
    std::int32_t bytes = 3 * INT_BYTES;
    if ((allowed & FMT_COMPOUND) != 0) {
        CVelmCompoundParts parts;
        const std::int32_t partBytes = ReadCompoundParts(stream, parts);
        if (partBytes == 0) {
            return 0;
        }
        bytes += partBytes;
        format.compoundParts = std::move(parts);
    }
    format.allowedFormats = allowed;
    format.displayFormat = display;
    format.inputFormat = input;
    return bytes;
}

std::int32_t WriteValueFormat(CVelmFileStream& stream, const CVelmValueFormat& format) {
    std::int32_t bytes = WriteCode(stream, format.allowedFormats);
    bytes += WriteCode(stream, format.displayFormat);
    bytes += WriteCode(stream, format.inputFormat);
    if ((format.allowedFormats & FMT_COMPOUND) == 0) {
        return bytes;
    }
    for (const CVelmCompoundPart& part : format.compoundParts) {
        bytes += std::max(stream.WriteString(part.label), 0);
        bytes += std::max(stream.WriteDouble(part.factor), 0);
    }
    return bytes;
}

}  // namespace velm
