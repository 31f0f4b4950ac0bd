#include "support/literal_sweep.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <span>

namespace vialto::test {

namespace {

using Segment = std::vector<double>; // of 32-bit values

float normalise(Segment& segment) {
    const auto n = static_cast<double>(segment.size());
    const double mean = std::accumulate(segment.begin(), segment.end(), 0.0) / n;
    double squares = 0.0;
    for (double& value : segment) {
        value -= mean;
        squares += value * value;
    }
    const double rms = std::sqrt(squares / n);
    for (double& value : segment) {
        value = static_cast<double>(static_cast<float>(value / rms));
    }
    return static_cast<float>(rms);
}

// Of segments that have a variance.
float correlation(const Segment& x, const Segment& y) {
    double sx = 0.0, sy = 0.0, sxy = 0.0, sxx = 0.0, syy = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        sx += x[i];
        sy += y[i];
        sxy += x[i] * y[i];
        sxx += x[i] * x[i];
        syy += y[i] * y[i];
    }
    const auto n = static_cast<double>(x.size());
    const auto c = static_cast<float>(sxy - sx * sy / n);
    const double root = std::sqrt(std::fabs(sxx - sx * sx / n) * std::fabs(syy - sy * sy / n));
    return static_cast<float>(static_cast<double>(c) / root) * 100.0F;
}

} // namespace

LiteralSweep literal_sweep(const std::vector<float>& reference, const std::vector<float>& test,
                           std::size_t positions) {
    LiteralSweep sweep;
    const std::size_t half = positions / 2;
    float largest = -std::numeric_limits<float>::infinity();
    for (std::size_t k = 0; k < positions; ++k) {
        const auto reference_left = std::span(reference).subspan(std::max(k, half) - half);
        const auto test_left = std::span(test).subspan(half - std::min(k, half));
        Segment x(reference_left.begin(), reference_left.end());
        Segment y(test_left.begin(), test_left.end());
        x.resize(std::min(x.size(), y.size()));
        y.resize(x.size());
        const auto [less, more] = std::minmax({normalise(x), normalise(y)});
        sweep.shape.push_back(less / more);
        sweep.roughness.push_back(correlation(x, y));
        sweep.final_cc.push_back(sweep.roughness[k] * sweep.shape[k]);
        if (sweep.final_cc[k] > largest) {
            largest = sweep.final_cc[k];
            sweep.best = k;
        }
    }
    return sweep;
}

} // namespace vialto::test
