#include "spectra/rolling_straightedge.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "numeric/rounding.hpp"

namespace vialto {

namespace {

// Half lengths this near to a whole number of samples have their ends on samples.
constexpr float whole_sample_tolerance = 1e-5F;

// Half a straightedge in samples.
struct HalfLength {
    bool ends_on_samples;
    std::int32_t reach; // from the middle to the outermost sample that an end touches
    float fraction;     // of the way to that sample, where the ends fall between samples
};

HalfLength half_length(float xStepSize, float xStrLeng) {
    const float samples = (xStrLeng / xStepSize) * 0.5F;
    const std::int32_t nearest = nint(samples);
    if (std::fabs(samples - static_cast<float>(nearest)) <= whole_sample_tolerance) {
        return {true, nearest, 0.0F};
    }
    const std::int32_t below = truncate(samples);
    const std::int32_t beyond = std::min(below, std::numeric_limits<std::int32_t>::max() - 1) + 1;
    return {false, beyond, samples - static_cast<float>(below)};
}

// Element k of d belongs to sample k + reach of p.
void deflection_on_samples(std::span<const float> p, std::size_t reach, std::span<float> d) {
    for (std::size_t k = 0; k < d.size(); ++k) {
        d[k] = (2.0F * p[k + reach] - p[k] - p[k + 2 * reach]) * 0.5F;
    }
}

void deflection_between_samples(std::span<const float> p, std::size_t reach, float fraction,
                                std::span<float> d) {
    for (std::size_t k = 0; k < d.size(); ++k) {
        d[k] = (2.0F * p[k + reach] - fraction * (p[k] + p[k + 2 * reach]) -
                (1.0F - fraction) * (p[k + 1] + p[k + 2 * reach - 1])) *
               0.5F;
    }
}

// The sum of the squared accelerations, in ascending order.
float sum_of_squares(std::span<const float> d, float xStrLeng) {
    const float half = xStrLeng * 0.5F;
    const float half_squared = half * half;
    float sum = 0.0F;
    for (const float deflection : d) {
        const float acceleration = deflection * 2.0F / half_squared;
        sum += acceleration * acceleration;
    }
    return sum;
}

} // namespace

ReturnCode rse_drv(float xStepSize, float xStrLeng, std::span<const float> xProfile,
                   std::span<float> xDeflection, float& xRMSvertacc, std::int32_t& iBeginelemIdx,
                   std::int32_t& iEndelemIdx) {
    std::fill(xDeflection.begin(), xDeflection.end(), 0.0F);
    const HalfLength half = half_length(xStepSize, xStrLeng);
    const auto last = static_cast<std::int64_t>(xProfile.size()) - 1 - half.reach;
    const std::int64_t count = last - half.reach + 1;
    float sum = 0.0F;
    if (count > 0) {
        const auto reach = static_cast<std::size_t>(half.reach);
        const std::span<float> valid = xDeflection.subspan(reach, static_cast<std::size_t>(count));
        if (half.ends_on_samples) {
            deflection_on_samples(xProfile, reach, valid);
        } else {
            deflection_between_samples(xProfile, reach, half.fraction, valid);
        }
        sum = sum_of_squares(valid, xStrLeng);
    }
    xRMSvertacc = std::sqrt(sum / static_cast<float>(count));
    iBeginelemIdx = half.reach;
    iEndelemIdx = static_cast<std::int32_t>(last);
    return success;
}

} // namespace vialto
