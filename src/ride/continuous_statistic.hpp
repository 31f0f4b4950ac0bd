// The continuous ride statistic: the mean of |y|^p over a moving base length, one value per sample.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "ride/ride_stats.hpp"
#include "vialto/vialto.h"

namespace vialto {

// Given: N filtered slopes y, which are rectified and raised to p in place and serve as the work
// array; their interval [m]; the base length [m]; p, 1 or 2.
// Returned: in xOutput (N values, not y itself) the moving mean of |y|^p over the base length,
// raised to 1/p; |y| where the base length holds fewer than two intervals. The settings of `record`
// become those of the moving average; its index fields are written only if the moving average runs.
//
// Fails as the moving average does, with xOutput as it was.
//
// Note: all N slopes enter the moving mean, also the zeros behind the last filtered sample, so that
// the statistic falls over the last half base length: deliberate.
[[nodiscard]] ReturnCode moving_statistic(std::span<float> y, float xStepSize, float xBaseLength,
                                          float p, tFiltCon& record, std::span<float> xOutput);

// The continuous report of ride_stats: moving_statistic over the request's base length, or without
// any smoothing if iSkipMovingAverage is 1.
[[nodiscard]] ReturnCode postproc_conpi(const RideRequest& request, float p, std::span<float> y,
                                        std::span<float> xOutput,
                                        std::int32_t iSkipMovingAverage = vialto_no);

} // namespace vialto
