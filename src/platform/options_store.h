#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/text.h"

namespace velm {

/// Persistent storage of the options record: one named block of bytes.
class CVelmOptionsStore {
public:
    virtual ~CVelmOptionsStore() = default;

    /// The stored bytes; nothing when there are none, when they are of another type, or more than `limit`.
    virtual std::optional<std::vector<std::byte>> Read(std::size_t limit) = 0;

    /// Atomically replaces the stored bytes. Returns the system's status, 0 on success.
    virtual std::int32_t Write(const void* bytes, std::size_t count) = 0;
};

/// The location of the current user's options: a registry key below HKEY_CURRENT_USER on Windows, the path of a file
/// elsewhere. Empty when the system has none.
CVelmString DefaultOptionsLocation();

/// A store at such a location. Nothing is opened or created before the first call.
std::unique_ptr<CVelmOptionsStore> OpenOptionsStore(const CVelmString& location);

}  // namespace velm
