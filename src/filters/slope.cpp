#include "filters/slope.hpp"

#include <cstddef>

namespace vialto {

void covertslope_differences(std::span<float> y, float xStepSize) {
    if (y.empty()) {
        return;
    }
    const float per_step = 1.0F / xStepSize;
    for (std::size_t i = y.size() - 1; i > 0; --i) {
        y[i] = (y[i] - y[i - 1]) * per_step;
    }
    y[0] = 0.0F;
}

void covertslope_integration(std::span<float> y, float xStepSize) {
    if (y.empty()) {
        return;
    }
    for (std::size_t i = 1; i < y.size(); ++i) {
        y[i] = y[i - 1] + xStepSize * y[i];
    }
    y[0] = 0.0F;
}

float lrslop(std::span<const float> y) {
    if (y.size() < 2) {
        return 0.0F;
    }
    double sum_i = 0.0;
    double sum_ii = 0.0;
    double sum_y = 0.0;
    double sum_iy = 0.0;
    for (std::size_t k = 0; k < y.size(); ++k) {
        const double i = static_cast<double>(k) + 1.0;
        const auto value = static_cast<double>(y[k]);
        sum_i += i;
        sum_ii += i * i;
        sum_y += value;
        sum_iy += i * value;
    }
    const auto n = static_cast<double>(y.size());
    return static_cast<float>((n * sum_iy - sum_y * sum_i) / (n * sum_ii - sum_i * sum_i));
}

} // namespace vialto
