#include "support/literal_grinding.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "grinding/grindsimu.hpp"
#include "ride/ride_drv.hpp"
#include "support/literal_filters.hpp"

namespace vialto::test {

std::vector<std::int32_t> literal_grindsimu(float interval, const std::vector<tGrindSpot>& spots,
                                            const tGrinderSetup& setup,
                                            std::vector<float>& profile) {
    const float box = setup.ShortWavelength / interval;
    std::vector<float> path = profile;
    if (box >= 2.0F) {
        path = literal_moving_average(profile, static_cast<std::size_t>(box + 0.5F),
                                      static_cast<std::size_t>(box * 0.5F + 0.5F), false);
    }
    const auto samples = [&](float distance) {
        return static_cast<double>(std::round(distance / interval));
    };
    const float half = setup.TandemSpread * 0.5F;
    const float a = setup.WheelBase * setup.HeadPosition;
    const float b = setup.WheelBase * (1.0F - setup.HeadPosition);
    // From the head to each wheel; in double, which no machine overflows.
    const std::array wheels{samples(half + a), samples(a - half), samples(half - b),
                            samples(-half - b)};
    const auto n = static_cast<double>(profile.size());
    std::vector<std::int32_t> flags(profile.size(), 1);
    for (const tGrindSpot& spot : spots) {
        for (std::int32_t p = 0; p < spot.iNumPasses; ++p) {
            const double ahead = spot.iDirection[p] == 1 ? 1.0 : -1.0;
            const float depth = spot.xDepth_mm[p] * 0.001F;
            for (double j = ahead > 0.0 ? 1.0 : n; 1.0 <= j && j <= n; j += ahead) {
                std::array<double, 4> at = wheels;
                std::for_each(at.begin(), at.end(), [&](double& x) { x = j + ahead * x; });
                const auto [lowest, highest] = std::minmax_element(at.begin(), at.end());
                if (j < spot.iStart + 1.0 || j > spot.iEnd + 1.0 || *lowest < 1.0 || *highest > n) {
                    continue;
                }
                const auto W = [&](double x) { return path[static_cast<std::size_t>(x) - 1]; };
                const float plane = (W(at[0]) + W(at[1])) * ((1.0F - setup.HeadPosition) * 0.5F) +
                                    (W(at[2]) + W(at[3])) * (setup.HeadPosition * 0.5F);
                const auto i = static_cast<std::size_t>(j) - 1;
                const float cut = (profile[i] - plane) - depth;
                if (cut > 0.0F) {
                    flags[i] = cut <= setup.MaxGrindingDepth_mm * 0.001F ? 2 : 3;
                    path[i] = (depth - (path[i] - plane)) + path[i];
                    profile[i] = profile[i] - cut;
                }
            }
        }
    }
    return flags;
}

LiteralMustGrind literal_mustgrind(const MustGrindRequest& request) {
    const tMustGrindCfg& cfg = request.cfg;
    const float step = request.xStepSize;
    const auto nsamp = static_cast<std::int32_t>(request.xProfile.size());
    const auto ground_at = [&](std::int32_t first, std::int32_t last,
                               std::span<std::int32_t> flags) {
        std::vector<float> profile(request.xProfile.begin(), request.xProfile.end());
        const tGrindSpot spot{1, {1}, {}, first - 1, last - 1};
        (void)grindsimu(step, {&spot, 1}, request.setup, profile, flags);
        return profile;
    };
    std::vector<std::int32_t> flags(request.xProfile.size());
    SpotList list;
    (void)ground_at(1, nsamp, flags);
    if (cfg.ib_grindopt[0] == 1) {
        (void)tossout_shortgrindspots(cfg.x_grindlength_min, step, flags, list);
    }
    if (cfg.ib_grindopt[1] == 1) {
        merge_closegrindspots(cfg.x_grindgap_min, step, flags, list);
    }
    std::vector<float> before(flags.size());
    std::vector<float> after(flags.size());
    std::vector<Spot> stretches;
    (void)out_of_spec_spots(request, before, stretches);
    const long window = std::lround(50.0F / (step * 3.28F));
    const std::size_t candidates = cfg.ib_grindopt[2] == 1 ? list.iActive.size() : 0;
    for (std::size_t t = 0; t < candidates; ++t) {
        Spot& spot = list.tGrindSpots[static_cast<std::size_t>(list.iActive[t])];
        (void)ridecon_drv(cfg.if250mmFilter, step, cfg.xSlideBaseLength, cfg.iRideIndexType,
                          ground_at(spot.iStart, spot.iEnd, {}), after);
        bool helps = false;
        for (const Spot& stretch : stretches) {
            const long reach = std::min<long>(stretch.iStart + window, nsamp);
            for (auto j = static_cast<std::size_t>(stretch.iStart);
                 j <= static_cast<std::size_t>(stretch.iEnd); ++j) {
                helps |= reach >= list.tGrindSpots[t].iStart &&
                         0.0F - (after[j - 1] - before[j - 1]) > 1.1920929e-7F;
            }
        }
        if (!helps) {
            spot.iStatus = spot_dropped;
            std::fill(flags.begin() + (spot.iStart - 1), flags.begin() + spot.iEnd,
                      idx_grindflag_none);
        }
    }
    list.rebuild_active();
    return {flags, candidates, list.iActive.size()};
}

} // namespace vialto::test
