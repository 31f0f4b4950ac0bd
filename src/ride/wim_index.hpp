// The WIM error index: how strongly the roughness around a position would disturb a weigh-in-motion
// scale placed there.
#pragma once

#include <span>

#include "frame/event.hpp"
#include "ride/ride_stats.hpp"

namespace vialto {

// Works on the request and the track of ride_stats, whose if250mmFilter is the bridging switch here
// (1 runs the bridge filter first, any other value does not) and whose base length has no effect.
//
// Returned: the index per sample in the track's xOutput, in the profile's unit per metre, 0.0
// behind the last sample that the bridge filter gives.
//
// Fails for a profile of more than 50000 samples, before any filter runs; with the failures of the
// filters; and, after they have run, for any report but the continuous one.
[[nodiscard]] ReturnCode compute_wimindex(const RideRequest& request, const RideTrack& track);

} // namespace vialto
