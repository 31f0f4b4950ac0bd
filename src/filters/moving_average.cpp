#include "filters/moving_average.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "filters/slope.hpp"
#include "numeric/rounding.hpp"

namespace vialto {

namespace {

constexpr std::string_view routine_name = "mvgavg";

// One stage's box and the extension that it needs at either end, in samples.
struct Box {
    std::int32_t iBase;
    std::int32_t iHalf;
};

Box box_of(float base_length, float xStepSize) {
    const float samples = base_length / xStepSize;
    return {truncate(samples + 0.5F), truncate(samples * 0.5F + 0.5F)};
}

// The profile with `half` samples more at either end, on the lines through its first and last
// `half` samples.
std::vector<float> extended(std::span<const float> w, std::int32_t half) {
    const auto margin = static_cast<std::size_t>(half);
    std::vector<float> p(w.size() + 2 * margin);
    std::copy(w.begin(), w.end(), p.begin() + half);
    if (half == 0) {
        return p;
    }
    const float first = w.front();
    const float last = w.back();
    const float slope_left = lrslop(w.first(margin));
    const float slope_right = lrslop(w.last(margin));
    float* const left = p.data();
    float* const right = left + margin + w.size();
    for (std::int32_t k = 0; k < half; ++k) {
        left[k] = first - static_cast<float>(half - k) * slope_left;
        right[k] = last + static_cast<float>(k + 1) * slope_right;
    }
    return p;
}

// m(i) = mean of p(i) to p(i + base - 1), all counted from 0, by the update of m(i - 1).
//
// Each mean waits for the one before, but the updates do not: a block of them is written where the
// means will stand, and added up while the processor already divides for the next block.
void running_means(std::span<const float> p, std::size_t base, std::span<float> m) {
    constexpr std::size_t block = 64;
    const auto divisor = static_cast<float>(base);
    float mean = 0.0F;
    for (std::size_t i = 0; i < base; ++i) {
        mean += p[i];
    }
    mean /= divisor;
    m[0] = mean;
    for (std::size_t first = 1; first < m.size(); first += block) {
        const std::size_t count = std::min(block, m.size() - first);
        float* const updates = m.data() + first;
        const float* const leaving = p.data() + (first - 1);
        const float* const entering = leaving + base;
        for (std::size_t k = 0; k < count; ++k) {
            updates[k] = (entering[k] - leaving[k]) / divisor;
        }
        for (std::size_t k = 0; k < count; ++k) {
            mean += updates[k];
            updates[k] = mean;
        }
    }
}

} // namespace

void mvgavg_pass(std::span<float> w, std::int32_t iBase, std::int32_t iHalf, PassMode mode) {
    if (w.empty()) {
        return;
    }
    const std::int32_t half = std::max(iHalf, 0);
    const std::vector<float> p = extended(w, half);
    running_means(p, static_cast<std::size_t>(std::max(iBase, 0)), w);
    if (mode == PassMode::high_pass) {
        const float* const samples = p.data() + half;
        for (std::size_t i = 0; i < w.size(); ++i) {
            w[i] = samples[i] - w[i];
        }
    }
}

ReturnCode mvgavg(std::span<const float> xProfile, float xStepSize, tFiltCon& settings,
                  std::span<float> xFiltered) {
    const auto count = static_cast<std::int32_t>(xProfile.size());
    const std::size_t written = std::min(xProfile.size(), xFiltered.size());
    const bool band_pass = settings.iSubFilterType == idx_subfilttyp_bandpass;
    const bool high_pass = band_pass || settings.iSubFilterType == idx_subfilttyp_highpass;
    const bool low_pass = band_pass || settings.iSubFilterType == idx_subfilttyp_lowpass;

    if (low_pass && settings.xShortWavelength < 2.0F * xStepSize) {
        std::copy_n(xProfile.begin(), written, xFiltered.begin());
        settings.iBeginElemIdx = 0;
        settings.iEndElemIdx = count - 1;
        return success;
    }

    std::vector<float> w(xProfile.begin(), xProfile.end());
    if (high_pass) {
        const Box box = box_of(settings.xLongWavelength, xStepSize);
        if (count <= box.iBase) {
            return raise_failure(
                "hi-pass moving average base length is greater the sampling distance",
                routine_name);
        }
        mvgavg_pass(w, box.iBase, box.iHalf, PassMode::high_pass);
    }
    if (low_pass) {
        const Box box = box_of(settings.xShortWavelength, xStepSize);
        if (count <= box.iBase) {
            return raise_failure("moving average base length is greater the sampling distance",
                                 routine_name);
        }
        mvgavg_pass(w, box.iBase, box.iHalf, PassMode::low_pass);
    }
    std::copy_n(w.begin(), written, xFiltered.begin());
    if (settings.iOutType == idx_filtouttyp_slope) {
        covertslope_differences(xFiltered, xStepSize);
    }
    settings.iBeginElemIdx = 0;
    settings.iEndElemIdx = count - 1;
    return success;
}

} // namespace vialto
