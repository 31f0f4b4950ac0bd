#include "support/literal_grinding.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "grinding/grindsimu.hpp"
#include "ride/ride_drv.hpp"

namespace vialto::test {

namespace {

// The profile with the samples first to last, counted from 1, ground alone.
std::vector<float> ground_alone(const MustGrindRequest& request, std::int32_t first,
                                std::size_t last, std::span<std::int32_t> flags) {
    std::vector<float> profile(request.xProfile.begin(), request.xProfile.end());
    tGrindSpot spot{};
    spot.iNumPasses = 1;
    spot.iDirection[0] = towards_higher_samples;
    spot.iStart = first - 1;
    spot.iEnd = static_cast<std::int32_t>(last) - 1;
    (void)grindsimu(request.xStepSize, {&spot, 1}, request.setup, profile, flags);
    return profile;
}

bool helps(const MustGrindRequest& request, const std::vector<Spot>& stretches,
           const Spot& spot_at_place, const std::vector<float>& before,
           const std::vector<float>& after) {
    const long window = std::lround(50.0F / (request.xStepSize * 3.28F));
    const auto nsamp = static_cast<long>(before.size());
    for (const Spot& stretch : stretches) {
        if (std::min(stretch.iStart + window, nsamp) < spot_at_place.iStart) {
            continue;
        }
        for (std::int32_t j = stretch.iStart; j <= stretch.iEnd; ++j) {
            const auto i = static_cast<std::size_t>(j - 1);
            if (0.0F - (after[i] - before[i]) > 1.1920929e-7F) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

LiteralMustGrind literal_mustgrind(const MustGrindRequest& request) {
    const tMustGrindCfg& cfg = request.cfg;
    const std::size_t nsamp = request.xProfile.size();
    std::vector<std::int32_t> flags(nsamp);
    std::vector<float> before(nsamp);
    std::vector<float> after(nsamp);
    SpotList list;
    std::vector<Spot> stretches;
    (void)ground_alone(request, 1, nsamp, flags);
    (void)tossout_shortgrindspots(cfg.x_grindlength_min, request.xStepSize, flags, list);
    merge_closegrindspots(cfg.x_grindgap_min, request.xStepSize, flags, list);
    (void)out_of_spec_spots(request, before, stretches);
    const std::size_t candidates = list.iActive.size();
    for (std::size_t t = 0; t < candidates; ++t) {
        Spot& spot = list.tGrindSpots[static_cast<std::size_t>(list.iActive[t])];
        const auto profile =
            ground_alone(request, spot.iStart, static_cast<std::size_t>(spot.iEnd), {});
        (void)ridecon_drv(cfg.if250mmFilter, request.xStepSize, cfg.xSlideBaseLength,
                          cfg.iRideIndexType, profile, after);
        if (!helps(request, stretches, list.tGrindSpots[t], before, after)) {
            spot.iStatus = spot_dropped;
            set_flags(flags, spot.iStart, spot.iEnd, not_ground);
        }
    }
    list.rebuild_active();
    return {flags, candidates, list.iActive.size()};
}

} // namespace vialto::test
