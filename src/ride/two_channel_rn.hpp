// The Ride Number of two wheel tracks.
//
// Reference: ASTM E1489; M. W. Sayers and S. M. Karamihas, "Estimation of Rideability by Analyzing
// Longitudinal Road Profile", Transportation Research Record 1536, 1996.
#pragma once

#include <span>

#include "frame/event.hpp"
#include "ride/ride_stats.hpp"

namespace vialto {

// RN = highest_ride_number * exp(ride_number_rate * PTRN)
inline constexpr float highest_ride_number = 5.0F; // of a perfectly smooth road
inline constexpr float ride_number_rate = -160.0F; // per m/m of PTRN

// The Ride Number, PTRN being the root mean square of the filtered slopes of both tracks, in the
// form that request.i_reptype asks for.
//
// Given: the left track, which has the output of both, and the right profile, as long.
// Returned: one index, an index and a length [m] per segment, or an index per sample. A NaN in a
// profile is no failure here, unlike in ride_stats.
//
// Fails with the failures of the filters, and with segment_beyond_array, the results of the earlier
// segments being written, as PTRN still.
[[nodiscard]] ReturnCode twochan_rn(const RideRequest& request, const RideTrack& left,
                                    std::span<const float> right);

} // namespace vialto
