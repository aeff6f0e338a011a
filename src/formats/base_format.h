#pragma once

#include <cstdint>

#include "platform/text.h"

namespace velm {

/// A whole number of 32 bits in a number base, by the base's format code; negative ones as two's complement. Any other
/// value: "Dec: " and its decimal form when grouped, otherwise the empty text.
CVelmString FormatBase(double value, std::uint32_t code, bool grouped);

}  // namespace velm
