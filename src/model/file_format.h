#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "model/document.h"
#include "model/file_stream.h"
#include "platform/calendar_time.h"
#include "platform/text.h"

namespace velm {

/// The first word of a data file. The older format is read, and never written.
constexpr std::uint32_t FILE_MAGIC = 0xC040A010;
constexpr std::uint32_t FILE_MAGIC_OLDER = 0xC0215192;

/// What stands before the items.
struct CVelmFileHeader {
    bool isOlder = false;
    CVelmString updatedText;  ///< with title and category; the older format has the title only
    CVelmString title;
    CVelmString category;
    std::int32_t itemCount = 0;
    std::optional<CVelmCalendarTime> time;  ///< the file's own, local; nothing when the system does not tell
};

/// The items in file order; null stands for one whose record could not be read.
using CVelmFileItems = std::vector<std::unique_ptr<CVelmItem>>;

/// Reads how many records follow.
LoadStatus ReadCount(CVelmFileStream& stream, std::int32_t& count);

/// Reads up to the first item, in either format.
LoadStatus ReadHeader(CVelmFileStream& stream, CVelmFileHeader& header);

/// Reads the items behind the header and, in the older format, the list entries that say which are shown.
LoadStatus ReadItems(CVelmFileStream& stream, const CVelmFileHeader& header, CVelmFileItems& items);

/// Writes a whole file in the current format to a stream just opened. The items' indices must be their positions.
/// False when any write failed.
bool WriteDocument(CVelmFileStream& stream, const CVelmDocument& document);

}  // namespace velm
