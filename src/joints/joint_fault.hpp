// Faulting of concrete pavement: the height difference of the two slabs at a joint.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "frame/event.hpp"

namespace vialto {

// How far the stretch of profile around a joint reaches to either side.
inline constexpr float joint_fault_reach = 2.4384F; // m

// What is found at one joint. The slopes are those of the lines through the two slabs.
struct JointFault {
    bool near_end;     // nearer to an end of the profile than the reach: not measured, results of 0
    float left_slope;  // mm/m
    float right_slope; // mm/m, against the direction of travel: its sign is turned round
    float mean_slope;  // mm/m; half the sum of the two as they stand
    float fault;       // mm, positive where the slab behind stands higher
};

using JointDone = std::function<void(std::int32_t number, const JointFault&)>;

// Given: a profile of elevations [mm], its interval [m], the half width of the window round a joint
// whose samples belong to no slab [mm], the reach [m], and the joints' distances from the start of
// the profile [m].
// Returned: the fault at each joint [mm] in xFault, and the number, counted from 1, and the results
// of each to joint_done, as soon as it is done. Where a joint lies too near an end, xFault keeps
// what it held.
//
// Fails with "profile segment for current joint is not defined properly" (a joint behind the end of
// the profile or ahead of its start) and with the failures of polycurvfit: a sample that is not a
// number, or a window or an interval that leaves fewer than two samples a slab. The faults of the
// joints before it stand.
//
// Reference: AASHTO R 36, "Standard Practice for Evaluating Faulting of Concrete Pavements".
[[nodiscard]] ReturnCode jntfault_drv(float xStepSize, float xJointWindow, float xReach,
                                      std::span<const float> xProfile,
                                      std::span<const double> xJointLoc, std::span<float> xFault,
                                      const JointDone& joint_done);

} // namespace vialto
