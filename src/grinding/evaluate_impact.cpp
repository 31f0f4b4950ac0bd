#include "grinding/evaluate_impact.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "grinding/grindsimu.hpp"
#include "grinding/ride_trial.hpp"
#include "numeric/rounding.hpp"
#include "ride/ride_drv.hpp"

namespace vialto {

namespace {

constexpr std::string_view name = "evaluate_impact";
constexpr float influence_window_feet = 50.0F;
constexpr float feet_per_metre = 3.28F;

// A road and the wheels' path on it, to grind one spot at a time.
class TrialRoad {
public:
    TrialRoad(const MustGrindRequest& request, std::span<const float> xWheelPath)
        : grinder_(grinder_of(request.setup, request.xStepSize)), xProfile_(request.xProfile),
          xWheelPath_(xWheelPath), xWork_(xProfile_.begin(), xProfile_.end()),
          xWheelWork_(xWheelPath_.begin(), xWheelPath_.end()) {}

    // Grinds the spot alone, the one before it being restored.
    void grind(const Spot& spot) {
        restore();
        ground_ = {static_cast<std::size_t>(spot.iStart) - 1, static_cast<std::size_t>(spot.iEnd)};
        constexpr float level_of_the_wheels = 0.0F;
        // The direction is a valid one, so that the pass does not fail.
        (void)grindspot(grinder_,
                        {idx_grinddir_higher, level_of_the_wheels, spot.iStart - 1, spot.iEnd - 1},
                        xWork_, xWheelWork_, {});
    }

    [[nodiscard]] std::span<const float> profile() const { return xWork_; }
    [[nodiscard]] PlaceRange ground() const { return ground_; }

private:
    void restore() {
        for (std::size_t i = ground_.first; i < ground_.end; ++i) {
            xWork_[i] = xProfile_[i];
            xWheelWork_[i] = xWheelPath_[i];
        }
    }

    Grinder grinder_;
    std::span<const float> xProfile_; // the untouched road, and the path on it
    std::span<const float> xWheelPath_;
    std::vector<float> xWork_; // with the spot ground
    std::vector<float> xWheelWork_;
    PlaceRange ground_{};
};

std::vector<std::uint8_t> samples_in(const std::vector<Spot>& stretches, std::size_t count) {
    std::vector<std::uint8_t> marks(count);
    for (const Spot& stretch : stretches) {
        std::fill(marks.begin() + (stretch.iStart - 1), marks.begin() + stretch.iEnd, 1);
    }
    return marks;
}

// The first sample, from 0, of the stretches that reach to the spot: those that start at most
// the window before it, or behind its start. The stretches stand in order, and so does their reach.
std::size_t first_sample_reaching(const std::vector<Spot>& tOutOfSpec, std::int32_t iWindow,
                                  std::size_t nsamp, const Spot& spot) {
    const auto stretch =
        std::partition_point(tOutOfSpec.begin(), tOutOfSpec.end(), [&](const Spot& candidate) {
            const std::int64_t iReach = std::min(std::int64_t{candidate.iStart} + iWindow,
                                                 static_cast<std::int64_t>(nsamp));
            return iReach < spot.iStart;
        });
    return stretch == tOutOfSpec.end() ? nsamp : static_cast<std::size_t>(stretch->iStart) - 1;
}

// The outcome by the statistic of the whole ground profile. Fails as that statistic does.
ReturnCode compute_outcome(const MustGrindRequest& request, std::span<const float> xRideBefore,
                           std::span<const std::uint8_t> in_stretch, Trial& trial) {
    const tMustGrindCfg& cfg = request.cfg;
    std::vector<float> xRideAfter(trial.ground_profile.size());
    if (ridecon_drv(cfg.if250mmFilter, request.xStepSize, cfg.xSlideBaseLength, cfg.iRideIndexType,
                    trial.ground_profile, xRideAfter) != success) {
        return failure;
    }
    trial.outcome = TrialOutcome::does_not_help;
    for (std::size_t j = trial.from; j < xRideAfter.size(); ++j) {
        if (in_stretch[j] != 0 && gain(cfg, xRideBefore[j], xRideAfter[j]) > negligible_gain) {
            trial.outcome = TrialOutcome::helps;
        }
    }
    return success;
}

} // namespace

ReturnCode evaluate_impact(const MustGrindRequest& request, std::span<const float> xRideBefore,
                           const std::vector<Spot>& tOutOfSpec, std::span<std::int32_t> iGrindFlags,
                           SpotList& spots) {
    const std::size_t nsamp = request.xProfile.size();
    const std::int32_t iWindow = nint(influence_window_feet / (request.xStepSize * feet_per_metre));
    std::vector<float> xWheelPath(nsamp);
    if (filter_wheel_path(request.xProfile, request.xStepSize, request.setup.ShortWavelength,
                          xWheelPath) != success) {
        return pass_failure(name);
    }
    std::vector<TrialRoad> roads(std::min(most_runs, spots.iActive.size()),
                                 TrialRoad(request, xWheelPath));
    const std::vector<std::uint8_t> in_stretch = samples_in(tOutOfSpec, nsamp);
    std::optional<RideTrial> ride_trial;
    if (!spots.iActive.empty() && RideTrial::serves(request)) {
        ride_trial.emplace(request, xRideBefore, in_stretch);
    }
    const auto active_spot = [&](std::size_t t) -> Spot& {
        return spots.tGrindSpots[static_cast<std::size_t>(spots.iActive[t])];
    };
    std::array<Trial, most_runs> room;
    for (std::size_t t = 0; t < spots.iActive.size(); t += most_runs) {
        const auto trials = std::span(room).first(std::min(most_runs, spots.iActive.size() - t));
        for (std::size_t k = 0; k < trials.size(); ++k) {
            roads[k].grind(active_spot(t + k));
            // By the spot at this place of the whole list, not the one tried: deliberate.
            trials[k] = {
                roads[k].profile(), roads[k].ground(),
                first_sample_reaching(tOutOfSpec, iWindow, nsamp, spots.tGrindSpots[t + k])};
        }
        if (ride_trial) {
            ride_trial->run(trials);
        }
        for (std::size_t k = 0; k < trials.size(); ++k) {
            if (trials[k].outcome == TrialOutcome::unknown &&
                compute_outcome(request, xRideBefore, in_stretch, trials[k]) != success) {
                return pass_failure(name);
            }
            if (trials[k].outcome == TrialOutcome::does_not_help) {
                drop_spot(active_spot(t + k), iGrindFlags);
            }
        }
    }
    spots.rebuild_active();
    return success;
}

} // namespace vialto
