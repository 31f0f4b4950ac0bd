// The dispatcher through which every ride analysis goes: whole profile, segments, and the
// continuous statistic.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// Report types, fixed by each driver.
inline constexpr std::int32_t normal_report = 1;     // one index
inline constexpr std::int32_t segmented_report = 2;  // an index and a length per segment
inline constexpr std::int32_t continuous_report = 3; // one value per sample

// An index output where no sample existed or remained. It is a value, not a failure.
inline constexpr float hole_value = -1.0F;

// What the routines behind ride_stats are asked for.
struct RideRequest {
    std::int32_t ifExcludeLeaveout = vialto_no; // 1 leaves out the samples whose flag is not 0
    std::int32_t if250mmFilter = 0; // 1 yes, 2 no; the WIM analysis has its bridging switch here
    std::int32_t i_reptype = 0;
    std::int32_t i_rideindexsel = idx_ridests_None;
    std::span<const std::int32_t> iExclusionFlags = {};   // read only if ifExcludeLeaveout is 1
    float xStepSize = 0.0F;                               // m
    float xBaseLength = 0.0F;                             // m; of the continuous statistic
    std::span<const std::int32_t> iNumSegmentPoints = {}; // points per segment
};

// A profile, and where its results go.
struct RideTrack {
    std::span<const float> xDataArray;
    std::span<float> xOutput;         // the one index, or one per segment or per sample
    std::span<float> xSegLength = {}; // m; length per segment
};

// The settings of the quarter car behind the indices idx_ridests_IRI and idx_ridests_RN, and in
// xPowerWeighting, which the filter does not read, the exponent of their statistic.
[[nodiscard]] tFiltCon quarter_car_settings(std::int32_t i_rideindexsel,
                                            std::int32_t if250mmFilter);

// The one way to an index, for idx_ridests_IRI, idx_ridests_RN and, in the continuous report only,
// idx_ridests_WIM.
//
// Fails with "two RN is no longer supported" and "i_rideindexsel is not within range", with nothing
// written; with the failures of the quarter car and "the calculated IRI is not a number", the
// filter's statistic then standing in the place of the one index; and with those of the report and
// of compute_wimindex.
//
// Two tracks, of equally long profiles, have what one call after the other gives them; the second
// one has nothing if the first one fails. There is no WIM error index of two.
[[nodiscard]] ReturnCode ride_stats(const RideRequest& request, std::span<const RideTrack> tracks);

} // namespace vialto
