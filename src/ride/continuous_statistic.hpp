// The continuous ride statistic: the mean of |y|^p over a moving base length, one value per sample.
#pragma once

#include <span>

#include "frame/event.hpp"
#include "ride/ride_stats.hpp"

namespace vialto {

// y becomes |y|^p, p being 1 or 2.
void raise_to_power(std::span<float> y, float p);

// y becomes y^(1/p), and 0.0 where y is negative: the line extensions of a moving average can give
// such values at an end.
void take_root(std::span<float> y, float p);

// Whether a moving mean over the base length is taken at all: it holds two intervals at least.
[[nodiscard]] bool is_smoothed(float xBaseLength, float xStepSize);

// Given: N filtered slopes y, which are rectified and raised to p in place and serve as the work
// array; their interval [m]; the base length [m]; p, 1 or 2.
// Returned: in xOutput (N values, not y itself) the moving mean of |y|^p over the base length,
// raised to 1/p; |y| where nothing is smoothed.
//
// Fails as the moving average does, with xOutput as it was.
//
// Note: all N slopes enter the moving mean, also the zeros behind the last filtered sample, so that
// the statistic falls over the last half base length: deliberate.
[[nodiscard]] ReturnCode moving_statistic(std::span<float> y, float xStepSize, float xBaseLength,
                                          float p, std::span<float> xOutput);

// The continuous report of ride_stats: moving_statistic over the request's base length.
[[nodiscard]] ReturnCode postproc_conpi(const RideRequest& request, float p, std::span<float> y,
                                        const RideTrack& track);

} // namespace vialto
