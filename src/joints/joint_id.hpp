// Joint identification: where the slabs of a concrete pavement meet, and where they have cracked.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// One wheel track with its output arrays, which are as long as the profile.
struct JointTrack {
    std::span<const float> xProfile; // m
    std::span<std::int32_t> iTypes;  // out: idx_jnttyp_..., none past the last feature
    std::span<double> xLocations;    // m from the start of the profile; out, ascending
};

// Given: the settings, the interval of both profiles [m], and the two tracks.
// Returned: the features of each track.
//
// The method runs over both tracks with a strict threshold, and again with a lower one, up to 20
// times, until the right track has more than 0.9 of the features that the nominal spacing promises.
// The left track has no say in that, deliberately.
//
// Fails with "idx_jntid_valleydetect is not implemented" (method 2), "i_jntid_method is not
// defined", and the failures of the methods, in whatever pass. The outputs then keep what the
// failed pass wrote.
[[nodiscard]] ReturnCode joint_id(const tJointIDCfg& settings, float xStepSize,
                                  const JointTrack& left, const JointTrack& right);

} // namespace vialto
