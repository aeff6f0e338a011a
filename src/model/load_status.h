#pragma once

namespace velm {

/// How a load ended.
enum class LoadStatus {
    Ok,
    CannotOpen,     ///< missing, or the system refuses
    UnknownFormat,  ///< the first word is neither format's
    SizeMismatch,   ///< the size word differs from the file's length
    Truncated,      ///< a short read, or a text longer than its bound, in the header or between records
    NegativeCount,
    UnknownItemType,
};

}  // namespace velm
