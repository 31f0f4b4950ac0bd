// Least-squares polynomial through points, evaluated at points of the caller's.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "frame/event.hpp"
#include "numeric/polynomial_fit.hpp"

namespace vialto {

// Given: points (x, y), the abscissae xEval, and the degree. Without a degree it follows from the
// number of points p: max(p - 2, 1) up to 10 points, 8 above, 0 for none.
// Returned: the polynomial's values at xEval, added onto yEval, which the caller sets to 0; the
// coefficients and the count of points left out in `fit`, if asked for, after a failure of the fit
// as well. The first two failures leave it untouched.
//
// Fails, with yEval untouched, with "cannot do curve with one point" (no degree given), "degrees of
// polynomial exceeds 9", "x or y data contains NaN", and "error calling imsl drcurv": fewer than
// two points, all abscissae equal, or a negative degree.
[[nodiscard]] ReturnCode polycurvfit(std::span<const double> x, std::span<const double> y,
                                     std::span<const double> xEval, std::span<double> yEval,
                                     std::optional<std::int32_t> degree = {},
                                     PolynomialFit* fit = nullptr);

} // namespace vialto
