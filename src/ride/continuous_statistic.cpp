#include "ride/continuous_statistic.hpp"

#include <algorithm>
#include <cmath>

#include "filters/filtcon.hpp"
#include "numeric/rounding.hpp"

namespace vialto {

namespace {

// The index fields stay as they are.
void refill_for_moving_average(tFiltCon& record, float xBaseLength) {
    const std::int32_t iBeginElemIdx = record.iBeginElemIdx;
    const std::int32_t iEndElemIdx = record.iEndElemIdx;
    record = {};
    record.iMainFilterType = idx_filttyp_mvgavg;
    record.iSubFilterType = idx_subfilttyp_lowpass;
    record.iOutType = idx_filtouttyp_elevation;
    record.if250mmFilter = vialto_yes; // not read by this filter
    record.xShortWavelength = xBaseLength;
    record.iBeginElemIdx = iBeginElemIdx;
    record.iEndElemIdx = iEndElemIdx;
}

} // namespace

ReturnCode moving_statistic(std::span<float> y, float xStepSize, float xBaseLength, float p,
                            tFiltCon& record, std::span<float> xOutput) {
    for (float& value : y) {
        value = std::fabs(value);
    }
    if (p > 1.0F) {
        for (float& value : y) {
            value = value * value;
        }
    }
    refill_for_moving_average(record, xBaseLength);
    const std::int32_t iBase = truncate(xBaseLength / xStepSize);
    if (iBase > 1) {
        if (filtcon_drv(y, xStepSize, record, xOutput) != success) {
            return failure;
        }
    } else {
        std::copy(y.begin(), y.end(), xOutput.begin());
    }
    if (p > 1.0F) {
        // The line extensions of the moving average can give values below zero at an end.
        for (float& value : xOutput) {
            value = std::sqrt(value > 0.0F ? value : 0.0F);
        }
    }
    return success;
}

ReturnCode postproc_conpi(const RideRequest& request, float p, std::span<float> y,
                          std::span<float> xOutput, std::int32_t iSkipMovingAverage) {
    tFiltCon record{};
    const float xBaseLength = iSkipMovingAverage == vialto_yes ? 0.0F : request.xBaseLength;
    return moving_statistic(y, request.xStepSize, xBaseLength, p, record, xOutput) == success
               ? success
               : pass_failure("postproc_conpi");
}

} // namespace vialto
