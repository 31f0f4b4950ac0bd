// Conversion of real numbers to whole ones. Every float that becomes an int32 in this library goes
// through here: what lies outside the range of int32 saturates, and a NaN becomes 0.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace vialto {

// Truncation towards zero.
[[nodiscard]] inline std::int32_t truncate(double value) noexcept {
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    if (value >= static_cast<double>(highest)) {
        return highest;
    }
    if (value <= static_cast<double>(lowest)) {
        return lowest;
    }
    return std::isnan(value) ? 0 : static_cast<std::int32_t>(value);
}

[[nodiscard]] inline std::int32_t truncate(float value) noexcept {
    return truncate(static_cast<double>(value));
}

// Rounding to the nearest whole number, a half away from zero. Not by std::round, which in some
// run-time libraries adds a half and so takes the float before 0.5 to 1.
[[nodiscard]] inline std::int32_t nint(double value) noexcept {
    const double whole = std::trunc(value);
    const bool nearest = std::fabs(value - whole) < 0.5;
    return truncate(nearest ? whole : whole + std::copysign(1.0, value));
}

[[nodiscard]] inline std::int32_t nint(float value) noexcept {
    return nint(static_cast<double>(value));
}

} // namespace vialto
