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
//
// Several trials go through the quarter car side by side.
#pragma once

#include <array>
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

// The profile, ground within `cut` alone. Of the samples that are out of specification, those from
// `from` on count. The outcome is unknown where the quarter car overflows.
struct Trial {
    std::span<const float> ground_profile;
    PlaceRange cut;
    std::size_t from;
    TrialOutcome outcome = TrialOutcome::unknown;
};

class RideTrial {
public:
    // Whether the request's statistic is one that trials know: IRI or RN, smoothed.
    [[nodiscard]] static bool serves(const MustGrindRequest& request);

    // The request is served, and its statistic xRideBefore could be computed; in_stretch is not 0
    // for the samples out of specification, of which none lies in the last half of a base length.
    // The two arrays and the profile outlive the trials.
    RideTrial(const MustGrindRequest& request, std::span<const float> xRideBefore,
              std::span<const std::uint8_t> in_stretch);

    // Finds the outcomes of at most most_runs trials.
    void run(std::span<Trial> trials);

private:
    // A trial on its way through the quarter car.
    struct Lane {
        std::vector<float> slopes; // as untouched_, but for the range that the trial changes
        std::span<const float> ground_profile;
        std::size_t cut_end;
        std::size_t first;      // the first slope filtered anew
        std::size_t next_block; // and the checkpoint ahead of it
        QuarterCarState state;
    };

    void filter_untouched_road(std::span<const float> xProfile);
    void run_lower_means(float margin);
    void extend_both_ends(std::span<float> extended) const;

    [[nodiscard]] QuarterCarRun block_run(std::span<const float> xProfile, std::size_t first,
                                          const QuarterCarState& state,
                                          std::span<float> extended) const;
    void take_magnitudes(std::span<float> slopes) const;
    void start(const Trial& trial, Lane& lane) const;
    void refilter(std::span<Lane> lanes, std::size_t end_block) const;
    [[nodiscard]] TrialOutcome outcome(const Trial& trial, Lane& lane) const;
    [[nodiscard]] PlaceRange extend_changed_start(PlaceRange filtered,
                                                  std::span<float> extended) const;
    [[nodiscard]] bool gains_anywhere(std::span<const float> extended, PlaceRange changed,
                                      std::size_t from) const;
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
    std::vector<float> untouched_;             // |slope| or its square, with both ends extended
    std::array<Lane, most_runs> lanes_{};
    std::vector<float> means_;          // of the untouched road
    std::vector<float> lower_means_;    // of the lower run
    std::size_t lower_gains_until_ = 0; // from this sample on, the lower run gains nothing
};

} // namespace vialto
