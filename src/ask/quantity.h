#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/text.h"

namespace velm {

/// What every other kind of quantity is put together from. Money, angle and information count as well, so that prices,
/// rotations and data rates can be computed with.
enum BaseDimension : std::size_t {
    BASE_LENGTH,
    BASE_MASS,
    BASE_TIME,
    BASE_TEMPERATURE,
    BASE_CURRENT,
    BASE_AMOUNT,
    BASE_LUMINOUS_INTENSITY,
    BASE_MONEY,
    BASE_ANGLE,
    BASE_INFORMATION,
    BASE_COUNT
};

/// A product of powers of the base dimensions.
struct CVelmDimension {
    /// Twice the exponents: the root of a length is a length to the power of one half.
    std::array<std::int8_t, BASE_COUNT> halves{};

    bool operator==(const CVelmDimension&) const = default;
    bool IsNone() const { return *this == CVelmDimension(); }

    /// Nothing when an exponent gets too large.
    std::optional<CVelmDimension> Times(const CVelmDimension& other) const;
    std::optional<CVelmDimension> Over(const CVelmDimension& other) const;

    /// Nothing also when an exponent of the result is no multiple of one half.
    std::optional<CVelmDimension> Power(double exponent) const;

    /// The same without its angles, which count as plain numbers where nothing else fits.
    CVelmDimension WithoutAngle() const;
};

/// Reads "length^2*mass/time^3"; "1" is none. Nothing for any other text.
std::optional<CVelmDimension> ParseDimension(CVelmStringView text);

/// The same in words: "mass*length/time^2", "number" for none.
CVelmString DimensionText(const CVelmDimension& dimension);

/// A number of coherent units of a dimension.
struct CVelmQuantity {
    double value = 0.0;
    CVelmDimension dimension;
};

}  // namespace velm
