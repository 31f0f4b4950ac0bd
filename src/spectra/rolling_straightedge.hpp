// The rolling straightedge: how far a profile rises, at the middle of a straightedge that rolls
// along it, above the mean of its heights at the two ends.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"

namespace vialto {

// Given: a profile of N elevations [m], its interval [m, positive and finite], and the length of
// the straightedge [m, at least 0; infinity is a profile too short for it].
// Returned: the deflection [m], N values, at each sample the height of the profile less the mean of
// the heights half a straightedge before and behind it, and 0.0 where the straightedge does not fit
// on the profile; the root mean square of the vertical acceleration that the deflection stands for,
// per unit speed squared [1/m]; and the 0-based first and last sample at which the straightedge
// fits.
//
// Ends that fall between samples are interpolated along a straight line. On a profile that is too
// short the first valid sample lies behind the last one, and the summary is the root of 0.0 divided
// by the count of valid samples: -0.0 for a negative count, a NaN for 0. It is a NaN for length 0.0
// as well. Always succeeds.
[[nodiscard]] ReturnCode rse_drv(float xStepSize, float xStrLeng, std::span<const float> xProfile,
                                 std::span<float> xDeflection, float& xRMSvertacc,
                                 std::int32_t& iBeginelemIdx, std::int32_t& iEndelemIdx);

} // namespace vialto
