#include "filters/detrend.hpp"

#include <cstdint>

#include "filters/slope.hpp"

namespace vialto {

ReturnCode detrend(std::span<const float> xProfile, float xStepSize, tFiltCon& settings,
                   std::span<float> xFiltered) {
    const auto count = static_cast<std::int32_t>(xProfile.size());
    const float slope = lrslop(xProfile); // per sample
    const float middle = static_cast<float>(count) * 0.5F;
    const float* const p = xProfile.data();
    float* const y = xFiltered.data();
    for (std::int32_t i = 0; i < count; ++i) {
        // The abscissae of the line count from 1.
        y[i] = p[i] + (middle - static_cast<float>(i + 1)) * slope;
    }
    if (settings.iOutType == idx_filtouttyp_slope) {
        covertslope_differences(xFiltered, xStepSize);
    }
    settings.iBeginElemIdx = 0;
    settings.iEndElemIdx = count - 1;
    return success;
}

} // namespace vialto
