// The diamond grinder: a cutting head between two axles, each a tandem pair of wheels. The head
// cuts what stands above the plane of the wheels, and the wheels behind it ride on what it left.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// A machine on a profile of one interval: where its wheels stand, in samples from the head, and
// what each weighs in the plane's height at the head. The inner distances may be negative, which
// puts the wheel to the other side of the head.
struct Grinder {
    std::int32_t iLeadOuter;
    std::int32_t iLeadInner;
    std::int32_t iTrailInner;
    std::int32_t iTrailOuter;
    float wLead;
    float wTrail;
    float xMaxDepth; // m; of a cut that is not flagged as deeper
};

[[nodiscard]] Grinder grinder_of(const tGrinderSetup& setup, float xStepSize);

// One pass over a spot.
struct GrindPass {
    std::int32_t iDirection;
    float xDepth_mm;     // cutting level above the plane of the wheels
    std::int32_t iStart; // first sample, from 0
    std::int32_t iEnd;   // last sample, inclusive
};

// The pass over the profile and the path of the wheels, which are equally long; both are cut. A
// sample that is cut gets its flag, if flags are given. A sample for which the head or any wheel
// would stand off the profile is not cut.
//
// Fails for a direction other than 1 and 2, naming the routine grindsimu.
[[nodiscard]] ReturnCode grindspot(const Grinder& grinder, const GrindPass& pass,
                                   std::span<float> xProfile, std::span<float> xWheelPath,
                                   std::span<std::int32_t> iGrindFlags);

// The surface that the wheels ride on, as long as the profile: its moving average over
// ShortWavelength [m]. Fails with the failures of filtcon_drv, its path extended by grindsimu.
[[nodiscard]] ReturnCode filter_wheel_path(std::span<const float> xProfile, float xStepSize,
                                           float ShortWavelength, std::span<float> xWheelPath);

// All passes over all spots, in the order of the list. The path of the wheels is filtered once, and
// carries the cuts from pass to pass and from spot to spot.
//
// Given: the interval [m], spots of at most ten passes, the machine, the profile [m].
// Returned: the profile, ground in place; one flag per sample, unless iGrindFlags is empty. A later
// pass overwrites a flag only where it cuts.
//
// Fails for a direction other than 1 and 2, the passes before it remaining done, and with the
// failures of filtcon_drv, ahead of any cut and of any flag.
[[nodiscard]] ReturnCode grindsimu(float xStepSize, std::span<const tGrindSpot> tGrindSpots,
                                   const tGrinderSetup& setup, std::span<float> xProfile,
                                   std::span<std::int32_t> iGrindFlags);

} // namespace vialto
