// Joints and cracks among the detected features.
#pragma once

#include <cstdint>
#include <span>

#include "joints/joint_id.hpp"

namespace vialto {

// Given: whether cracks stay, the settings, and the first `count` types and locations [m],
// ascending.
// Returned: their types, and the count of those that stay.
//
// The first feature is a joint. A later one is a joint if it lies further than 0.95 nominal
// spacings behind the last joint, otherwise a crack, which stays or is dropped. The distance counts
// from the joint, not from a crack between. A count below 2 becomes 1: where nothing was detected
// the first location, as it stands, becomes a joint, deliberately. Empty arrays stay as they are.
void joint_loc_screen(bool ifKeepCracks, const tJointIDCfg& settings, std::int32_t& count,
                      std::span<std::int32_t> types, std::span<double> locations);

} // namespace vialto
