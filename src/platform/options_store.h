#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/text.h"

namespace velm {

/// Where the options record is kept between runs: one named block of bytes.
class CVelmOptionsStore {
public:
    virtual ~CVelmOptionsStore() = default;

    /// The stored bytes, whatever their number; nothing when none are stored, when they are not stored as bytes,
    /// and when there are more than `limit`.
    virtual std::optional<std::vector<std::byte>> Read(std::size_t limit) = 0;

    /// Replaces the stored bytes in one step. Returns the system's status, 0 on success.
    virtual std::int32_t Write(const void* bytes, std::size_t count) = 0;
};

/// Where this system keeps the options of the current user: a registry key below HKEY_CURRENT_USER on Windows,
/// the path of a file elsewhere. Empty when the system names no such place.
CVelmString DefaultOptionsLocation();

/// A store at a location of that kind. Nothing is opened or created before the first call.
std::unique_ptr<CVelmOptionsStore> OpenOptionsStore(const CVelmString& location);

}  // namespace velm
