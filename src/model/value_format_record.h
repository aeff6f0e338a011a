#pragma once

#include <cstdint>

#include "formats/value_format.h"
#include "model/file_stream.h"

namespace velm {

/// The format record inside an item's record of a data file: the three format words, and the compound parts when
/// the item allows them. Returns the bytes read, or 0 when any piece is short; `format` is then untouched.
std::int32_t ReadValueFormat(CVelmFileStream& stream, CVelmValueFormat& format);

/// The labels and factors alone. Returns the bytes read, or 0 when any piece is short.
std::int32_t ReadCompoundParts(CVelmFileStream& stream, CVelmCompoundParts& parts);

/// Returns the bytes written. A failed write is remembered by the stream.
std::int32_t WriteValueFormat(CVelmFileStream& stream, const CVelmValueFormat& format);

}  // namespace velm
