#include "grinding/mustgrind.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "filters/quarter_car.hpp"
#include "grinding/evaluate_impact.hpp"
#include "grinding/grindsimu.hpp"
#include "numeric/rounding.hpp"
#include "ride/ride_drv.hpp"
#include "ride/two_channel_rn.hpp"

namespace vialto {

namespace {

// What the machine would cut if it ran over the whole road.
ReturnCode material_takenout_area(const MustGrindRequest& request,
                                  std::span<std::int32_t> iGrindFlags) {
    std::vector<float> xWork(request.xProfile.begin(), request.xProfile.end());
    tGrindSpot whole_road{};
    whole_road.iNumPasses = 1;
    whole_road.iDirection[0] = idx_grinddir_higher;
    whole_road.iEnd = static_cast<std::int32_t>(xWork.size()) - 1;
    return grindsimu(request.xStepSize, {&whole_road, 1}, request.setup, xWork, iGrindFlags) ==
                   success
               ? success
               : pass_failure("material_takenout_area");
}

// The steps, as far as none of them fails.
ReturnCode run_steps(const MustGrindRequest& request, std::span<std::int32_t> iGrindFlags) {
    const tMustGrindCfg& cfg = request.cfg;
    const auto [drops_short, joins_close, tries_each] = cfg.ib_grindopt;
    // Filled by tossout_shortgrindspots alone: without it the later steps find no spot.
    SpotList spots;
    if (material_takenout_area(request, iGrindFlags) != success) {
        return failure;
    }
    if (drops_short == vialto_yes &&
        tossout_shortgrindspots(cfg.x_grindlength_min, request.xStepSize, iGrindFlags, spots) !=
            success) {
        return failure;
    }
    if (joins_close == vialto_yes) {
        merge_closegrindspots(cfg.x_grindgap_min, request.xStepSize, iGrindFlags, spots);
    }
    std::vector<float> xRideBefore(request.xProfile.size());
    std::vector<Spot> tOutOfSpec;
    if (out_of_spec_spots(request, xRideBefore, tOutOfSpec) != success) {
        return failure;
    }
    return tries_each == vialto_yes
               ? evaluate_impact(request, xRideBefore, tOutOfSpec, iGrindFlags, spots)
               : success;
}

} // namespace

ReturnCode admit_selector(std::int32_t iRideIndexType, std::int32_t& admitted) {
    constexpr std::string_view name = routine_of_export;
    admitted = iRideIndexType;
    switch (iRideIndexType) {
    case idx_ridests_None:
        return raise_failure("Ride Index None is not allowed in the RideStatCont analysis", name);
    case idx_ridests_IRI:
    case idx_ridests_RN:
    case idx_ridests_TwoRN: // refused by the ride statistic itself
    case idx_ridests_WIM:
        return success;
    case idx_ridests_HRI:
        admitted = idx_ridests_IRI;
        return success;
    default:
        return raise_failure("Ride Index is un-defined", name);
    }
}

ReturnCode admit_selector_2chan(std::int32_t iRideIndexType, std::int32_t& admitted) {
    constexpr std::string_view name = routine_of_export;
    admitted = iRideIndexType;
    switch (iRideIndexType) {
    case idx_ridests_None:
        return raise_failure(
            "Ride Index None is not allowed in the mustgrind_2chan_dlldrv analysis", name);
    case idx_ridests_IRI:
        return raise_failure(
            "idx_ridests_IRI is not allowed in the mustgrind_2chan_dlldrv analysis", name);
    case idx_ridests_RN:
    case idx_ridests_TwoRN: // the threshold is converted, and RN runs
        return success;
    case idx_ridests_HRI:
    case idx_ridests_MRI:
        admitted = idx_ridests_IRI;
        return success;
    default:
        return raise_failure("Ride Index is un-defined", name);
    }
}

ReturnCode mustgrind(const MustGrindRequest& request, std::span<std::int32_t> iGrindFlags) {
    std::fill(iGrindFlags.begin(), iGrindFlags.end(), 0);
    return run_steps(request, iGrindFlags) == success ? success : pass_failure("mustgrind");
}

ReturnCode mustgrind_2chan(float xStepSize, const tMustGrindCfg& cfg, const tGrinderSetup& setup,
                           std::span<const float> xProfile1, std::span<const float> xProfile2,
                           std::span<std::int32_t> iGrindFlags) {
    tMustGrindCfg track_cfg = cfg;
    if (cfg.iRideIndexType == idx_ridests_TwoRN) {
        track_cfg.iRideIndexType = idx_ridests_RN;
        const float share = cfg.xRideThreshold / highest_ride_number;
        track_cfg.xRideThreshold =
            static_cast<float>(std::log(static_cast<double>(share))) / ride_number_rate;
    }
    std::vector<std::int32_t> flags1(iGrindFlags.size());
    std::vector<std::int32_t> flags2(iGrindFlags.size());
    if (mustgrind({xStepSize, track_cfg, setup, xProfile1}, flags1) != success ||
        mustgrind({xStepSize, track_cfg, setup, xProfile2}, flags2) != success) {
        return pass_failure("mustgrind_2chan");
    }
    // No flag of a finished run is below 1, so that the greater one is 1 only where both are.
    std::transform(flags1.begin(), flags1.end(), flags2.begin(), iGrindFlags.begin(),
                   [](std::int32_t first, std::int32_t second) { return std::max(first, second); });
    return success;
}

ReturnCode out_of_spec_spots(const MustGrindRequest& request, std::span<float> xRideBefore,
                             std::vector<Spot>& tOutOfSpec) {
    constexpr std::string_view name = "out_of_spec_spots";
    const tMustGrindCfg& cfg = request.cfg;
    if (ridecon_drv(cfg.if250mmFilter, request.xStepSize, cfg.xSlideBaseLength, cfg.iRideIndexType,
                    request.xProfile, xRideBefore) != success) {
        return pass_failure(name);
    }
    const std::int64_t iTrim = nint(quarter_car_base_length(cfg.if250mmFilter) / request.xStepSize);
    const std::int64_t iHalf = nint(cfg.xSlideBaseLength * 0.5F / request.xStepSize);
    const auto nsamp = static_cast<std::int64_t>(xRideBefore.size());
    // A negative base length does not move the search off the profile.
    const std::int64_t first = std::max<std::int64_t>(iHalf + 1, 1);
    const std::int64_t last = std::min(nsamp - iTrim - iHalf, nsamp);
    // Out of specification is where the threshold would be a gain.
    const auto is_out_of_spec = [&](std::size_t i) {
        return gain(cfg, xRideBefore[i], cfg.xRideThreshold) > 0.0F;
    };
    if (!gather_stretches(first, last, is_out_of_spec, tOutOfSpec)) {
        return raise_failure("i_maxspots exceeded for out-of-spec - try smaller sections", name);
    }
    return success;
}

} // namespace vialto
