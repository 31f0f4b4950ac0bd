// One-way frequency table: how many values fall into each of the classes that cut points make.
#pragma once

#include <cstdint>
#include <span>

namespace vialto {

// Codes of a tally.
inline constexpr std::int32_t table_made = 0;
inline constexpr std::int32_t tally_without_classes = 1;
inline constexpr std::int32_t tally_without_values = 2;

// Given n values and K - 1 cut points, returns a code and the count of each of the K classes.
//
// The class of a value is the first one whose upper cut point is not below the value, and the last
// one where there is none: the first and the last class are open-ended, a value on a cut point
// belongs to the class below it, a NaN belongs to the first class, and a cut point that is a NaN is
// below nothing. Each value thus falls into exactly one class, in whatever order the cut points
// stand; a cut point that is not above all those before it leaves its class empty. With a code
// other than table_made every count is 0.
[[nodiscard]] std::int32_t frequency_table(std::span<const float> values,
                                           std::span<const float> cut_points,
                                           std::span<std::int32_t> counts);

// How many of the values lie above the limit.
[[nodiscard]] std::int32_t count_above(std::span<const float> values, float limit);

} // namespace vialto
