// Joint identification as it is defined, every pass filtering both tracks anew.
#pragma once

#include <cstdint>
#include <vector>

#include "vialto/vialto.h"

namespace vialto::test {

struct JointTrackResult {
    std::vector<std::int32_t> types;
    std::vector<double> locations;

    friend bool operator==(const JointTrackResult&, const JointTrackResult&) = default;
};

// The arrays of both tracks hold at first what the host gave them. Returns false at the first
// method that finds nothing.
[[nodiscard]] bool literal_joint_id(const tJointIDCfg& settings, float step,
                                    const std::vector<float>& left_profile,
                                    const std::vector<float>& right_profile, JointTrackResult& left,
                                    JointTrackResult& right);

} // namespace vialto::test
