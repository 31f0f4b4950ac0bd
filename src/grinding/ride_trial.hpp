// What grinding one spot does to the continuous ride statistic out of specification, without the
// statistic of the whole road.
//
// The statistic is the quarter car's slope, rectified or squared, smoothed by a running mean. A
// trial gives the bits of the whole computation, because it takes up both where they come to what
// is ground, and leaves them where nothing depends on it any more:
//
//  1. The quarter car runs from the last checkpoint ahead of the spot, the samples before it being
//     as they were. Behind the spot it forgets: after some hundred metres its state is the same, to
//     the last bit, as on the untouched road, and so is every slope that follows.
//  2. The running mean starts with the first box that holds a new slope, and ends where a gain is
//     found.
//  3. It never forgets: behind the new slopes it goes on some rounding errors beside the untouched
//     one. But from there on both get the same updates, and the rounded sum of a mean and an update
//     never falls when the mean rises. So a mean that is at some sample no less than that of a
//     lower run, which was started a margin below the untouched one, never falls below it again,
//     and gains nothing where the lower run does not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "filters/quarter_car.hpp"
#include "grinding/mustgrind.hpp"

namespace vialto {

// Places in an array, from 0.
struct PlaceRange {
    std::size_t first;
    std::size_t end; // one behind the last
};

enum class TrialOutcome { helps, does_not_help, unknown };

class RideTrial {
public:
    // Whether the request's statistic is one that trials know: IRI or RN, smoothed.
    [[nodiscard]] static bool serves(const MustGrindRequest& request);

    // The request is served, and its statistic xRideBefore could be computed; in_stretch is not 0
    // for the samples out of specification, of which none lies in the last half of a base length.
    // The two arrays and the profile outlive the trials.
    RideTrial(const MustGrindRequest& request, std::span<const float> xRideBefore,
              std::span<const std::uint8_t> in_stretch);

    // The profile, ground within `cut` alone. The samples from `from` on count, as far as they are
    // out of specification. Unknown is what follows where the quarter car overflows.
    [[nodiscard]] TrialOutcome outcome(std::span<const float> ground_profile, PlaceRange cut,
                                       std::size_t from);

private:
    void filter_untouched_road(std::span<const float> xProfile);
    void run_lower_means(float margin);
    void extend_both_ends(std::span<float> extended) const;

    void filter_block(std::span<const float> xProfile, std::size_t first, QuarterCarState& state,
                      std::vector<float>& extended) const;
    [[nodiscard]] bool refilter(std::span<const float> ground_profile, PlaceRange cut,
                                PlaceRange& slopes);
    [[nodiscard]] PlaceRange extend_changed_start(PlaceRange slopes);
    [[nodiscard]] bool gains_anywhere(PlaceRange changed, std::size_t from) const;
    [[nodiscard]] bool gains_within(std::size_t first, std::span<const float> means,
                                    std::size_t from) const;
    [[nodiscard]] bool gains(std::size_t sample, float mean) const;

    const tMustGrindCfg& cfg_;
    std::span<const float> ride_before_;
    std::span<const std::uint8_t> in_stretch_;
    bool squared_;     // RN: slopes are squared, and the root of their mean is taken
    std::size_t base_; // samples of the mean's box
    std::size_t half_; // samples of the extension at either end
    QuarterCar car_{};
    std::size_t slope_count_ = 0;
    std::vector<QuarterCarState> checkpoints_; // of the untouched road, ahead of each block
    // |slope| or its square with both ends extended: of the untouched road, and of a trial, which
    // is the same but for the range that the trial changes and restores.
    std::vector<float> untouched_;
    std::vector<float> trial_;
    std::vector<float> means_;          // of the untouched road
    std::vector<float> lower_means_;    // of the lower run
    std::size_t lower_gains_until_ = 0; // from this sample on, the lower run gains nothing
};

} // namespace vialto
