// The walk along the consecutive segments of a profile, and the report of one index per segment.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "frame/event.hpp"
#include "ride/ride_stats.hpp"
#include "vialto/vialto.h"

namespace vialto {

enum class SegmentKind { of_samples, hole, beyond_array };

// A segment; if it is one of samples, the first and the last of them, from 0.
struct Segment {
    SegmentKind kind;
    std::int32_t first = 0;
    std::int32_t last = 0;
};

inline constexpr std::string_view segment_beyond_array =
    "End index of data points exceeds the input array size. Double-check segment points.";

// Gives the segments in turn, one for each element of iNumSegmentPoints.
//
// A segment has as many samples as its element says, its two boundary samples included, and starts
// on the sample on which the one before it ended. The last segment has every sample up to the last
// valid one; its element is not read. Two oddities are deliberate: a segment without samples moves
// the position back by one all the same (and a negative count by that count, too), and only the
// last segment ends at the last valid sample, while an earlier one may count the zeros behind it.
// A segment that starts before sample 0 is cut to the samples that exist.
class SegmentWalk {
public:
    // Given: the valid range of a filtered array in the index fields of `filter`; its length.
    SegmentWalk(std::span<const std::int32_t> iNumSegmentPoints, const tFiltCon& filter,
                std::size_t array_length);

    // Called once per element, as long as no segment ends beyond the array.
    [[nodiscard]] Segment next();

private:
    std::span<const std::int32_t> counts_; // of the segments still to come
    std::int64_t position_;                // 64-bit, as counts add up
    std::int64_t last_valid_;
    std::int64_t array_length_;
};

// The length of a segment of which `actual` samples counted [m].
[[nodiscard]] float segment_length(std::int32_t actual, float xStepSize);

// The segmented report of ride_stats: an index and a length for each segment of the filtered slope,
// -1.0 and 0.0 for a hole. Fails with segment_beyond_array, the results of the earlier segments
// being written.
[[nodiscard]] ReturnCode segmented_pi(const RideRequest& request, const tFiltCon& settings,
                                      std::span<const float> filtered, const RideTrack& track);

} // namespace vialto
