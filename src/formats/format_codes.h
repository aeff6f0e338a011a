#pragma once

#include <cstdint>

namespace velm {

/// Format codes: single bits, so that a set of allowed formats is their union.
constexpr std::uint32_t FMT_DECIMAL = 1;
constexpr std::uint32_t FMT_HEX = 2;
constexpr std::uint32_t FMT_OCTAL = 4;
constexpr std::uint32_t FMT_BINARY = 8;
constexpr std::uint32_t FMT_COMPOUND = 16;
constexpr std::uint32_t FMT_DATE = 32;
constexpr std::uint32_t FMT_DATETIME = 128;
constexpr std::uint32_t FMT_CURRENCY = 256;

}  // namespace velm
