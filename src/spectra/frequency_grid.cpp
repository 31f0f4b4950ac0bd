#include "spectra/frequency_grid.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

#include "numeric/rounding.hpp"
#include "vialto/vialto.h"

namespace vialto {

namespace {

constexpr float points_per_octave = 6.0F; // unless the host asks for others

std::vector<float> linear_grid(float df, float fmax) {
    const std::int32_t M = std::min<std::int32_t>(truncate(fmax / df + 2.0F), vialto_mxFreq);
    std::vector<float> f(static_cast<std::size_t>(M));
    float frequency = 0.0F;
    for (float& point : f) {
        // By repeated addition: the rounding errors add up, and belong to the grid.
        frequency += df;
        point = frequency;
    }
    return f;
}

std::vector<float> octave_grid(float df0, float nOct, float fmax) {
    const auto r = static_cast<float>(std::exp2(static_cast<double>(1.0F / nOct)));
    std::vector<float> f{df0};
    do {
        f.push_back(std::max(f.back() * r, f.back() + df0));
    } while (!(f.back() > fmax) && f.size() < vialto_mxFreq);
    return f;
}

} // namespace

std::int32_t nextpow2(std::int32_t n) {
    return static_cast<std::int32_t>(std::bit_ceil(static_cast<std::uint32_t>(n)));
}

std::vector<float> GETFREQ(GridMode mode, float df, float nOct, float dx, std::int32_t N) {
    const float df0 = 1.0F / (dx * static_cast<float>(nextpow2(N) - 1));
    const float fmax = 0.5F / dx;
    if (mode == GridMode::linear) {
        return linear_grid(std::max(df0, df), fmax);
    }
    return octave_grid(df0, nOct < 1.0F ? points_per_octave : nOct, fmax);
}

} // namespace vialto
