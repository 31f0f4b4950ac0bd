#include "numeric/frequency_table.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "numeric/vector_width.hpp"

namespace vialto {

namespace {

// Up to so many classes it is quicker to hold every value against every cut point.
constexpr std::size_t few_classes = 256;

// A value lies in a later class than k exactly where it is above the highest of the cut points up
// to k. One that is a NaN counts as infinite.
std::vector<float> highest_so_far(std::span<const float> cut_points) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    std::vector<float> highest;
    highest.reserve(cut_points.size());
    float limit = -std::numeric_limits<float>::infinity();
    for (const float cut_point : cut_points) {
        limit = std::max(limit, std::isnan(cut_point) ? infinity : cut_point);
        highest.push_back(limit);
    }
    return highest;
}

void tally_few(std::span<const float> values, std::span<const float> limits,
               std::span<std::int32_t> counts) {
    constexpr std::size_t block = 4096; // values, which stay in the cache from limit to limit
    for (std::size_t first = 0; first < values.size(); first += block) {
        const auto part = values.subspan(first, std::min(block, values.size() - first));
        auto in_this_or_later = static_cast<std::int32_t>(part.size());
        for (std::size_t k = 0; k < limits.size(); ++k) {
            const std::int32_t in_later = count_above(part, limits[k]);
            counts[k] += in_this_or_later - in_later;
            in_this_or_later = in_later;
        }
        counts.back() += in_this_or_later;
    }
}

void tally_many(std::span<const float> values, std::span<const float> limits,
                std::span<std::int32_t> counts) {
    for (const float value : values) {
        const auto limit = std::lower_bound(limits.begin(), limits.end(), value);
        ++counts[static_cast<std::size_t>(limit - limits.begin())];
    }
}

} // namespace

VIALTO_WIDE_VECTORS std::int32_t count_above(std::span<const float> values, float limit) {
    std::int32_t count = 0;
    for (const float value : values) {
        count += value > limit ? 1 : 0;
    }
    return count;
}

std::int32_t frequency_table(std::span<const float> values, std::span<const float> cut_points,
                             std::span<std::int32_t> counts) {
    std::fill(counts.begin(), counts.end(), 0);
    if (counts.empty()) {
        return tally_without_classes;
    }
    if (values.empty()) {
        return tally_without_values;
    }
    const std::vector<float> limits = highest_so_far(cut_points);
    const bool few = counts.size() <= few_classes;
    (few ? tally_few : tally_many)(values, limits, counts);
    return table_made;
}

} // namespace vialto
