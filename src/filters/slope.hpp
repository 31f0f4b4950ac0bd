// covertslope, so spelled: the step that turns a filtered elevation into a slope or back, in the
// two forms that the filters share, and lrslop, the slope of a least-squares line.
#pragma once

#include <span>

namespace vialto {

// Slope by first differences, in place: element i becomes (y(i) - y(i-1)) * (1 / xStepSize), the
// first becomes 0.0.
void covertslope_differences(std::span<float> y, float xStepSize);

// Elevation from slope, in place: element i becomes y(i-1) + xStepSize * y(i), then the first
// becomes 0.0. The first slope thus enters the sum as it stands, without the factor xStepSize, and
// is erased only afterwards: deliberate.
void covertslope_integration(std::span<float> y, float xStepSize);

// Least-squares slope per sample through the points (1, y(1)) to (n, y(n)), its sums in 64-bit; 0.0
// for fewer than two points. The lines of numeric/line_fit.hpp, which the profilograph takes, and of
// numeric/polynomial_fit.hpp, which joint faulting takes, sum in other orders and have other bits:
// none of the three stands in for another.
[[nodiscard]] float lrslop(std::span<const float> y);

} // namespace vialto
