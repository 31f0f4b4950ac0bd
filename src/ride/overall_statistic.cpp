#include "ride/overall_statistic.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace vialto {

namespace {

constexpr std::size_t lanes = 4;
using PartialSums = std::array<float, lanes>;

float total(const PartialSums& sums) {
    return (sums[0] + sums[1]) + (sums[2] + sums[3]);
}

float absolute(float value) {
    return std::fabs(value);
}

float square(float value) {
    return value * value;
}

template <class Power>
float sum_of_powers(std::span<const float> y, const Power& power) {
    PartialSums sums{};
    const std::size_t whole = y.size() / lanes * lanes;
    for (std::size_t i = 0; i < whole; i += lanes) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            sums[lane] += power(y[i + lane]);
        }
    }
    for (std::size_t i = whole; i < y.size(); ++i) {
        sums[i - whole] += power(y[i]);
    }
    return total(sums);
}

template <class Power>
float sum_of_kept_powers(std::span<const float> y, std::span<const std::int32_t> flags,
                         const Power& power) {
    PartialSums sums{};
    for (std::size_t i = 0; i < y.size(); ++i) {
        sums[i % lanes] += flags[i] == 0 ? power(y[i]) : 0.0F;
    }
    return total(sums);
}

// The p-th root of the mean, p being 1 or 2.
float root_of_mean(float sum, std::int32_t count, float p) {
    const float mean = sum / static_cast<float>(count);
    return p == 1.0F ? mean : std::sqrt(mean);
}

} // namespace

StretchStatistic postproc_pi(std::span<const float> y, std::span<const std::int32_t> flags,
                             std::int32_t ifExcludeLeaveout, std::int32_t first, std::int32_t last,
                             float p) {
    const std::size_t count = last < first ? 0 : static_cast<std::size_t>(last - first) + 1;
    const std::span<const float> stretch = y.subspan(static_cast<std::size_t>(first), count);
    if (ifExcludeLeaveout != vialto_yes) {
        const float sum =
            p == 1.0F ? sum_of_powers(stretch, absolute) : sum_of_powers(stretch, square);
        const auto actual = static_cast<std::int32_t>(count);
        return {root_of_mean(sum, actual, p), actual};
    }
    const std::span<const std::int32_t> kept =
        flags.subspan(static_cast<std::size_t>(first), count);
    const auto actual = static_cast<std::int32_t>(std::count(kept.begin(), kept.end(), 0));
    if (actual == 0) {
        return {hole_value, 0};
    }
    const float sum = p == 1.0F ? sum_of_kept_powers(stretch, kept, absolute)
                                : sum_of_kept_powers(stretch, kept, square);
    return {root_of_mean(sum, actual, p), actual};
}

void normal_pi(const RideRequest& request, const tFiltCon& settings,
               std::span<const float> filtered, float& xRideIndex) {
    xRideIndex = postproc_pi(filtered, request.iExclusionFlags, request.ifExcludeLeaveout,
                             settings.iBeginElemIdx, settings.iEndElemIdx, settings.xPowerWeighting)
                     .index;
}

} // namespace vialto
