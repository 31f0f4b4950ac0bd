// Least-squares line through points.
#pragma once

#include <span>

namespace vialto {

struct Line {
    float intercept; // in the unit of y
    float slope;     // in the unit of y per unit of x
};

// The line y = intercept + slope * x with the least sum of squared vertical distances from the
// points (x[i], y[i]); both spans have the same length, and not all x are equal. The sums are
// 64-bit, ascending and taken about the means, the result is rounded to 32 bits once.
[[nodiscard]] Line fit_line(std::span<const float> x, std::span<const float> y);

} // namespace vialto
