#pragma once

#include <cstdint>
#include <limits>

namespace velm {

/// Truncates toward zero and saturates at the ends of the 32-bit range; a NaN becomes 0.
constexpr std::int32_t ToInt32(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (value != value) {
        return 0;
    }
    if (value >= static_cast<double>(Limits::max())) {
        return Limits::max();
    }
    if (value <= static_cast<double>(Limits::min())) {
        return Limits::min();
    }
    return static_cast<std::int32_t>(value);
}

/// Saturates at the ends of the 16-bit range.
constexpr std::int16_t ToInt16(std::int64_t value) {
    using Limits = std::numeric_limits<std::int16_t>;
    if (value > Limits::max()) {
        return Limits::max();
    }
    if (value < Limits::min()) {
        return Limits::min();
    }
    return static_cast<std::int16_t>(value);
}

}  // namespace velm
