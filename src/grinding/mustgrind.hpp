// The must-grind analysis: which stretches of a road must be ground for its continuous ride
// statistic to improve where it is out of specification.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "frame/event.hpp"
#include "grinding/spot_list.hpp"
#include "vialto/vialto.h"

namespace vialto {

// The selector that an analysis runs for the host's, which its record is rewritten to. Fails, with
// the export's name as routine, for one that is not allowed.
[[nodiscard]] ReturnCode admit_selector(std::int32_t iRideIndexType, std::int32_t& admitted);
[[nodiscard]] ReturnCode admit_selector_2chan(std::int32_t iRideIndexType, std::int32_t& admitted);

// What the steps of one run work on.
struct MustGrindRequest {
    float xStepSize; // m
    const tMustGrindCfg& cfg;
    const tGrinderSetup& setup;
    std::span<const float> xProfile; // m
};

// By how much a value of the statistic is better than another. A lower value is the better one, but
// for selector 3, whose scale runs the other way.
[[nodiscard]] inline float gain(const tMustGrindCfg& cfg, float before, float after) {
    const float d = after - before;
    return cfg.iRideIndexType == idx_ridests_TwoRN ? d : 0.0F - d;
}

// A spot whose grinding gains no more than the epsilon of float32 does not help.
inline constexpr float negligible_gain = 1.1920929e-7F;

// Given: the interval [m], an admitted selector, the machine, the profile.
// Returned: one flag per sample, those of the grinder over the whole road as far as the steps that
// the settings ask for leave them.
//
// Fails where a step fails, with the flags in the state that the run had reached.
[[nodiscard]] ReturnCode mustgrind(const MustGrindRequest& request,
                                   std::span<std::int32_t> iGrindFlags);

// The same for two tracks: 1 where both flags are 1, else the greater one. A threshold on the Ride
// Number's scale (selector 3) is converted to that of its statistic. Fails with the flags
// untouched.
[[nodiscard]] ReturnCode mustgrind_2chan(float xStepSize, const tMustGrindCfg& cfg,
                                         const tGrinderSetup& setup,
                                         std::span<const float> xProfile1,
                                         std::span<const float> xProfile2,
                                         std::span<std::int32_t> iGrindFlags);

// Where the continuous ride statistic is out of specification, by the xRideThreshold of the
// request.
//
// Returned: the statistic of each sample in xRideBefore, as long as the profile, and the stretches
// in tOutOfSpec, in order, as gather_stretches lists them. Half a base length at either end is not
// looked at, nor 250 mm more at the end with if250mmFilter 1.
//
// Fails with the failures of ridecon_drv, and for more than vialto_i_maxspots stretches.
[[nodiscard]] ReturnCode out_of_spec_spots(const MustGrindRequest& request,
                                           std::span<float> xRideBefore,
                                           std::vector<Spot>& tOutOfSpec);

} // namespace vialto
