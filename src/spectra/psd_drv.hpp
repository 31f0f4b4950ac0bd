// The one-sided power spectral density of a stretch of profile, from one transform of the whole
// stretch, without segments or windows. The stretch is differenced ahead of the transform, and the
// spectrum is corrected for it afterwards, so that the long waves of a road do not leak over the
// short ones.
//
// Reference: J. S. Bendat, A. G. Piersol, "Random Data: Analysis and Measurement Procedures".
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

struct tPSDCon {
    std::int32_t iPSDType;         // idx_psdtyp_...
    std::int32_t iOctaveBands;     // idx_psdband_...
    std::int32_t iPointsPerOctave; // of octave bands; below 1 stands for 6
    float xFreqInterval;           // cycles/m; of even spacing; raised to what the stretch allows
};

// Given: settings, N points of which xProfile holds the first ones, the others counting as 0.0, and
// the interval [m].
// Returned: grid frequencies [cycles/m] and densities [m^3 of elevation, m of slope], and the
// 0-based first and last element that was written; the others stay as they were. A stretch of fewer
// than two points has the empty range 0 to -1.
//
// Fails for more than 10,000,000 points and for a type or a kind of bands other than 1 and 2; the
// outputs are then untouched.
[[nodiscard]] ReturnCode psd_drv(const tPSDCon& settings, std::int32_t N, float xStepSize,
                                 std::span<const float> xProfile, std::span<float> xFreq,
                                 std::span<float> xPSD, std::int32_t& iFreqBegin,
                                 std::int32_t& iFreqEnd);

} // namespace vialto
