#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/options_store.h"

namespace velm::test {

/// Stores the bytes in memory.
class MemoryOptions : public CVelmOptionsStore {
public:
    std::optional<std::vector<std::byte>> Read(std::size_t limit) override {
        return stored && stored->size() <= limit ? stored : std::nullopt;
    }
    std::int32_t Write(const void* bytes, std::size_t count) override {
        const auto* first = static_cast<const std::byte*>(bytes);
        stored.emplace(first, first + count);
        return status;
    }

    std::optional<std::vector<std::byte>> stored;
    std::int32_t status = 0;  ///< what Write returns
};

}  // namespace velm::test
