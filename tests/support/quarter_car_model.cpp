#include "support/quarter_car_model.hpp"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstring>
#include <numbers>

#include "numeric/inverse.hpp"

namespace vialto::test {

namespace {

struct Derivative {
    double x[4];
};

// Accelerations of the two masses under a road that stands at the given height.
Derivative derivative(const QuarterCar& car, const double (&x)[4], double road) {
    const double suspension = car.k2 * (x[2] - x[0]) + car.c * (x[3] - x[1]);
    return {{x[1], suspension, x[3], (car.k1 * (road - x[2]) - suspension) / car.mu}};
}

// Exact for a constant road up to the order of the series, by small Taylor steps.
void advance(const QuarterCar& car, double (&x)[4], double road, double dt) {
    constexpr int steps = 8;
    const double h = dt / steps;
    for (int step = 0; step < steps; ++step) {
        double term[4] = {x[0], x[1], x[2], x[3]};
        double term_road = road;
        for (int order = 1; order <= 12; ++order) {
            const Derivative d = derivative(car, term, term_road);
            term_road = 0.0; // the road does not change within the step
            for (int i = 0; i < 4; ++i) {
                term[i] = d.x[i] * h / order;
                x[i] += term[i];
            }
        }
    }
}

} // namespace

std::vector<double> filtered_slope(const QuarterCar& car, std::span<const float> profile,
                                   double interval, std::size_t base) {
    const auto at = [&](std::size_t i) { return static_cast<double>(profile[i]); };
    const std::size_t init = std::min(
        profile.size(), static_cast<std::size_t>(std::floor(car.init_length / interval + 0.5)) + 1);
    const double start = (at(init - 1) - at(0)) / (interval * static_cast<double>(init));
    double x[4] = {start, 0.0, start, 0.0};
    const double dt = interval / (car.speed / 3.6);
    std::vector<double> result(profile.size() - base);
    for (std::size_t i = 0; i < result.size(); ++i) {
        const double slope = (at(i + base) - at(i)) / (interval * static_cast<double>(base));
        advance(car, x, slope, dt);
        result[i] = x[2] - x[0];
    }
    return result;
}

double steady_gain(const QuarterCar& car, double wavelength, double interval, std::size_t base) {
    using Complex = std::complex<double>;
    const Complex s(0.0, 2.0 * std::numbers::pi * car.speed / 3.6 / wavelength);
    // Sprung and unsprung mass: s^2 z1 = L (z2 - z1), mu s^2 z2 = k1 (u - z2) - L (z2 - z1).
    const Complex link = car.k2 + car.c * s;
    const Complex sprung = link / (s * s + link);
    const Complex unsprung = car.k1 / (car.mu * s * s + car.k1 + link * (1.0 - sprung));
    const auto sinc = [](double x) { return std::sin(x) / x; };
    const double average =
        sinc(std::numbers::pi * static_cast<double>(base) * interval / wavelength);
    const double hold = sinc(std::numbers::pi * interval / wavelength);
    return std::abs(unsprung * (1.0 - sprung)) * average * hold;
}

LiteralResult literal_filter(const QuarterCar& car, std::span<const float> profile, float interval,
                             int base, float exponent) {
    const auto f = [](double value) { return static_cast<float>(value); };
    const float k1 = f(car.k1);
    const float k2 = f(car.k2);
    const float c = f(car.c);
    const float mu = f(car.mu);
    const float a[4][4] = {{0.0F, 1.0F, 0.0F, 0.0F},
                           {-k2, -c, k2, c},
                           {0.0F, 0.0F, 0.0F, 1.0F},
                           {k2 / mu, c / mu, -(k1 + k2) / mu, -c / mu}};
    const float b[4] = {0.0F, 0.0F, 0.0F, k1 / mu};
    const float dt = interval / (f(car.speed) / 3.6F);

    float t[4][4] = {};
    float st[4][4] = {};
    for (int i = 0; i < 4; ++i) {
        t[i][i] = 1.0F;
        st[i][i] = 1.0F;
    }
    for (int j = 1;; ++j) {
        float product[4][4];
        float before[4][4];
        std::memcpy(before, st, sizeof st);
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 4; ++column) {
                float sum = t[row][0] * a[0][column];
                for (int k = 1; k < 4; ++k) {
                    sum = sum + t[row][k] * a[k][column];
                }
                product[row][column] = sum * dt / static_cast<float>(j);
            }
        }
        std::memcpy(t, product, sizeof t);
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 4; ++column) {
                st[row][column] = st[row][column] + t[row][column];
            }
        }
        if (std::memcmp(before, st, sizeof st) == 0) {
            break;
        }
    }
    SquareMatrix<4> matrix{};
    SquareMatrix<4> inverse{};
    std::memcpy(&matrix, a, sizeof a);
    if (invert(matrix, inverse) != inverse_found) {
        return {};
    }
    float pr[4];
    for (std::size_t i = 0; i < 4; ++i) {
        float moved = 0.0F;
        float rest = 0.0F;
        for (std::size_t j = 0; j < 4; ++j) {
            float sum = inverse[i][0] * st[0][j];
            for (std::size_t k = 1; k < 4; ++k) {
                sum = sum + inverse[i][k] * st[k][j];
            }
            moved = j == 0 ? sum * b[0] : moved + sum * b[j];
            rest = j == 0 ? inverse[i][0] * b[0] : rest + inverse[i][j] * b[j];
        }
        pr[i] = moved - rest;
    }

    const int n = static_cast<int>(profile.size());
    std::vector<float> y(profile.begin(), profile.end());
    const int init = std::min(n, static_cast<int>(f(car.init_length) / interval + 0.5F) + 1);
    const float s = (y[static_cast<std::size_t>(init - 1)] - y[0]) * 1.0F /
                    (interval * static_cast<float>(init));
    float x[4] = {s, 0.0F, s, 0.0F};
    const int m = n - base;
    for (int i = 0; i < m; ++i) {
        y[static_cast<std::size_t>(i)] =
            (y[static_cast<std::size_t>(i + base)] - y[static_cast<std::size_t>(i)]) *
            (1.0F / (static_cast<float>(base) * interval));
    }
    for (int i = 0; i < m; ++i) {
        float next[4];
        for (int row = 0; row < 4; ++row) {
            next[row] = st[row][0] * x[0];
            for (int k = 1; k < 4; ++k) {
                next[row] = next[row] + st[row][k] * x[k];
            }
            next[row] = next[row] + pr[row] * y[static_cast<std::size_t>(i)];
        }
        std::memcpy(x, next, sizeof x);
        y[static_cast<std::size_t>(i)] = x[2] - x[0];
    }
    float sum = 0.0F;
    for (int i = 0; i < m; ++i) {
        const double magnitude = std::fabs(static_cast<double>(y[static_cast<std::size_t>(i)]));
        sum = sum + f(std::pow(magnitude, static_cast<double>(exponent)));
    }
    for (int i = std::max(m, 0); i < n; ++i) {
        y[static_cast<std::size_t>(i)] = 0.0F;
    }
    const double mean = static_cast<double>(sum / static_cast<float>(m));
    return {y, f(std::pow(mean, 1.0 / static_cast<double>(exponent)))};
}

} // namespace vialto::test
