#include "filters/anti_smoothing.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "filters/slope.hpp"
#include "numeric/rounding.hpp"

namespace vialto {

namespace {

// Element i of y, from 0, becomes p[i + shift] less the mean of p[i + 1] to p[i + length].
void subtract_window_means(std::span<const float> p, std::size_t length, std::size_t shift,
                           std::span<float> y) {
    const auto divisor = static_cast<float>(length);
    float sum = 0.0F;
    for (std::size_t i = 1; i <= length; ++i) {
        sum += p[i];
    }
    for (std::size_t i = 0; i < y.size(); ++i) {
        if (i > 0) {
            sum = sum + p[i + length] - p[i];
        }
        y[i] = p[i + shift] - sum / divisor;
    }
}

} // namespace

ReturnCode antismooth(std::span<const float> xProfile, float xStepSize, tFiltCon& settings,
                      std::span<float> xFiltered) {
    constexpr std::string_view name = "antismooth";
    const auto count = static_cast<std::int32_t>(xProfile.size());
    const float samples = settings.xShortWavelength / xStepSize;
    std::int32_t length = nint(samples + 0.5F);
    std::int32_t shift = nint(samples * 0.5F + 0.5F);
    if (length == 1) {
        return raise_failure("the baselength is only 1 sampling interval- check your input", name);
    }
    if (count <= length) {
        return raise_failure("the baselength greater than the profile length - check your input",
                             name);
    }
    if (length < 1) {
        length = 0;
        shift = 0;
    }
    const std::int32_t filtered_count = count - length;
    const std::span<float> y = xFiltered.first(static_cast<std::size_t>(filtered_count));
    subtract_window_means(xProfile, static_cast<std::size_t>(length),
                          static_cast<std::size_t>(shift), y);
    if (settings.iOutType == idx_filtouttyp_slope) {
        covertslope_differences(y, xStepSize);
    }
    settings.iBeginElemIdx = shift;
    settings.iEndElemIdx = filtered_count - 1;
    std::fill_n(xFiltered.begin(), shift, 0.0F);
    std::fill(xFiltered.begin() + filtered_count, xFiltered.end(), 0.0F);
    return success;
}

} // namespace vialto
