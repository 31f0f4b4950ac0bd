#include "ride/ride_stats.hpp"

#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <vector>

#include "filters/filtcon.hpp"
#include "ride/continuous_statistic.hpp"
#include "ride/overall_statistic.hpp"
#include "ride/segment_statistic.hpp"
#include "ride/wim_index.hpp"

namespace vialto {

namespace {

// What compute_iri does with the filtered slope of a track.
ReturnCode report(const RideRequest& request, const tFiltCon& settings,
                  const QuarterCarTrack& filtered, const RideTrack& track) {
    constexpr std::string_view name = "compute_iri";
    // The filter's statistic serves only for this test.
    if (std::isnan(filtered.xQcarStat)) {
        return raise_failure("the calculated IRI is not a number", name);
    }
    switch (request.i_reptype) {
    case normal_report:
        normal_pi(request, settings, filtered.xFiltered, track);
        return success;
    case segmented_report:
        return segmented_pi(request, settings, filtered.xFiltered, track) == success
                   ? success
                   : pass_failure(name);
    case continuous_report:
        return postproc_conpi(request, settings.xPowerWeighting, filtered.xFiltered, track) ==
                       success
                   ? success
                   : pass_failure(name);
    default:
        return raise_failure("i_reptype is not within range", name);
    }
}

ReturnCode compute_iri(const RideRequest& request, std::span<const RideTrack> tracks) {
    tFiltCon settings = quarter_car_settings(request.i_rideindexsel, request.if250mmFilter);
    // One block, which a memory allocator is the likelier to keep from one call to the next.
    const std::size_t count = tracks.front().xDataArray.size();
    std::vector<float> slopes(tracks.size() * count);
    std::array<QuarterCarTrack, most_tracks> room;
    const std::span<QuarterCarTrack> filtered = std::span(room).first(tracks.size());
    for (std::size_t k = 0; k < tracks.size(); ++k) {
        filtered[k] = {tracks[k].xDataArray, std::span(slopes).subspan(k * count, count)};
    }
    const ReturnCode filter_code = filtcon_drv(filtered, request.xStepSize, settings);
    for (std::size_t k = 0; k < tracks.size(); ++k) {
        if (request.i_reptype == normal_report) {
            tracks[k].xOutput.front() = filtered[k].xQcarStat; // what a failure leaves behind
        }
        if (filter_code != success) {
            return pass_failure("compute_iri");
        }
        if (report(request, settings, filtered[k], tracks[k]) != success) {
            return failure;
        }
    }
    return success;
}

} // namespace

tFiltCon quarter_car_settings(std::int32_t i_rideindexsel, std::int32_t if250mmFilter) {
    constexpr float simulation_speed = 80.46F; // km/h; deliberately not 80, the IRI filter's own
    const bool is_iri = i_rideindexsel == idx_ridests_IRI;
    tFiltCon settings{};
    settings.iMainFilterType = is_iri ? idx_filttyp_IRI : idx_filttyp_RN;
    settings.iOutType = idx_filtouttyp_slope;
    settings.if250mmFilter = if250mmFilter;
    settings.xSimuVelocity = simulation_speed;
    settings.xPowerWeighting = is_iri ? 1.0F : 2.0F;
    return settings;
}

ReturnCode ride_stats(const RideRequest& request, std::span<const RideTrack> tracks) {
    constexpr std::string_view name = "ride_stats";
    switch (request.i_rideindexsel) {
    case idx_ridests_IRI:
    case idx_ridests_RN:
        return compute_iri(request, tracks) == success ? success : pass_failure(name);
    case idx_ridests_WIM:
        return compute_wimindex(request, tracks.front()) == success ? success : pass_failure(name);
    case idx_ridests_TwoRN:
        return raise_failure("two RN is no longer supported", name);
    default:
        return raise_failure("i_rideindexsel is not within range", name);
    }
}

} // namespace vialto
