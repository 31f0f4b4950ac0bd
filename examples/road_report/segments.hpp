// The ride index of each 100 m of a road.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "road.hpp"

// Consecutive segments, which share their boundary samples.
struct Segments {
    std::vector<float> index;  // roughness in m/km, Ride Number from 0 to 5
    std::vector<float> length; // m

    // Distances from the start of the road, m.
    [[nodiscard]] double start(std::size_t k) const;
    [[nodiscard]] double end(std::size_t k) const;
};

[[nodiscard]] Segments roughness_segments(const Road& road, const Track& track);
[[nodiscard]] Segments segments_of_both(const Road& road, std::int32_t selector);
