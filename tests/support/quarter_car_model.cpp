#include "support/quarter_car_model.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "numeric/inverse.hpp"

namespace vialto::test {

namespace {

using Matrix = SquareMatrix<4>;

Matrix product(const Matrix& a, const Matrix& b) {
    Matrix c{};
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            c[i][j] = a[i][0] * b[0][j] + a[i][1] * b[1][j] + a[i][2] * b[2][j] + a[i][3] * b[3][j];
        }
    }
    return c;
}

Matrix state_transition(const Matrix& a, float dt) {
    Matrix st{{{1.0F}, {0.0F, 1.0F}, {0.0F, 0.0F, 1.0F}, {0.0F, 0.0F, 0.0F, 1.0F}}};
    Matrix t = st;
    Matrix before{};
    for (int j = 1; st != before; ++j) {
        before = st;
        t = product(t, a);
        for (std::size_t i = 0; i < 16; ++i) {
            t[i / 4][i % 4] = t[i / 4][i % 4] * dt / static_cast<float>(j);
            st[i / 4][i % 4] = st[i / 4][i % 4] + t[i / 4][i % 4];
        }
    }
    return st;
}

} // namespace

LiteralResult literal_filter(const QuarterCar& car, std::span<const float> profile, float interval,
                             int base, float exponent) {
    const auto [init_length, k1, k2, c, mu, speed] = car;
    const Matrix a{{{0.0F, 1.0F},
                    {-k2, -c, k2, c},
                    {0.0F, 0.0F, 0.0F, 1.0F},
                    {k2 / mu, c / mu, -(k1 + k2) / mu, -c / mu}}};
    const float b = k1 / mu; // the fourth element of the input vector, whose others are zero
    const Matrix st = state_transition(a, interval / (speed / 3.6F));
    Matrix inverse{};
    (void)invert(a, inverse);
    const Matrix moved = product(inverse, st);

    const auto n = static_cast<int>(profile.size());
    const auto y = [&](int i) { return profile[static_cast<std::size_t>(i - 1)]; };
    const int init = std::min(n, static_cast<int>(init_length / interval + 0.5F) + 1);
    const float s = (y(init) - y(1)) / (interval * static_cast<float>(init));
    std::array<float, 4> x{s, 0.0F, s, 0.0F};
    const int m = n - base;
    LiteralResult result{};
    float sum = 0.0F;
    for (int i = 1; i <= m; ++i) {
        const float slope = (y(i + base) - y(i)) * (1.0F / (static_cast<float>(base) * interval));
        std::array<float, 4> next{};
        for (std::size_t k = 0; k < 4; ++k) {
            next[k] = st[k][0] * x[0] + st[k][1] * x[1] + st[k][2] * x[2] + st[k][3] * x[3] +
                      (moved[k][3] * b - inverse[k][3] * b) * slope;
        }
        x = next;
        result.filtered.push_back(x[2] - x[0]);
        const float magnitude = std::fabs(result.filtered.back());
        sum = sum + (exponent == 1.0F ? magnitude : magnitude * magnitude);
    }
    result.filtered.resize(profile.size());
    const float mean = sum / static_cast<float>(m);
    result.statistic = exponent == 1.0F ? mean : std::sqrt(mean);
    return result;
}

} // namespace vialto::test
