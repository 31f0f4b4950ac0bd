// Least-squares polynomial through points, in 64-bit. The exported analyses fit straight lines with
// it; the other degrees are those of a curve fit whose caller leaves the degree open.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace vialto {

inline constexpr std::int32_t max_polynomial_degree = 9;

// Codes of a fit.
inline constexpr std::int32_t polynomial_fitted = 0;
inline constexpr std::int32_t fit_needs_two_points = 1;
inline constexpr std::int32_t fit_abscissae_equal = 2;
inline constexpr std::int32_t fit_degree_out_of_range = 3;

struct PolynomialFit {
    std::array<double, max_polynomial_degree + 1> coefficients{}; // [k] belongs to x to the power k
    std::int32_t left_out = 0; // points left out because x or y is not a number
};

// Given n points and a degree from 0 to 9, returns a code, the coefficients and the number of
// points left out. The coefficients are 0 with a code other than polynomial_fitted.
//
// Where the points have fewer different abscissae than the degree asks for, the polynomial is that
// of the highest degree that they determine. A perfect fit and a flat one are no failure.
//
// The polynomial is built up from orthogonal ones on centred and scaled abscissae, which keeps nine
// degrees apart where powers of x would be all but parallel.
//
// Reference: G. E. Forsythe, "Generation and Use of Orthogonal Polynomials for Data-Fitting with a
// Digital Computer", Journal of the SIAM 5, 1957.
[[nodiscard]] std::int32_t fit_polynomial(std::span<const double> x, std::span<const double> y,
                                          std::int32_t degree, PolynomialFit& fit);

} // namespace vialto
