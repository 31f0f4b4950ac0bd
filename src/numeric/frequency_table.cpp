#include "numeric/frequency_table.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace vialto {

namespace {

// In ascending order. A NaN stands at the upper end, as infinity: neither lies below any value.
std::vector<float> sorted(std::span<const float> cut_points) {
    std::vector<float> ascending(cut_points.begin(), cut_points.end());
    for (float& cut_point : ascending) {
        if (std::isnan(cut_point)) {
            cut_point = std::numeric_limits<float>::infinity();
        }
    }
    std::sort(ascending.begin(), ascending.end());
    return ascending;
}

// How many of the ascending cut points lie below the value. Written so that a comparison moves a
// pointer instead of deciding a branch, which values in no order would mislead at every step.
std::size_t count_below(std::span<const float> ascending, float value) {
    const float* first = ascending.data();
    std::size_t length = ascending.size();
    while (length > 1) {
        const std::size_t half = length / 2;
        first += first[half - 1] < value ? half : 0;
        length -= half;
    }
    const bool counts_last = length == 1 && *first < value;
    return static_cast<std::size_t>(first - ascending.data()) + (counts_last ? 1 : 0);
}

} // namespace

std::int32_t frequency_table(std::span<const float> values, std::span<const float> cut_points,
                             std::span<std::int32_t> counts) {
    std::fill(counts.begin(), counts.end(), 0);
    if (counts.empty()) {
        return tally_without_classes;
    }
    if (values.empty()) {
        return tally_without_values;
    }
    const std::vector<float> ascending = sorted(cut_points);
    for (const float value : values) {
        ++counts[count_below(ascending, value)];
    }
    return table_made;
}

} // namespace vialto
