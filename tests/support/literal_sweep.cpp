#include "support/literal_sweep.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vialto::test {

namespace {

float normalise(std::vector<float>& segment) {
    std::vector<double> work(segment.begin(), segment.end());
    const auto n = static_cast<double>(work.size());
    double mean = 0.0;
    for (const double value : work) {
        mean += value;
    }
    mean /= n;
    double squares = 0.0;
    for (double& value : work) {
        value -= mean;
        squares += value * value;
    }
    const double rms = std::sqrt(squares / n);
    for (std::size_t i = 0; i < work.size(); ++i) {
        segment[i] = static_cast<float>(work[i] / rms);
    }
    return static_cast<float>(rms);
}

float correlation(const std::vector<float>& reference, const std::vector<float>& test) {
    const auto n = static_cast<double>(reference.size());
    double sx = 0.0;
    double sy = 0.0;
    double sxy = 0.0;
    double sxx = 0.0;
    double syy = 0.0;
    for (std::size_t i = 0; i < reference.size(); ++i) {
        const double x = static_cast<double>(reference[i]);
        const double y = static_cast<double>(test[i]);
        sx += x;
        sy += y;
        sxy += x * y;
        sxx += x * x;
        syy += y * y;
    }
    const float c = static_cast<float>(sxy - sx * sy / n);
    const double a = std::fabs(sxx - sx * sx / n);
    const double b = std::fabs(syy - sy * sy / n);
    if (a <= 1.1920928955078125e-7 || b <= 1.1920928955078125e-7) {
        return c > 0.0F ? 100.0F : -100.0F;
    }
    return static_cast<float>(static_cast<double>(c) / std::sqrt(a * b)) * 100.0F;
}

} // namespace

LiteralSweep literal_sweep(const std::vector<float>& reference, const std::vector<float>& test,
                           std::size_t positions) {
    LiteralSweep sweep{};
    float best_value = -std::numeric_limits<float>::infinity();
    for (std::size_t k = 0; k < positions; ++k) {
        const auto offset =
            static_cast<std::ptrdiff_t>(k) - static_cast<std::ptrdiff_t>(positions / 2);
        const std::ptrdiff_t skipped_reference = std::max<std::ptrdiff_t>(offset, 0);
        const std::ptrdiff_t skipped_test = std::max<std::ptrdiff_t>(-offset, 0);
        const auto count =
            std::min(std::ssize(reference) - skipped_reference, std::ssize(test) - skipped_test);
        std::vector<float> x(reference.begin() + skipped_reference,
                             reference.begin() + skipped_reference + count);
        std::vector<float> y(test.begin() + skipped_test, test.begin() + skipped_test + count);
        const float x_rms = normalise(x);
        const float y_rms = normalise(y);
        sweep.shape.push_back(std::min(x_rms, y_rms) / std::max(x_rms, y_rms));
        sweep.roughness.push_back(correlation(x, y));
        sweep.final_cc.push_back(sweep.roughness[k] * sweep.shape[k]);
        if (sweep.final_cc[k] > best_value) {
            best_value = sweep.final_cc[k];
            sweep.best = k;
        }
    }
    return sweep;
}

} // namespace vialto::test
