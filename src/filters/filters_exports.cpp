// The exported filter; its contract stands in vialto/vialto.h.
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "filters/filtcon.hpp"
#include "frame/analysis_frame.hpp"
#include "vialto/vialto.h"

using namespace vialto;

namespace {

tFiltCon antismooth_settings(float xBaseLength) {
    tFiltCon settings{};
    settings.iMainFilterType = idx_filttyp_antismooth;
    settings.iOutType = idx_filtouttyp_elevation;
    settings.xShortWavelength = xBaseLength;
    return settings;
}

// Distance, elevation and filtered elevation of each valid element.
void list_profiles(DiagnosticText& text, const tFiltCon& settings, float xStepSize,
                   std::span<const float> profile, std::span<const float> filtered) {
    for (std::int32_t i = settings.iBeginElemIdx; i <= settings.iEndElemIdx; ++i) {
        const auto element = static_cast<std::size_t>(i);
        text.record(static_cast<float>(i) * xStepSize, profile[element], filtered[element]);
    }
}

} // namespace

int32_t VIALTO_CALL antismth_dlldrv(float xStepSize, float xBaseLength, int32_t iSizeDataArray,
                                    float* xProfile, int32_t* iBeginElemIdx, int32_t* iEndElemIdx,
                                    tEvent* event) {
    const std::span<float> profile = host_array(xProfile, iSizeDataArray);
    tFiltCon settings = antismooth_settings(xBaseLength);
    std::vector<float> filtered;
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.sample_interval("xStepSize", xStepSize);
        // Just below 0.0 the half that the window adds rounds to 0.5, as for 0.0 itself.
        if (!(xBaseLength / xStepSize + 0.5F >= 0.5F)) {
            check.refuse("xBaseLength", " is negative or not a number");
        }
        check.array("xProfile", xProfile, iSizeDataArray);
        check.address("iBeginElemIdx", iBeginElemIdx);
        check.address("iEndElemIdx", iEndElemIdx);
    };
    const auto drive = [&] {
        filtered.resize(profile.size());
        return filtcon_drv(profile, xStepSize, settings, filtered);
    };
    const auto log_results = [&](DiagnosticText& text) {
        list_profiles(text, settings, xStepSize, profile, filtered);
    };
    const auto hand_over = [&] {
        for (std::size_t i = 0; i < profile.size(); ++i) {
            profile[i] = std::fabs(filtered[i]);
        }
        *iBeginElemIdx = settings.iBeginElemIdx;
        *iEndElemIdx = settings.iEndElemIdx;
    };
    return run_export(
        {.name = "antismth_dlldrv", .diagnostic_file = DiagnosticFile::opened_after_success}, event,
        {.check_arguments = check_arguments,
         .drive = drive,
         .log_results = log_results,
         .hand_over = hand_over});
}
