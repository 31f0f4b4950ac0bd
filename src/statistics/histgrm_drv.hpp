// Distribution of a series of values: the percentage in each class and above a threshold.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"

namespace vialto {

// How the values are classed. The unit is that of the values.
struct HistogramClasses {
    std::int32_t iNumClasses; // K; below 1 there is none
    float xLow;               // first boundary
    float xHigh;              // last boundary, wherever the steps have come to
    float xStep;              // from one inner boundary to the next
};

// Given: n values, the classes and the threshold.
// Returned: the percentage of the values in each class, K of them, and above the threshold.
//
// Fails with "error calling imsl drcurv" where there are no values or no classes. xHistogram is
// written by then (each percentage of no values is 0/0, a NaN), xAboveThreshold is untouched.
[[nodiscard]] ReturnCode histgrm_drv(const HistogramClasses& classes, float xThreshold,
                                     std::span<const float> values, std::span<float> xHistogram,
                                     float& xAboveThreshold);

} // namespace vialto
