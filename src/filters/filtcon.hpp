// The one entry to every filter of the library.
#pragma once

#include <span>

#include "filters/quarter_car.hpp"
#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// Runs the filter that tFiltCon selects.
//
// Given: a profile of N elevations at the interval xStepSize [m] and the nine settings.
// Returned: xFiltered, as long as the profile, elevation or slope as iOutType says
// (idx_filttyp_none copies the profile, whatever iOutType says); the 0-based first and last valid
// element in iBeginElemIdx and iEndElemIdx; xQcarStat, the quarter car's summary statistic, or 0.0
// for every other filter.
//
// Fails with "Illegal Main filter type" and with the failures of each filter. The Butterworth
// filter with sub-type 0 runs nothing: the output and the index fields keep what they held, and it
// succeeds.
[[nodiscard]] ReturnCode filtcon_drv(std::span<const float> xProfile, float xStepSize,
                                     tFiltCon& settings, std::span<float> xFiltered,
                                     float& xQcarStat);

// The same for a caller that has no use for the statistic.
[[nodiscard]] inline ReturnCode filtcon_drv(std::span<const float> xProfile, float xStepSize,
                                            tFiltCon& settings, std::span<float> xFiltered) {
    float unused_statistic = 0.0F;
    return filtcon_drv(xProfile, xStepSize, settings, xFiltered, unused_statistic);
}

// The quarter car, idx_filttyp_IRI and idx_filttyp_RN, on one track or two at the price of one.
[[nodiscard]] ReturnCode filtcon_drv(std::span<QuarterCarTrack> tracks, float xStepSize,
                                     tFiltCon& settings);

} // namespace vialto
