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

constexpr std::int32_t mxiter = 1000;      // iterations for a level
constexpr float bridge_tolerance = 0.001F; // m; xTol
constexpr float convergence = 0.001F;      // of the mean height, relative to xTol
constexpr float below_every_road = -10'000'000.0F;

// The levels of neighbouring windows are sought side by side, one in each lane. Sample j of lane k
// is sample j + k of the stretch that the windows cover, so that the lanes of one j lie
// contiguously, and each lane adds its samples up in ascending order.
constexpr std::size_t lanes = 32;
using Lanes = std::array<float, lanes>;
using Stretch = std::array<float, vialto_mxbase + lanes - 1>;

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

struct Levels {
    Lanes of_window;
    std::size_t found; // windows ahead of the first one whose level was not found
};

// The levels of the first `count` windows of a stretch.
Levels find_levels(const Stretch& stretch, std::size_t base, std::size_t count, float xTol) {
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
    Levels levels{};
    for (std::size_t k = 0; k < lanes; ++k) {
        levels.of_window[k] = xTol + z[k];
    }
    levels.found = static_cast<std::size_t>(std::find(sought.begin(), sought.begin() + count, 1) -
                                            sought.begin());
    return levels;
}

} // namespace

ReturnCode br_filt(std::span<float> y, std::int32_t& iCount, float xStepSize, float xBaseLength,
                   float xTol) {
    constexpr std::string_view name = "br_filt";
    const std::int32_t iBase = std::max(1, nint(xBaseLength / xStepSize));
    if (iBase > vialto_mxbase) {
        return raise_failure("ibase .gt. mxbase", name);
    }
    iCount = static_cast<std::int32_t>(y.size()) - iBase + 1;
    const auto base = static_cast<std::size_t>(iBase);
    const auto windows = static_cast<std::size_t>(std::max(iCount, 0));
    Stretch stretch{};
    for (std::size_t first = 0; first < windows; first += lanes) {
        const std::size_t count = std::min(lanes, windows - first);
        // The levels replace the samples of their own windows' starts, which no later window reads.
        std::copy_n(y.data() + first, count + base - 1, stretch.begin());
        const Levels levels = find_levels(stretch, base, count, xTol);
        std::copy_n(levels.of_window.begin(), levels.found, y.data() + first);
        if (levels.found < count) {
            const std::size_t failed = first + levels.found;
            y[failed] = failed > 0 ? y[failed - 1] : 0.0F; // the level of the window before
            (void)raise_failure("iter .gt. mxiter, hung up.", name);
            // Deliberately named twice: the path reads br_filt/br_filt.
            return pass_failure(name);
        }
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
