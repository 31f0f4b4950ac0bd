#include "joints/polycurvfit.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace vialto {

namespace {

// For a caller that gives none; at least two points, or none.
std::int32_t degree_for(std::size_t points) {
    constexpr std::size_t most_points_followed = 10;
    constexpr std::int32_t degree_beyond = 8;
    if (points == 0) {
        return 0;
    }
    return points > most_points_followed ? degree_beyond
                                         : std::max(static_cast<std::int32_t>(points) - 2, 1);
}

// The terms in ascending order of their power.
double value_at(double x, const PolynomialFit& fit, std::int32_t degree) {
    double sum = fit.coefficients[0];
    double power = 1.0;
    for (std::int32_t k = 1; k <= degree; ++k) {
        power *= x;
        sum += fit.coefficients[static_cast<std::size_t>(k)] * power;
    }
    return sum;
}

} // namespace

ReturnCode polycurvfit(std::span<const double> x, std::span<const double> y,
                       std::span<const double> xEval, std::span<double> yEval,
                       std::optional<std::int32_t> degree, PolynomialFit* fit) {
    constexpr std::string_view name = "polycurvfit";
    if (!degree && x.size() == 1) {
        return raise_failure("cannot do curve with one point", name);
    }
    const std::int32_t used_degree = degree.value_or(degree_for(x.size()));
    if (used_degree > max_polynomial_degree) {
        return raise_failure("degrees of polynomial exceeds 9", name);
    }
    PolynomialFit result;
    const std::int32_t code = fit_polynomial(x, y, used_degree, result);
    if (fit != nullptr) {
        *fit = result;
    }
    if (result.left_out > 0) {
        return raise_failure("x or y data contains NaN", name);
    }
    if (code != polynomial_fitted) {
        return raise_failure("error calling imsl drcurv", name);
    }
    for (std::size_t i = 0; i < xEval.size(); ++i) {
        yEval[i] += value_at(xEval[i], result, used_degree);
    }
    return success;
}

} // namespace vialto
