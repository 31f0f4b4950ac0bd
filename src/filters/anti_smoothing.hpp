// Anti-smoothing: each sample minus the mean of a window around it, the ends left out.
#pragma once

#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// idx_filttyp_antismooth.
//
// Given: a profile of N elevations, its interval dx [m], the base length of the window,
// xShortWavelength [m], and iOutType. With x = xShortWavelength / dx the window has
// L = nint(x + 0.5) samples, and the sample in its middle is its h-th, h = nint(x / 2 + 0.5).
// Returned: N values, elevation or slope (iOutType 2); iBeginElemIdx h and iEndElemIdx N - L - 1.
// Elements outside that range are 0.0. The range may be empty, the end then being below the begin.
//
// The result stands h places before the sample that it belongs to, and the first h results are
// cleared although they were computed: both deliberate. A base length that is negative or a NaN
// gives a window without a sample, and NaN throughout.
//
// Fails where the window has one sample only or is not shorter than the profile; xFiltered is then
// untouched.
[[nodiscard]] ReturnCode antismooth(std::span<const float> xProfile, float xStepSize,
                                    tFiltCon& settings, std::span<float> xFiltered);

} // namespace vialto
