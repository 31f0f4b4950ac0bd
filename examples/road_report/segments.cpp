#include "segments.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "report.hpp"
#include "vialto/vialto.h"

namespace {

constexpr double segment_length = 100.0; // m
constexpr double shortest_rest = 10.0;   // m; a shorter one at the end joins the last segment

// The samples of each segment, both boundary samples included. That of the last one counts for
// nothing: it has what remains.
std::vector<std::int32_t> sample_counts(const Road& road) {
    const double interval = static_cast<double>(road.interval);
    const auto steps =
        static_cast<std::int32_t>(std::max(1L, std::lround(segment_length / interval)));
    const double segments = std::ceil((road.length() - shortest_rest) / (steps * interval));
    return std::vector<std::int32_t>(static_cast<std::size_t>(std::max(segments, 1.0)), steps + 1);
}

Segments room_for(const std::vector<std::int32_t>& counts) {
    return {std::vector<float>(counts.size()), std::vector<float>(counts.size())};
}

void scale(std::vector<float>& indices) {
    for (float& index : indices) {
        index *= 1000.0F; // m/m to m/km
    }
}

} // namespace

double Segments::start(std::size_t k) const {
    return std::accumulate(length.begin(), length.begin() + static_cast<std::ptrdiff_t>(k), 0.0);
}

double Segments::end(std::size_t k) const {
    return start(k + 1);
}

Segments roughness_segments(const Road& road, const Track& track) {
    const std::vector<std::int32_t> counts = sample_counts(road);
    Segments segments = room_for(counts);
    vialto::call(rideseg_dlldrv, if250mm_filter(road), idx_ridests_IRI, road.samples(),
                 track.elevation.data(), road.interval, static_cast<std::int32_t>(counts.size()),
                 counts.data(), segments.index.data(), segments.length.data());
    scale(segments.index);
    return segments;
}

Segments segments_of_both(const Road& road, std::int32_t selector) {
    const std::vector<std::int32_t> counts = sample_counts(road);
    Segments segments = room_for(counts);
    vialto::call(rideseg2chan_dlldrv, if250mm_filter(road), selector, road.samples(),
                 road.tracks[0].elevation.data(), road.tracks[1].elevation.data(), road.interval,
                 static_cast<std::int32_t>(counts.size()), counts.data(), segments.index.data(),
                 segments.length.data());
    if (selector != idx_ridests_2ChanRN) {
        scale(segments.index);
    }
    return segments;
}
