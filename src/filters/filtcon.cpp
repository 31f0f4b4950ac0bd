#include "filters/filtcon.hpp"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "filters/anti_smoothing.hpp"
#include "filters/bridge.hpp"
#include "filters/butterworth.hpp"
#include "filters/detrend.hpp"
#include "filters/moving_average.hpp"

namespace vialto {

namespace {

ReturnCode copy_profile(std::span<const float> xProfile, tFiltCon& settings,
                        std::span<float> xFiltered) {
    std::copy(xProfile.begin(), xProfile.end(), xFiltered.begin());
    settings.iBeginElemIdx = 0;
    settings.iEndElemIdx = static_cast<std::int32_t>(xProfile.size()) - 1;
    return success;
}

constexpr std::string_view name = "filtcon_drv";

} // namespace

ReturnCode filtcon_drv(std::span<const float> xProfile, float xStepSize, tFiltCon& settings,
                       std::span<float> xFiltered, float& xQcarStat) {
    xQcarStat = 0.0F;
    ReturnCode code = success;
    switch (settings.iMainFilterType) {
    case idx_filttyp_none:
        code = copy_profile(xProfile, settings, xFiltered);
        break;
    case idx_filttyp_mvgavg:
        code = mvgavg(xProfile, xStepSize, settings, xFiltered);
        break;
    case idx_filttyp_IRI:
    case idx_filttyp_RN: {
        QuarterCarTrack track{xProfile, xFiltered};
        code = qcarfilt_drv({&track, 1}, xStepSize, settings);
        xQcarStat = track.xQcarStat;
        break;
    }
    case idx_filttyp_bwfilt:
        code = bwfilt_drv(xProfile, xStepSize, settings, xFiltered);
        break;
    case idx_filttyp_antismooth:
        code = antismooth(xProfile, xStepSize, settings, xFiltered);
        break;
    case idx_filttyp_detrend:
        code = detrend(xProfile, xStepSize, settings, xFiltered);
        break;
    case idx_filttyp_bridge:
        code = bridge_filter_drv(xProfile, xStepSize, settings, xFiltered);
        break;
    default:
        return raise_failure("Illegal Main filter type", name);
    }
    return code == success ? success : pass_failure(name);
}

ReturnCode filtcon_drv(std::span<QuarterCarTrack> tracks, float xStepSize, tFiltCon& settings) {
    return qcarfilt_drv(tracks, xStepSize, settings) == success ? success : pass_failure(name);
}

} // namespace vialto
