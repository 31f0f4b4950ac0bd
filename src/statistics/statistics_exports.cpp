// The exported histogram; its contract stands in vialto/vialto.h.
#include <cstddef>
#include <span>
#include <vector>

#include "frame/analysis_frame.hpp"
#include "statistics/histgrm_drv.hpp"
#include "vialto/vialto.h"

using namespace vialto;

namespace {

// The values whose mask entry is 0, in their order.
std::vector<float> unmasked(std::span<const float> values, std::span<const std::int32_t> mask) {
    std::vector<float> kept(values.size());
    std::size_t count = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        kept[count] = values[i];
        count += mask[i] == 0 ? 1 : 0;
    }
    kept.resize(count);
    return kept;
}

} // namespace

int32_t VIALTO_CALL histgrm_dlldrv(int32_t ifExcludeLeaveout, int32_t iNumClasses,
                                   int32_t iSizeDataArray, float xLow, float xHigh, float xStep,
                                   float xThreshold, const float* xDataArray,
                                   const int32_t* iMaskArray, float* xHistogram,
                                   float* xAboveThreshold, tEvent* event) {
    const bool masked = ifExcludeLeaveout == vialto_yes;
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.array("xDataArray", xDataArray, iSizeDataArray);
        if (masked) {
            check.array("iMaskArray", iMaskArray, iSizeDataArray);
        }
        check.array("xHistogram", xHistogram, iNumClasses);
        check.address("xAboveThreshold", xAboveThreshold);
    };
    const auto drive = [&] {
        const std::span<const float> all = host_array(xDataArray, iSizeDataArray);
        const std::vector<float> kept =
            masked ? unmasked(all, host_array(iMaskArray, iSizeDataArray)) : std::vector<float>{};
        return histgrm_drv({iNumClasses, xLow, xHigh, xStep}, xThreshold, masked ? kept : all,
                           host_array(xHistogram, iNumClasses), *xAboveThreshold);
    };
    return run_export({.name = "histgrm_dlldrv", .diagnostic_file = DiagnosticFile::none}, event,
                      {.check_arguments = check_arguments, .drive = drive});
}
