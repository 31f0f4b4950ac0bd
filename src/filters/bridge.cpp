#include "filters/bridge.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "filters/slope.hpp"
#include "numeric/rounding.hpp"
#include "vialto/vialto.h"

namespace vialto {

namespace {

constexpr std::int32_t mxbase = vialto_mxbase; // samples of a window
constexpr std::int32_t mxiter = 1000;          // iterations for a level
constexpr float bridge_tolerance = 0.001F;     // m; xTol
constexpr float convergence = 0.001F;          // of the mean height, relative to xTol
constexpr float below_every_road = -10'000'000.0F;

// The levels of neighbouring windows are sought side by side, one in each lane. Sample j of lane k
// is sample j + k of the stretch that the windows cover, so that the lanes of one j lie
// contiguously, and each lane adds its samples up in ascending order.
constexpr std::size_t lanes = 32;
using Lanes = std::array<float, lanes>;
using Stretch = std::array<float, mxbase + lanes - 1>;

Lanes largest_samples(const Stretch& stretch, std::size_t base) {
    Lanes largest;
    largest.fill(below_every_road);
    for (std::size_t j = 0; j < base; ++j) {
        for (std::size_t k = 0; k < lanes; ++k) {
            const float sample = stretch[j + k];
            largest[k] = sample > largest[k] ? sample : largest[k];
        }
    }
    return largest;
}

// Mean height by which the samples of each window stand above its z.
Lanes mean_heights_above(const Stretch& stretch, std::size_t base, const Lanes& z) {
    Lanes sum{};
    for (std::size_t j = 0; j < base; ++j) {
        for (std::size_t k = 0; k < lanes; ++k) {
            const float height = stretch[j + k] - z[k];
            sum[k] += height > 0.0F ? height : 0.0F;
        }
    }
    for (float& mean : sum) {
        mean /= static_cast<float>(base);
    }
    return sum;
}

// Levels of the first `count` windows of a stretch. Returns the number of windows ahead of the
// first one whose level was not found.
std::size_t find_levels(const Stretch& stretch, std::size_t base, std::size_t count, float xTol,
                        Lanes& level) {
    Lanes z = largest_samples(stretch, base);
    Lanes v{};
    std::array<std::int32_t, lanes> sought{}; // 1 or 0, as wide as a float for the vector unit
    std::fill_n(sought.begin(), count, 1);
    for (std::int32_t iter = 1; iter <= mxiter; ++iter) {
        for (std::size_t k = 0; k < lanes; ++k) {
            const float moved = (z[k] - xTol) + v[k];
            z[k] = sought[k] != 0 ? moved : z[k];
        }
        v = mean_heights_above(stretch, base, z);
        std::int32_t any = 0;
        for (std::size_t k = 0; k < lanes; ++k) {
            const bool converged = std::fabs(xTol - v[k]) / xTol <= convergence;
            sought[k] = converged ? 0 : sought[k];
            any |= sought[k];
        }
        if (any == 0) {
            break;
        }
    }
    for (std::size_t k = 0; k < lanes; ++k) {
        level[k] = xTol + z[k];
    }
    return static_cast<std::size_t>(std::find(sought.begin(), sought.begin() + count, 1) -
                                    sought.begin());
}

} // namespace

ReturnCode br_filt(std::span<float> y, std::int32_t& iCount, float xStepSize, float xBaseLength,
                   float xTol) {
    constexpr std::string_view name = "br_filt";
    const std::int32_t iBase = std::max(1, nint(xBaseLength / xStepSize));
    if (iBase > mxbase) {
        return raise_failure("ibase .gt. mxbase", name);
    }
    iCount = static_cast<std::int32_t>(y.size()) - iBase + 1;
    const auto base = static_cast<std::size_t>(iBase);
    const auto windows = static_cast<std::size_t>(std::max(iCount, 0));
    Stretch stretch{};
    Lanes level{};
    float level_before = 0.0F;
    for (std::size_t first = 0; first < windows; first += lanes) {
        const std::size_t count = std::min(lanes, windows - first);
        // The levels replace the samples of their own windows' starts, which no later window reads.
        std::copy_n(y.begin() + static_cast<std::ptrdiff_t>(first), count + base - 1,
                    stretch.begin());
        const std::size_t found = find_levels(stretch, base, count, xTol, level);
        std::copy_n(level.begin(), found, y.begin() + static_cast<std::ptrdiff_t>(first));
        if (found < count) {
            y[first + found] = found > 0 ? level[found - 1] : level_before;
            (void)raise_failure("iter .gt. mxiter, hung up.", name);
            // Deliberately named twice: the path reads br_filt/br_filt.
            return pass_failure(name);
        }
        level_before = level[count - 1];
    }
    return success;
}

ReturnCode bridge_filter_drv(std::span<const float> xProfile, float xStepSize, tFiltCon& settings,
                             std::span<float> xFiltered) {
    std::copy(xProfile.begin(), xProfile.end(), xFiltered.begin());
    std::int32_t iCount = 0;
    if (br_filt(xFiltered, iCount, xStepSize, settings.xShortWavelength, bridge_tolerance) !=
        success) {
        return pass_failure("bridge_filter_drv");
    }
    if (settings.iOutType == idx_filtouttyp_slope) {
        covertslope_differences(xFiltered, xStepSize);
    }
    settings.iBeginElemIdx = 0;
    settings.iEndElemIdx = iCount - 1;
    std::fill(xFiltered.begin() + std::max(iCount, 0), xFiltered.end(), 0.0F);
    return success;
}

} // namespace vialto
