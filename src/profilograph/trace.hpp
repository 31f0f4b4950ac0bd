// The trace of a simulated profilograph: a rigid beam on pairs of support wheels, with a sensing
// wheel at its middle.
//
// Reference: ASTM E1274, Standard Test Method for Measuring Pavement Roughness Using a
// Profilograph.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"

namespace vialto {

// Given: the sample interval [m]; the distance of each wheel pair from the sensing wheel [m], at
// least one, all finite, in any order; the profile of the stretch.
// Returned: the trace, as many samples as the profile and in its unit: the profile less the mean
// height of all support wheels, each wheel between two samples standing on the straight line
// between them. iBeginElem and iEndElem are the 0-based first and last sample at which all wheels
// stand on the stretch; the trace is 0.0 outside of them.
//
// A negative distance is served by the same formulas. It reaches no sample by itself.
//
// Fails with "nsamp < 2*maxsampbegin" if the stretch is too short for the beam, with
// "maxsampbegin > minsampend" if no sample is left, and for a negative distance beyond the reach of
// the others; the two indexes are then untouched.
[[nodiscard]] ReturnCode pgfilter(float xStepSize, std::span<const float> xWheelOffsets,
                                  std::span<const float> xProfile, std::span<float> xPGTrace,
                                  std::int32_t& iBeginElem, std::int32_t& iEndElem);

} // namespace vialto
