#include "ride/ride_stats.hpp"

#include <cmath>
#include <string_view>
#include <vector>

#include "filters/filtcon.hpp"
#include "ride/continuous_statistic.hpp"
#include "ride/overall_statistic.hpp"
#include "ride/segment_statistic.hpp"
#include "ride/wim_index.hpp"

namespace vialto {

namespace {

ReturnCode compute_iri(const RideRequest& request, const RideOutput& output) {
    constexpr std::string_view name = "compute_iri";
    tFiltCon settings = quarter_car_settings(request.i_rideindexsel, request.if250mmFilter);
    std::vector<float> filtered(request.xDataArray.size());
    float statistic = 0.0F;
    const ReturnCode filter_code =
        filtcon_drv(request.xDataArray, request.xStepSize, settings, filtered, statistic);
    if (request.i_reptype == normal_report) {
        output.xOutput.front() = statistic; // what a failure leaves to the host
    }
    if (filter_code != success) {
        return pass_failure(name);
    }
    // The filter's statistic serves only for this test.
    if (std::isnan(statistic)) {
        return raise_failure("the calculated IRI is not a number", name);
    }
    switch (request.i_reptype) {
    case normal_report:
        normal_pi(request, settings, filtered, output);
        return success;
    case segmented_report:
        return segmented_pi(request, settings, filtered, output) == success ? success
                                                                            : pass_failure(name);
    case continuous_report:
        return postproc_conpi(request, settings.xPowerWeighting, filtered, output.xOutput) ==
                       success
                   ? success
                   : pass_failure(name);
    default:
        return raise_failure("i_reptype is not within range", name);
    }
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

ReturnCode ride_stats(const RideRequest& request, const RideOutput& output) {
    constexpr std::string_view name = "ride_stats";
    switch (request.i_rideindexsel) {
    case idx_ridests_IRI:
    case idx_ridests_RN:
        return compute_iri(request, output) == success ? success : pass_failure(name);
    case idx_ridests_WIM:
        return compute_wimindex(request, output) == success ? success : pass_failure(name);
    case idx_ridests_TwoRN:
        return raise_failure("two RN is no longer supported", name);
    default:
        return raise_failure("i_rideindexsel is not within range", name);
    }
}

} // namespace vialto
