#pragma once

#include <cstdint>

namespace velm {

/// The generator behind "rand": the same 0 to 32767 on every system, unlike the C library's own.
class CVelmRandom {
public:
    explicit CVelmRandom(std::uint32_t seed) : state_(seed) {}

    /// The next whole number from 0 to 32767 inclusive.
    std::int32_t Next() {
        state_ = state_ * 214013U + 2531011U;
        return static_cast<std::int32_t>((state_ >> 16) & 0x7FFFU);
    }

private:
    std::uint32_t state_;
};

}  // namespace velm
