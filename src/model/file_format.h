#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "model/document.h"
#include "model/file_stream.h"
#include "platform/calendar_time.h"
#include "platform/text.h"

namespace velm {

/// The first word of a data file. The older format is read, and never written.
constexpr std::uint32_t FILE_MAGIC = 0xC040A010;
constexpr std::uint32_t FILE_MAGIC_OLDER = 0xC0215192;

/// The header, everything before the items.
struct CVelmFileHeader {
    bool isOlder = false;
    CVelmString updatedText;  ///< with title and category; the older format has the title only
    CVelmString title;
    CVelmString category;
    std::int32_t itemCount = 0;
    std::optional<CVelmCalendarTime> time;  ///< the file's own, local; nothing when unknown
};

/// Reads how many records follow.
LoadStatus ReadCount(CVelmFileStream& stream, std::int32_t& count);

/// Reads up to the first item, in either format.
LoadStatus ReadHeader(CVelmFileStream& stream, CVelmFileHeader& header);

/// Reads what follows the header into a document without items. After a failure the items are not to be used.
LoadStatus ReadContent(CVelmFileStream& stream, const CVelmFileHeader& header, CVelmDocument& document);

/// A whole file in the current format. Sets the items' indices to their positions. Nothing when a text is too long to
/// be read again.
std::optional<std::string> DocumentBytes(const CVelmDocument& document);

}  // namespace velm
