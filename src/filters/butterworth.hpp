// The Butterworth filters: high-pass, low-pass and band-pass of the third order, run forwards and
// backwards, without a phase shift.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// idx_filttyp_bwfilt.
//
// Given: a profile of N elevations, its interval [m], iSubFilterType (1 band-pass, 2 low-pass,
// 3 high-pass, 4 band-pass about a centre frequency), iOutType, which sub-type 4 does not read, and
// the cutoff wavelengths xLongWavelength of the high-pass and xShortWavelength of the low-pass [m].
// Returned: the filtered profile, N values, elevation or slope (iOutType 2); iBeginElemIdx 0,
// iEndElemIdx N - 1. Sub-type 0 runs nothing: the output and the index fields keep what they held.
//
// xFiltered may be xProfile itself.
//
// Fails with "iBWFilterType is not within range" and with the failures of zeb_bwfilter and
// DRBWfilt_drv_prof; xFiltered is untouched in every case.
[[nodiscard]] ReturnCode bwfilt_drv(std::span<const float> xProfile, float xStepSize,
                                    tFiltCon& settings, std::span<float> xFiltered);

// Sub-types 1 to 3. A first-order and a second-order section each run once forwards and once
// backwards, so that the gain at the cutoff wavelength is 1 / sqrt(2). The work is in 64-bit.
//
// iBWFilterType 2 does not read xLongWavelength, and 3 not xShortWavelength. iBegin and iEnd are
// the first and last filtered sample, from 1.
//
// Fails where the cutoff of a high-pass is below about 1.73, or that of a low-pass below about 2.32
// intervals; the high-pass is looked at first.
//
// Reference: A. V. Oppenheim and R. W. Schafer, "Discrete-Time Signal Processing" (Butterworth
// design by the bilinear transform).
[[nodiscard]] ReturnCode zeb_bwfilter(std::int32_t iBWFilterType, std::int32_t iOutType,
                                      float xStepSize, float xShortWavelength,
                                      float xLongWavelength, std::span<const float> xProfile,
                                      std::span<float> xFiltered, std::int32_t& iBegin,
                                      std::int32_t& iEnd);

} // namespace vialto
