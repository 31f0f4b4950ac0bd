#include "filters/moving_average.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "filters/slope.hpp"
#include "numeric/rounding.hpp"

namespace vialto {

namespace {

// Room for the extended profile and one place more, which the last update of the mean reads and
// nothing uses.
std::size_t work_size(std::size_t count, std::int32_t half) {
    return count + 2 * static_cast<std::size_t>(half) + 1;
}

// Moves the profile `half` places up and continues it at either end by `half` samples on the lines
// through its first and its last `half` samples.
void extend(std::vector<float>& w, std::int32_t half) {
    const std::size_t count = w.size();
    const auto margin = static_cast<std::size_t>(half);
    w.resize(work_size(count, half));
    if (half == 0) {
        return;
    }
    std::copy_backward(w.begin(), w.begin() + static_cast<std::ptrdiff_t>(count),
                       w.begin() + static_cast<std::ptrdiff_t>(count) + half);
    extend_ends(std::span(w).first(count + 2 * margin), margin);
}

// By how much the mean of p(i) to p(i + base - 1) rises when the box moves on by one sample.
float mean_update(std::span<const float> p, std::size_t i, std::size_t base) {
    return (p[i + base] - p[i]) / static_cast<float>(base);
}

// Puts the result for sample i, from 0, to w[i]: the mean of w[i] to w[i + base - 1], or, as a
// high-pass, w[i + half] less that mean. No result lands on an element that is still to be read.
//
// Each mean waits for the addition before it, and for nothing else: the divisions run ahead.
void run_box(std::span<float> w, std::size_t count, std::size_t base, std::size_t half,
             PassMode mode) {
    const bool high_pass = mode == PassMode::high_pass;
    float mean = box_mean(w.first(base));
    for (std::size_t i = 0; i < count; ++i) {
        const float update = mean_update(w, i, base);
        w[i] = high_pass ? w[i + half] - mean : mean;
        mean += update;
    }
}

} // namespace

Box box_of(float base_length, float xStepSize) {
    const float samples = base_length / xStepSize;
    return {truncate(samples + 0.5F), truncate(samples * 0.5F + 0.5F)};
}

void extend_ends(std::span<float> p, std::size_t half) {
    if (half == 0) {
        return;
    }
    const std::span<const float> profile = p.subspan(half, p.size() - 2 * half);
    const float first = profile.front();
    const float last = profile.back();
    const float slope_left = lrslop(profile.first(half));
    const float slope_right = lrslop(profile.last(half));
    float* const left = p.data();
    float* const right = left + half + profile.size();
    for (std::size_t k = 0; k < half; ++k) {
        left[k] = first - static_cast<float>(half - k) * slope_left;
        right[k] = last + static_cast<float>(k + 1) * slope_right;
    }
}

float box_mean(std::span<const float> box) {
    float sum = 0.0F;
    for (const float sample : box) {
        sum += sample;
    }
    return sum / static_cast<float>(box.size());
}

void continue_means(std::span<const float> p, std::size_t base, float mean, std::span<float> m) {
    for (std::size_t i = 0; i < m.size(); ++i) {
        mean += mean_update(p, i, base);
        m[i] = mean;
    }
}

void mvgavg_pass(std::vector<float>& w, std::int32_t iBase, std::int32_t iHalf, PassMode mode) {
    const std::size_t count = w.size();
    if (count == 0) {
        return;
    }
    const std::int32_t base = std::max(iBase, 0);
    const std::int32_t half = std::max(iHalf, 0);
    extend(w, half);
    run_box(w, count, static_cast<std::size_t>(base), static_cast<std::size_t>(half), mode);
    w.resize(count);
}

ReturnCode mvgavg(std::span<const float> xProfile, float xStepSize, tFiltCon& settings,
                  std::span<float> xFiltered) {
    constexpr std::string_view name = "mvgavg";
    const auto count = static_cast<std::int32_t>(xProfile.size());
    const bool band_pass = settings.iSubFilterType == idx_subfilttyp_bandpass;
    const bool high_pass = band_pass || settings.iSubFilterType == idx_subfilttyp_highpass;
    const bool low_pass = band_pass || settings.iSubFilterType == idx_subfilttyp_lowpass;

    if (low_pass && settings.xShortWavelength < 2.0F * xStepSize) {
        std::copy(xProfile.begin(), xProfile.end(), xFiltered.begin());
        settings.iBeginElemIdx = 0;
        settings.iEndElemIdx = count - 1;
        return success;
    }

    const Box high = high_pass ? box_of(settings.xLongWavelength, xStepSize) : Box{};
    if (high_pass && count <= high.iBase) {
        return raise_failure("hi-pass moving average base length is greater the sampling distance",
                             name);
    }
    const Box low = low_pass ? box_of(settings.xShortWavelength, xStepSize) : Box{};
    if (low_pass && count <= low.iBase) {
        return raise_failure("moving average base length is greater the sampling distance", name);
    }
    std::vector<float> w;
    w.reserve(work_size(xProfile.size(), std::max({high.iHalf, low.iHalf, 0})));
    w.assign(xProfile.begin(), xProfile.end());
    if (high_pass) {
        mvgavg_pass(w, high.iBase, high.iHalf, PassMode::high_pass);
    }
    if (low_pass) {
        mvgavg_pass(w, low.iBase, low.iHalf, PassMode::low_pass);
    }
    std::copy(w.begin(), w.end(), xFiltered.begin());
    if (settings.iOutType == idx_filtouttyp_slope) {
        covertslope_differences(xFiltered, xStepSize);
    }
    settings.iBeginElemIdx = 0;
    settings.iEndElemIdx = count - 1;
    return success;
}

} // namespace vialto
