#include "joints/joint_id.hpp"

#include <algorithm>
#include <string_view>

#include "joints/joint_methods.hpp"
#include "numeric/rounding.hpp"

namespace vialto {

namespace {

constexpr std::int32_t most_passes = 20;
constexpr float threshold_step = 0.05263158F; // 1/19: the twentieth pass runs close to 0
constexpr float enough_of_expected = 0.9F;

using Method = ReturnCode (*)(const DetectionPass&, TrackDetection&);

// One pass over both tracks.
ReturnCode joint_id_cal(const DetectionPass& pass, TrackDetection& left, TrackDetection& right) {
    constexpr std::string_view name = "joint_id_cal";
    Method method = nullptr;
    switch (pass.settings.i_jntid_method) {
    case idx_jntid_stepdetect:
        method = joint_id_stepdetect;
        break;
    case idx_jntid_valleydetect:
        return raise_failure("idx_jntid_valleydetect is not implemented", name,
                             vialto_code_request);
    case idx_jntid_antismooth:
        method = joint_id_antismooth;
        break;
    case idx_jntid_curledge:
        method = joint_id_curledge;
        break;
    default:
        return raise_failure("i_jntid_method is not defined", name, vialto_code_request);
    }
    const bool done = method(pass, left) == success && method(pass, right) == success;
    return done ? success : pass_failure(name);
}

void clear_past_last_feature(const TrackDetection& detection) {
    const std::span<std::int32_t> types = detection.track.iTypes;
    std::fill(types.begin() + detection.count, types.end(), idx_jnttyp_none);
}

} // namespace

ReturnCode joint_id(const tJointIDCfg& settings, float xStepSize, const JointTrack& left,
                    const JointTrack& right) {
    TrackDetection left_detection{left};
    TrackDetection right_detection{right};
    const auto expected = static_cast<float>(truncate(static_cast<float>(right.xProfile.size()) *
                                                      xStepSize / settings.xDomJointSpacing));
    float ThresholdMulti = 1.0F;
    for (std::int32_t pass = 0; pass < most_passes; ++pass) {
        if (joint_id_cal({settings, xStepSize, ThresholdMulti}, left_detection, right_detection) !=
            success) {
            return pass_failure("joint_id");
        }
        // A spacing longer than the profile expects none: the ratio is then infinite.
        if (static_cast<float>(right_detection.count) / expected > enough_of_expected) {
            break;
        }
        ThresholdMulti = ThresholdMulti - threshold_step;
    }
    clear_past_last_feature(left_detection);
    clear_past_last_feature(right_detection);
    return success;
}

} // namespace vialto
