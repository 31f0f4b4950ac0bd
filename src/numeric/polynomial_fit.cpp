#include "numeric/polynomial_fit.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vialto {

namespace {

constexpr std::size_t max_terms = max_polynomial_degree + 1;
using Coefficients = std::array<double, max_terms>;

// The points that count: those whose two coordinates are numbers.
struct Points {
    std::span<const double> x;
    std::span<const double> y;

    template <class Visit>
    void for_each(const Visit& visit) const {
        for (std::size_t i = 0; i < x.size(); ++i) {
            if (!std::isnan(x[i]) && !std::isnan(y[i])) {
                visit(x[i], y[i]);
            }
        }
    }
};

// t = (x - centre) / scale, from -1 to 1.
struct Abscissae {
    std::int32_t count = 0; // points that count
    double centre = 0.0;
    double scale = 0.0;
    std::size_t different = 0; // different values of x, no more than max_terms of them counted

    explicit Abscissae(const Points& points) {
        std::array<double, max_terms> seen{};
        double sum = 0.0;
        points.for_each([&](double x, double) {
            ++count;
            sum += x;
            const auto end = seen.begin() + static_cast<std::ptrdiff_t>(different);
            if (different < max_terms && std::find(seen.begin(), end, x) == end) {
                seen[different++] = x;
            }
        });
        centre = sum / static_cast<double>(count);
        points.for_each([&](double x, double) { scale = std::max(scale, std::fabs(x - centre)); });
    }

    [[nodiscard]] double scaled(double x) const { return (x - centre) / scale; }
};

// Polynomials p(0), p(1), ... in t, orthogonal over the points:
//   p(k+1) = (t - alpha(k)) p(k) - beta(k) p(k-1), with p(0) = 1 and p(-1) = 0,
// and the fit as their sum with the given weights.
struct OrthogonalFit {
    std::size_t terms = 0;
    Coefficients alpha{};
    Coefficients beta{};
    Coefficients weight{};

    // p(terms) at t, and in `fitted` the sum of the weighted ones before it.
    double next_polynomial(double t, double& fitted) const {
        double before = 0.0;
        double current = 1.0;
        for (std::size_t k = 0; k < terms; ++k) {
            fitted += weight[k] * current;
            const double next = (t - alpha[k]) * current - beta[k] * before;
            before = current;
            current = next;
        }
        return current;
    }

    // Adds the polynomial of the next degree. Its weight fits what the ones before have left over.
    // `norm`, the sum of squares of the last polynomial, is renewed.
    void add_term(const Points& points, const Abscissae& abscissae, double& norm) {
        double squares = 0.0;
        double t_squares = 0.0;
        double residuals = 0.0;
        points.for_each([&](double x, double y) {
            const double t = abscissae.scaled(x);
            double fitted = 0.0;
            const double p = next_polynomial(t, fitted);
            squares += p * p;
            t_squares += t * p * p;
            residuals += (y - fitted) * p;
        });
        weight[terms] = residuals / squares;
        alpha[terms] = t_squares / squares;
        beta[terms] = terms == 0 ? 0.0 : squares / norm;
        norm = squares;
        ++terms;
    }

    // The fit in powers of t.
    [[nodiscard]] Coefficients powers_of_t() const {
        Coefficients sum{};
        Coefficients before{};
        Coefficients current{1.0};
        for (std::size_t k = 0; k < terms; ++k) {
            Coefficients next{};
            for (std::size_t j = 0; j <= k; ++j) {
                sum[j] += weight[k] * current[j];
                next[j] -= alpha[k] * current[j] + beta[k] * before[j];
                if (j + 1 < max_terms) {
                    next[j + 1] += current[j];
                }
            }
            before = current;
            current = next;
        }
        return sum;
    }
};

// From powers of t = (x - centre) / scale to powers of x, by Horner's rule on polynomials.
Coefficients powers_of_x(const Coefficients& in_t, std::size_t terms, const Abscissae& abscissae) {
    Coefficients in_x{};
    for (std::size_t k = terms; k-- > 0;) {
        for (std::size_t j = terms - 1 - k; j > 0; --j) {
            in_x[j] = (in_x[j - 1] - abscissae.centre * in_x[j]) / abscissae.scale;
        }
        in_x[0] = in_t[k] - abscissae.centre * in_x[0] / abscissae.scale;
    }
    return in_x;
}

} // namespace

std::int32_t fit_polynomial(std::span<const double> x, std::span<const double> y,
                            std::int32_t degree, PolynomialFit& fit) {
    const Points points{x, y};
    const Abscissae abscissae(points);
    fit = {{}, static_cast<std::int32_t>(x.size()) - abscissae.count};
    if (degree < 0 || degree > max_polynomial_degree) {
        return fit_degree_out_of_range;
    }
    if (abscissae.count < 2) {
        return fit_needs_two_points;
    }
    if (abscissae.different < 2) {
        return fit_abscissae_equal;
    }
    OrthogonalFit orthogonal;
    double norm = 0.0;
    const std::size_t terms = std::min(static_cast<std::size_t>(degree) + 1, abscissae.different);
    while (orthogonal.terms < terms) {
        orthogonal.add_term(points, abscissae, norm);
    }
    fit.coefficients = powers_of_x(orthogonal.powers_of_t(), terms, abscissae);
    return polynomial_fitted;
}

} // namespace vialto
