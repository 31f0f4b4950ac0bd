// Detrending: the straight line through the whole profile taken away.
#pragma once

#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// idx_filttyp_detrend.
//
// Given: a profile of N elevations, its interval [m] and iOutType.
// Returned: the profile less the slope of its least-squares line, N values, elevation or slope
// (iOutType 2); iBeginElemIdx 0, iEndElemIdx N - 1. The line turns about the middle of the profile,
// so the mean stays, to half a sample's rise of the line.
//
// Always succeeds.
[[nodiscard]] ReturnCode detrend(std::span<const float> xProfile, float xStepSize,
                                 tFiltCon& settings, std::span<float> xFiltered);

} // namespace vialto
