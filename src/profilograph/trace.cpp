#include "profilograph/trace.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "numeric/rounding.hpp"

namespace vialto {

namespace {

constexpr float on_sample_tolerance = 1e-5F; // sample intervals
constexpr std::int64_t no_begin_yet = -99;
constexpr std::int64_t beyond_every_end = 99;

// A pair of wheels at one distance ahead of and behind the sensing wheel. Sample numbers count from
// 1, and are 64-bit because a distance of any length gets one.
struct WheelPair {
    std::int64_t isampbegin; // first sample at which both wheels stand on the stretch
    std::int64_t isampend;   // last such sample
    float xfraction;         // weight of the sample farther out; 1.0 when the wheel is on a sample
    bool ifonsample;
};

// The part of the trace that one pass over the wheel pairs works on: small enough for the sums and
// the profile around them to stay in the nearest cache.
constexpr std::size_t block_length = 1024;
using Block = std::array<float, block_length>;

WheelPair place_wheels(float xWheelOffset, float xStepSize, std::int64_t nsamp) {
    const float q = xWheelOffset / xStepSize;
    const std::int32_t nearest = nint(q);
    const std::int32_t whole = truncate(q);
    WheelPair pair{};
    pair.ifonsample = std::fabs(q - static_cast<float>(nearest)) <= on_sample_tolerance;
    pair.isampbegin = pair.ifonsample ? std::int64_t{nearest} + 1 : std::int64_t{whole} + 2;
    pair.xfraction = pair.ifonsample ? 1.0F : q - static_cast<float>(whole);
    pair.isampend = nsamp - pair.isampbegin + 1;
    return pair;
}

// How far from the sensing wheel a pair reads, in samples.
std::int64_t reach_of(const WheelPair& pair) {
    const std::int64_t outer = std::abs(pair.isampbegin - 1);
    return pair.ifonsample ? outer : std::max(outer, std::abs(pair.isampbegin - 2));
}

// Adds the heights of the wheels behind, then of those ahead, to the sums of `count` samples, of
// which `y` is the first.
void add_wheels(const WheelPair& pair, const float* y, std::size_t count, Block& sums) {
    const std::int64_t reach = pair.isampbegin - 1;
    const float* behind = y - reach;
    const float* ahead = y + reach;
    if (pair.ifonsample) {
        for (std::size_t i = 0; i < count; ++i) {
            sums[i] = (sums[i] + behind[i]) + ahead[i];
        }
        return;
    }
    const float* nearer_behind = behind + 1;
    const float* nearer_ahead = ahead - 1;
    const float f = pair.xfraction;
    const float g = 1.0F - f;
    for (std::size_t i = 0; i < count; ++i) {
        sums[i] = (sums[i] + (f * behind[i] + g * nearer_behind[i])) +
                  (f * ahead[i] + g * nearer_ahead[i]);
    }
}

} // namespace

ReturnCode pgfilter(float xStepSize, std::span<const float> xWheelOffsets,
                    std::span<const float> xProfile, std::span<float> xPGTrace,
                    std::int32_t& iBeginElem, std::int32_t& iEndElem) {
    constexpr std::string_view name = "pgfilter";
    std::fill(xPGTrace.begin(), xPGTrace.end(), 0.0F);

    const auto nsamp = static_cast<std::int64_t>(xProfile.size());
    std::int64_t maxsampbegin = no_begin_yet;
    std::int64_t minsampend = nsamp + beyond_every_end;
    std::vector<WheelPair> pairs;
    pairs.reserve(xWheelOffsets.size());
    for (const float offset : xWheelOffsets) {
        pairs.push_back(place_wheels(offset, xStepSize, nsamp));
        maxsampbegin = std::max(maxsampbegin, pairs.back().isampbegin);
        minsampend = std::min(minsampend, pairs.back().isampend);
    }
    // Deliberately wider than its words: equality fails as well.
    if (2 * maxsampbegin >= nsamp) {
        return raise_failure("nsamp < 2*maxsampbegin", name);
    }
    // The test above leaves nothing for this one, which stands all the same.
    if (maxsampbegin > minsampend) {
        return raise_failure("maxsampbegin > minsampend", name);
    }

    // Each wheel stands as far out as the first sample allows, except that of a negative offset.
    if (std::any_of(pairs.begin(), pairs.end(),
                    [&](const WheelPair& pair) { return reach_of(pair) >= maxsampbegin; })) {
        return raise_failure(
            "xWheelOffsets holds a negative offset that reaches outside the stretch", name,
            vialto_code_request);
    }

    // The one place where sample numbers become indexes.
    iBeginElem = static_cast<std::int32_t>(maxsampbegin - 1);
    iEndElem = static_cast<std::int32_t>(minsampend - 1);

    const auto wheel_pairs = static_cast<float>(xWheelOffsets.size());
    const float c = 1.0F / (wheel_pairs + wheel_pairs);
    const auto end = static_cast<std::size_t>(minsampend);
    for (auto first = static_cast<std::size_t>(iBeginElem); first < end; first += block_length) {
        const std::size_t count = std::min(block_length, end - first);
        const float* y = &xProfile[first];
        Block sums{};
        for (const WheelPair& pair : pairs) {
            add_wheels(pair, y, count, sums);
        }
        float* trace = &xPGTrace[first];
        for (std::size_t i = 0; i < count; ++i) {
            trace[i] = y[i] - sums[i] * c;
        }
    }
    return success;
}

} // namespace vialto
