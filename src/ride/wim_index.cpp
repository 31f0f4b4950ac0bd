#include "ride/wim_index.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "filters/filtcon.hpp"
#include "ride/continuous_statistic.hpp"
#include "ride/shroud.hpp"
#include "vialto/vialto.h"

namespace vialto {

namespace {

constexpr std::string_view name = "compute_wimindex";
constexpr float bridging_base_length = 0.25F; // m
constexpr float longest_wavelength = 16.45F;  // m
constexpr float shortest_wavelength = 1.07F;  // m
constexpr float weighting_power = 2.0F;
constexpr float back_shroud_distance = 15.24F; // m; weighs samples that lie before
constexpr float fore_shroud_distance = 1.524F; // m; weighs samples that come after

// Without bridging a moving average of which no stage runs: a copy.
tFiltCon bridging_settings(std::int32_t iBridgingFilter) {
    tFiltCon settings{};
    settings.iMainFilterType =
        iBridgingFilter == vialto_yes ? idx_filttyp_bridge : idx_filttyp_mvgavg;
    settings.iSubFilterType = idx_subfilttyp_none;
    settings.iOutType = idx_filtouttyp_elevation;
    settings.xShortWavelength = bridging_base_length;
    return settings;
}

tFiltCon band_pass_settings() {
    tFiltCon settings{};
    settings.iMainFilterType = idx_filttyp_bwfilt;
    settings.iSubFilterType = idx_subfilttyp_bandpass;
    settings.iOutType = idx_filtouttyp_slope;
    settings.xLongWavelength = longest_wavelength;
    settings.xShortWavelength = shortest_wavelength;
    return settings;
}

// Deliberately asked for behind the filters.
ReturnCode check_report_type(std::int32_t i_reptype) {
    switch (i_reptype) {
    case continuous_report:
        return success;
    case normal_report:
        return raise_failure("WIM error index should not be normal ride stats analysis", name,
                             vialto_code_request);
    case segmented_report:
        return raise_failure("WIM error index should not be segemeted ride stats analysis", name,
                             vialto_code_request);
    default:
        return raise_failure("i_reptype is not within range", name);
    }
}

} // namespace

ReturnCode compute_wimindex(const RideRequest& request, const RideTrack& track) {
    if (track.xDataArray.size() > vialto_mxWIM) {
        return raise_failure("Current JQV is not suitable to handle large data set. Sorry for the "
                             "inconvenience",
                             name, vialto_code_request);
    }
    tFiltCon bridging = bridging_settings(request.if250mmFilter);
    std::vector<float> filtered(track.xDataArray.size());
    if (filtcon_drv(track.xDataArray, request.xStepSize, bridging, filtered) != success) {
        return pass_failure(name);
    }
    // The valid samples are taken from the start of the array, wherever their range lies in it:
    // deliberate. A window of the bridge filter that is longer than the profile leaves none.
    filtered.resize(
        static_cast<std::size_t>(std::max(bridging.iEndElemIdx - bridging.iBeginElemIdx + 1, 0)));
    tFiltCon band_pass = band_pass_settings();
    if (filtcon_drv(filtered, request.xStepSize, band_pass, filtered) != success) {
        return pass_failure(name);
    }
    if (check_report_type(request.i_reptype) != success) {
        return failure;
    }
    // The statistic of a sample alone. The request's base length smooths nothing: deliberate.
    raise_to_power(filtered, weighting_power);
    take_root(filtered, weighting_power);
    shroud(filtered, request.xStepSize, track.xOutput.first(filtered.size()), back_shroud_distance,
           fore_shroud_distance);
    std::fill(track.xOutput.begin() + static_cast<std::ptrdiff_t>(filtered.size()),
              track.xOutput.end(), 0.0F);
    return success;
}

} // namespace vialto
