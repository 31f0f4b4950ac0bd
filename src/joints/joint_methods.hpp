// The methods by which joint identification detects features in one track.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/event.hpp"
#include "joints/joint_id.hpp"

namespace vialto {

// One track through the passes of an analysis.
struct TrackDetection {
    JointTrack track;
    // What a method searches, one value a sample: it depends on profile and interval alone, so that
    // the first pass leaves it for the others. Empty before that.
    std::vector<float> trace = {};
    std::int32_t count = 0; // features of the latest pass, joints and cracks together
};

// What the methods share in one pass.
struct DetectionPass {
    const tJointIDCfg& settings;
    float xStepSize;      // m
    float ThresholdMulti; // factor on the method's threshold
};

// Each method, given a pass and a track, overwrites the head of the type and location arrays and
// sets the count. Past the last feature a rejected detection leaves a type of 0 and a location of
// -1.0. One that took the place of the feature before it leaves a type of 1 and its location there,
// deliberately, and features of earlier passes stay. A host sees those types where a later method
// fails. The classes are those of joint_loc_screen.

// Step detection: two neighbouring samples further apart than 2.032 mm. Without any, the first
// location, as it stands, becomes a joint. Always succeeds.
[[nodiscard]] ReturnCode joint_id_stepdetect(const DetectionPass& pass, TrackDetection& detection);

// Curled edges: a deflection of the rolling straightedge, 3 m long, of more than 3 mm either way.
// Fails with "No joints found using the curled-edge method" and with the moving average's failures.
[[nodiscard]] ReturnCode joint_id_curledge(const DetectionPass& pass, TrackDetection& detection);

// Anti-smoothing: a downward spike of more than 4 times the root mean square about the smoothed
// profile. Fails with "No joints found using the anti-smooth method" and with the failures of the
// anti-smoothing filter and of norm_cal.
[[nodiscard]] ReturnCode joint_id_antismooth(const DetectionPass& pass, TrackDetection& detection);

} // namespace vialto
