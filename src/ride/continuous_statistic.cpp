#include "ride/continuous_statistic.hpp"

#include <algorithm>
#include <cmath>

#include "filters/filtcon.hpp"
#include "filters/moving_average.hpp"
#include "numeric/rounding.hpp"

namespace vialto {

void raise_to_power(std::span<float> y, float p) {
    for (float& value : y) {
        value = std::fabs(value);
    }
    if (p > 1.0F) {
        for (float& value : y) {
            value = value * value;
        }
    }
}

void take_root(std::span<float> y, float p) {
    if (p > 1.0F) {
        for (float& value : y) {
            value = std::sqrt(value > 0.0F ? value : 0.0F);
        }
    }
}

bool is_smoothed(float xBaseLength, float xStepSize) {
    return truncate(xBaseLength / xStepSize) > 1;
}

ReturnCode moving_statistic(std::span<float> y, float xStepSize, float xBaseLength, float p,
                            std::span<float> xOutput) {
    raise_to_power(y, p);
    if (is_smoothed(xBaseLength, xStepSize)) {
        tFiltCon settings = low_pass_settings(xBaseLength);
        if (filtcon_drv(y, xStepSize, settings, xOutput) != success) {
            return failure;
        }
    } else {
        std::copy(y.begin(), y.end(), xOutput.begin());
    }
    take_root(xOutput, p);
    return success;
}

ReturnCode postproc_conpi(const RideRequest& request, float p, std::span<float> y,
                          const RideTrack& track) {
    return moving_statistic(y, request.xStepSize, request.xBaseLength, p, track.xOutput) == success
               ? success
               : pass_failure("postproc_conpi");
}

} // namespace vialto
