#include "numeric/line_fit.hpp"

#include <cstddef>

namespace vialto {

namespace {

// A sum waits for the one before it; the sums of another row do not, and cost next to nothing.
template <std::size_t Rows>
std::array<Line, Rows> fit(std::span<const float> x, const std::array<const float*, Rows>& y) {
    double sum_x = 0.0;
    std::array<double, Rows> sum_y{};
    for (std::size_t i = 0; i < x.size(); ++i) {
        sum_x += static_cast<double>(x[i]);
        for (std::size_t row = 0; row < Rows; ++row) {
            sum_y[row] += static_cast<double>(y[row][i]);
        }
    }
    const auto count = static_cast<double>(x.size());
    const double mean_x = sum_x / count;
    std::array<double, Rows> mean_y;
    for (std::size_t row = 0; row < Rows; ++row) {
        mean_y[row] = sum_y[row] / count;
    }

    double sum_xx = 0.0;
    std::array<double, Rows> sum_xy{};
    for (std::size_t i = 0; i < x.size(); ++i) {
        const double dx = static_cast<double>(x[i]) - mean_x;
        sum_xx += dx * dx;
        for (std::size_t row = 0; row < Rows; ++row) {
            const double dy = static_cast<double>(y[row][i]) - mean_y[row];
            sum_xy[row] += dx * dy;
        }
    }
    std::array<Line, Rows> lines;
    for (std::size_t row = 0; row < Rows; ++row) {
        const double slope = sum_xy[row] / sum_xx;
        lines[row] = {static_cast<float>(mean_y[row] - slope * mean_x), static_cast<float>(slope)};
    }
    return lines;
}

} // namespace

Line fit_line(std::span<const float> x, std::span<const float> y) {
    return fit<1>(x, {y.data()})[0];
}

std::array<Line, 2> fit_two_lines(std::span<const float> x, std::span<const float> first,
                                  std::span<const float> second) {
    return fit<2>(x, {first.data(), second.data()});
}

} // namespace vialto
