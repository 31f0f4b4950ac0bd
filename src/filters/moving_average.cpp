#include "filters/moving_average.hpp"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>
#include <vector>

#include "filters/slope.hpp"
#include "numeric/rounding.hpp"

namespace vialto {

Box box_of(float base_length, float xStepSize) {
    const float samples = base_length / xStepSize;
    return {truncate(samples + 0.5F), truncate(samples * 0.5F + 0.5F)};
}

void extend_ends(std::span<const float> x, std::span<float> left, std::span<float> right) {
    const std::size_t half = left.size();
    const float slope_left = lrslop(x.first(half));
    const float slope_right = lrslop(x.last(half));
    for (std::size_t k = 0; k < half; ++k) {
        left[k] = x.front() - static_cast<float>(half - k) * slope_left;
        right[k] = x.back() + static_cast<float>(k + 1) * slope_right;
    }
}

float box_mean(std::span<const float> left, std::span<const float> right) {
    const float sum = std::accumulate(left.begin(), left.end(), 0.0F);
    return std::accumulate(right.begin(), right.end(), sum) /
           static_cast<float>(left.size() + right.size());
}

// Each mean waits for the addition before it, and for nothing else: the divisions run ahead.
void continue_means(std::span<const float> leaving, std::span<const float> entering,
                    std::size_t base, float mean, std::span<float> m) {
    for (std::size_t i = 0; i < m.size(); ++i) {
        mean += (entering[i] - leaving[i]) / static_cast<float>(base);
        m[i] = mean;
    }
}

void mvgavg_pass(std::span<const float> x, const Box& box, PassMode mode, std::span<float> y) {
    const std::size_t count = x.size();
    if (count == 0) {
        return;
    }
    const auto base = static_cast<std::size_t>(std::max(box.iBase, 0));
    const auto half = static_cast<std::size_t>(std::max(box.iHalf, 0));
    const std::size_t ahead = base - half; // samples of the first box that lie in x
    std::vector<float> extensions(2 * half);
    const std::span<float> left = std::span(extensions).first(half);
    const std::span<float> right = std::span(extensions).last(half);
    extend_ends(x, left, right);

    y[0] = box_mean(left, x.first(ahead));
    std::size_t known = 1; // means
    const auto continue_to = [&](std::size_t end, std::span<const float> leaving,
                                 std::span<const float> entering) {
        const std::span<float> m = y.subspan(known, end - known);
        continue_means(leaving, entering, base, y[known - 1], m);
        known = end;
    };
    // The boxes that move out of the left extension, those within x, and those that move into the
    // right extension.
    continue_to(half + 1, left, x.subspan(ahead));
    continue_to(std::min(count - ahead + 1, count), x, x.subspan(base));
    continue_to(count, x.subspan(count - base), right);
    if (mode == PassMode::high_pass) {
        for (std::size_t i = 0; i < count; ++i) {
            y[i] = x[i] - y[i];
        }
    }
}

tFiltCon low_pass_settings(float xShortWavelength) {
    tFiltCon settings{};
    settings.iMainFilterType = idx_filttyp_mvgavg;
    settings.iSubFilterType = idx_subfilttyp_lowpass;
    settings.iOutType = idx_filtouttyp_elevation;
    settings.xShortWavelength = xShortWavelength;
    return settings;
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
    if (band_pass) {
        std::vector<float> high_passed(xProfile.size());
        mvgavg_pass(xProfile, high, PassMode::high_pass, high_passed);
        mvgavg_pass(high_passed, low, PassMode::low_pass, xFiltered);
    } else if (high_pass) {
        mvgavg_pass(xProfile, high, PassMode::high_pass, xFiltered);
    } else if (low_pass) {
        mvgavg_pass(xProfile, low, PassMode::low_pass, xFiltered);
    } else {
        std::copy(xProfile.begin(), xProfile.end(), xFiltered.begin());
    }
    if (settings.iOutType == idx_filtouttyp_slope) {
        covertslope_differences(xFiltered, xStepSize);
    }
    settings.iBeginElemIdx = 0;
    settings.iEndElemIdx = count - 1;
    return success;
}

} // namespace vialto
