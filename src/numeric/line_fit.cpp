#include "numeric/line_fit.hpp"

#include <cstddef>

namespace vialto {

Line fit_line(std::span<const float> x, std::span<const float> y) {
    double sum_x = 0.0;
    double sum_y = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        sum_x += static_cast<double>(x[i]);
        sum_y += static_cast<double>(y[i]);
    }
    const auto count = static_cast<double>(x.size());
    const double mean_x = sum_x / count;
    const double mean_y = sum_y / count;

    double sum_xx = 0.0;
    double sum_xy = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        const double dx = static_cast<double>(x[i]) - mean_x;
        const double dy = static_cast<double>(y[i]) - mean_y;
        sum_xx += dx * dx;
        sum_xy += dx * dy;
    }
    const double slope = sum_xy / sum_xx;
    return {static_cast<float>(mean_y - slope * mean_x), static_cast<float>(slope)};
}

} // namespace vialto
