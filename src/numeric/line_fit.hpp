// Least-squares line through points.
#pragma once

#include <array>
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

// The lines through two rows of points over the same x, at the price of one. Each has the bits that
// it has alone.
[[nodiscard]] std::array<Line, 2> fit_two_lines(std::span<const float> x,
                                                std::span<const float> first,
                                                std::span<const float> second);

} // namespace vialto
