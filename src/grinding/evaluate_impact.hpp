// The last and most expensive step of the must-grind analysis: each candidate spot is ground alone
// on the untouched profile, and stays where that improves the ride statistic out of specification.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "frame/event.hpp"
#include "grinding/mustgrind.hpp"
#include "grinding/spot_list.hpp"

namespace vialto {

// Given: the statistic of the untouched profile and its stretches out of specification, in order;
// the flags and the candidates.
// Returned: the active spots that do not help are dropped, and their flags 1. A spot helps where
// the statistic of a sample in a stretch gains more than the epsilon of float32; a stretch counts
// that starts at most 50 feet before the spot, or anywhere behind its start. That spot is,
// deliberately, the one at the candidate's place among the active ones, looked up in the whole
// list.
//
// Fails with the failures of ridecon_drv on a ground profile.
[[nodiscard]] ReturnCode evaluate_impact(const MustGrindRequest& request,
                                         std::span<const float> xRideBefore,
                                         const std::vector<Spot>& tOutOfSpec,
                                         std::span<std::int32_t> iGrindFlags, SpotList& spots);

} // namespace vialto
