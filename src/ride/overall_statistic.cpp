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

// Of the samples y[i] that counts(i) picks.
template <class Counts, class Power>
float sum_of_powers(std::span<const float> y, const Counts& counts, const Power& power) {
    PartialSums sums{};
    const auto add = [&](std::size_t lane, std::size_t i) {
        sums[lane] += counts(i) ? power(y[i]) : 0.0F;
    };
    const std::size_t whole = y.size() / lanes * lanes;
    for (std::size_t i = 0; i < whole; i += lanes) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            add(lane, i + lane);
        }
    }
    for (std::size_t i = whole; i < y.size(); ++i) {
        add(i - whole, i);
    }
    return total(sums);
}

// The p-th root of the mean, p being 1 or 2, of the samples that counts(i) picks, `actual` of them.
template <class Counts>
StretchStatistic statistic_of(std::span<const float> y, std::size_t actual, float p,
                              const Counts& counts) {
    const float sum =
        p == 1.0F ? sum_of_powers(y, counts, absolute) : sum_of_powers(y, counts, square);
    const float mean = sum / static_cast<float>(actual);
    return {p == 1.0F ? mean : std::sqrt(mean), static_cast<std::int32_t>(actual)};
}

} // namespace

StretchStatistic postproc_pi(std::span<const float> y, std::span<const std::int32_t> flags,
                             std::int32_t ifExcludeLeaveout, std::int32_t first, std::int32_t last,
                             float p) {
    const std::size_t count = last < first ? 0 : static_cast<std::size_t>(last - first) + 1;
    const std::span<const float> stretch = y.subspan(static_cast<std::size_t>(first), count);
    if (ifExcludeLeaveout != vialto_yes) {
        return statistic_of(stretch, count, p, [](std::size_t) { return true; });
    }
    const std::span<const std::int32_t> kept =
        flags.subspan(static_cast<std::size_t>(first), count);
    const auto actual = static_cast<std::size_t>(std::count(kept.begin(), kept.end(), 0));
    if (actual == 0) {
        return {hole_value, 0};
    }
    return statistic_of(stretch, actual, p, [&](std::size_t i) { return kept[i] == 0; });
}

void normal_pi(const RideRequest& request, const tFiltCon& settings,
               std::span<const float> filtered, const RideTrack& track) {
    track.xOutput.front() =
        postproc_pi(filtered, request.iExclusionFlags, request.ifExcludeLeaveout,
                    settings.iBeginElemIdx, settings.iEndElemIdx, settings.xPowerWeighting)
            .index;
}

} // namespace vialto
