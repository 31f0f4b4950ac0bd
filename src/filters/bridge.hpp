// The bridge filter: what a tyre that bridges the dips of a road feels.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// idx_filttyp_bridge.
//
// Given: a profile of N elevations [m], its interval [m], the length of the window,
// xShortWavelength [m], and iOutType.
// Returned: N values, elevation or slope (iOutType 2); iBeginElemIdx 0 and iEndElemIdx n - 1, n
// being the number of windows, N - iBase + 1. Elements from n on are 0.0. A profile shorter than
// the window has none: n and iEndElemIdx are then as they result, n at most 0.
//
// Fails with the failures of br_filt. xFiltered then holds the profile, filtered up to the window
// that failed.
[[nodiscard]] ReturnCode bridge_filter_drv(std::span<const float> xProfile, float xStepSize,
                                           tFiltCon& settings, std::span<float> xFiltered);

// The filter behind it, in place: element k becomes the level of the window of iBase samples that
// starts at k, iBase being xBaseLength over xStepSize, rounded, at least 1. The level is the height
// above which the parts of the window that stand out have a mean height of xTol, within 0.1 % of
// xTol.
//
// Returned: iCount, the number of windows; not positive for a profile shorter than the window.
// Fails for a window of more than 1000 samples, with y untouched, and where a level is not found in
// 1000 iterations; that element then has the level of the window before, or 0.0 if it is the first.
// So slow are windows of which fewer than about 1 in 145 samples stand out.
[[nodiscard]] ReturnCode br_filt(std::span<float> y, std::int32_t& iCount, float xStepSize,
                                 float xBaseLength, float xTol);

} // namespace vialto
