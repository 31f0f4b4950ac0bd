#include "grinding/ride_trial.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "filters/moving_average.hpp"
#include "numeric/rounding.hpp"
#include "ride/ride_stats.hpp"

namespace vialto {

namespace {

constexpr std::size_t block = 64; // samples from one checkpoint, or look at the means, to the next

} // namespace

bool RideTrial::serves(const MustGrindRequest& request) {
    const tMustGrindCfg& cfg = request.cfg;
    return (cfg.iRideIndexType == idx_ridests_IRI || cfg.iRideIndexType == idx_ridests_RN) &&
           truncate(cfg.xSlideBaseLength / request.xStepSize) > 1;
}

RideTrial::RideTrial(const MustGrindRequest& request, std::span<const float> xRideBefore,
                     std::span<const std::uint8_t> in_stretch)
    : cfg_(request.cfg), ride_before_(xRideBefore), in_stretch_(in_stretch),
      squared_(cfg_.iRideIndexType == idx_ridests_RN) {
    const Box box = box_of(cfg_.xSlideBaseLength, request.xStepSize);
    base_ = static_cast<std::size_t>(box.iBase);
    half_ = static_cast<std::size_t>(box.iHalf);
    const tFiltCon settings = quarter_car_settings(cfg_.iRideIndexType, cfg_.if250mmFilter);
    constexpr float slope_scale = 1.0F;
    // The same quarter car could be set up for xRideBefore.
    (void)set_up_quarter_car(
        request.xStepSize, quarter_car_base_length(cfg_.if250mmFilter), slope_scale,
        squared_ ? rn_parameters(settings.xSimuVelocity) : iri_parameters(), car_);
    filter_untouched_road(request.xProfile);
    // The margin decides how early a trial can end, and never its outcome. It is half of what
    // counts as a gain; where a root follows, a gain is smaller by twice the root, which is above
    // the threshold out of specification.
    run_lower_means(negligible_gain * (squared_ ? std::max(cfg_.xRideThreshold, 0.0F) : 0.5F));
}

void RideTrial::run(std::span<Trial> trials) {
    const std::span<Lane> lanes = std::span(lanes_).first(trials.size());
    for (std::size_t k = 0; k < trials.size(); ++k) {
        start(trials[k], lanes[k]);
    }
    refilter(lanes, slope_count_ / block);
    refilter(lanes, checkpoints_.size()); // the last block, where it is a shorter one
    for (std::size_t k = 0; k < trials.size(); ++k) {
        trials[k].outcome = outcome(trials[k], lanes[k]);
    }
}

void RideTrial::filter_untouched_road(std::span<const float> xProfile) {
    const std::size_t count = xProfile.size();
    slope_count_ = count_slopes(car_, count);
    untouched_.resize(count + 2 * half_);
    QuarterCarState state = start_state(car_, xProfile);
    for (std::size_t first = 0; first < slope_count_; first += block) {
        checkpoints_.push_back(state);
        QuarterCarRun run = block_run(xProfile, first, state, untouched_);
        run_quarter_car(car_, {&run, 1});
        take_magnitudes(run.y);
        state = run.state;
    }
    extend_both_ends(untouched_);
    for (Lane& lane : lanes_) {
        lane.slopes = untouched_;
    }
    means_.resize(count);
    means_[0] = box_mean(std::span(untouched_).first(base_));
    continue_means(untouched_, std::span(untouched_).subspan(base_), base_, means_[0],
                   std::span(means_).subspan(1));
}

void RideTrial::run_lower_means(float margin) {
    lower_means_.resize(means_.size());
    lower_means_[0] = means_[0] - margin;
    continue_means(untouched_, std::span(untouched_).subspan(base_), base_, lower_means_[0],
                   std::span(lower_means_).subspan(1));
    lower_gains_until_ = means_.size();
    while (lower_gains_until_ > 0 &&
           !gains(lower_gains_until_ - 1, lower_means_[lower_gains_until_ - 1])) {
        --lower_gains_until_;
    }
}

void RideTrial::extend_both_ends(std::span<float> extended) const {
    extend_ends(extended.subspan(half_, extended.size() - 2 * half_), extended.first(half_),
                extended.last(half_));
}

// The run over the block whose first sample is `first`, into its place in `extended`.
QuarterCarRun RideTrial::block_run(std::span<const float> xProfile, std::size_t first,
                                   const QuarterCarState& state, std::span<float> extended) const {
    return {xProfile.subspan(first), state,
            extended.subspan(half_ + first, std::min(block, slope_count_ - first))};
}

void RideTrial::take_magnitudes(std::span<float> slopes) const {
    for (float& slope : slopes) {
        slope = squared_ ? slope * slope : std::fabs(slope);
    }
}

// Puts the lane at the last checkpoint ahead of the first slope that the cut touches.
void RideTrial::start(const Trial& trial, Lane& lane) const {
    lane.ground_profile = trial.ground_profile;
    lane.cut_end = trial.cut.end;
    lane.state = start_state(car_, trial.ground_profile);
    lane.next_block = 0;
    if (lane.state == checkpoints_[0]) {
        const auto reach = static_cast<std::size_t>(car_.iBase);
        lane.next_block = (trial.cut.first - std::min(trial.cut.first, reach)) / block;
        lane.state = checkpoints_[lane.next_block];
    }
    lane.first = lane.next_block * block;
}

// Filters the blocks of the lanes' ground profiles ahead of end_block, which are equally long: of
// each lane until its state coincides with the untouched road's.
void RideTrial::refilter(std::span<Lane> lanes, std::size_t end_block) const {
    while (true) {
        std::array<QuarterCarRun, most_runs> room;
        std::array<Lane*, most_runs> busy{};
        std::size_t count = 0;
        for (Lane& lane : lanes) {
            const std::size_t first = lane.next_block * block;
            if (lane.next_block < end_block &&
                !(first >= lane.cut_end && lane.state == checkpoints_[lane.next_block])) {
                room[count] = block_run(lane.ground_profile, first, lane.state, lane.slopes);
                busy[count] = &lane;
                ++count;
            }
        }
        if (count == 0) {
            return;
        }
        const std::span<QuarterCarRun> runs = std::span(room).first(count);
        run_quarter_car(car_, runs);
        for (std::size_t k = 0; k < count; ++k) {
            take_magnitudes(runs[k].y);
            busy[k]->state = runs[k].state;
            ++busy[k]->next_block;
        }
    }
}

// What follows from the slopes of a lane, which has run to its end. Restores them.
TrialOutcome RideTrial::outcome(const Trial& trial, Lane& lane) const {
    // A state that has left the finite numbers never returns to them.
    const bool finite =
        std::all_of(lane.state.begin(), lane.state.end(), [](float x) { return std::isfinite(x); });
    const PlaceRange changed = extend_changed_start(
        {lane.first, std::min(lane.next_block * block, slope_count_)}, lane.slopes);
    const bool gained = finite && gains_anywhere(lane.slopes, changed, trial.from);
    std::copy(untouched_.begin() + static_cast<std::ptrdiff_t>(changed.first),
              untouched_.begin() + static_cast<std::ptrdiff_t>(changed.end),
              lane.slopes.begin() + static_cast<std::ptrdiff_t>(changed.first));
    if (!finite) {
        return TrialOutcome::unknown;
    }
    return gained ? TrialOutcome::helps : TrialOutcome::does_not_help;
}

// Extends the trial's slopes anew where the line through the first ones has changed, the range
// `filtered` being new. Returns the range in which they differ from untouched_, as far as the means
// of samples out of specification depend on it: none of their boxes reaches the extension of the
// end.
PlaceRange RideTrial::extend_changed_start(PlaceRange filtered, std::span<float> extended) const {
    const bool at_start = filtered.first < half_;
    if (at_start) {
        extend_both_ends(extended);
    }
    return {at_start ? 0 : filtered.first + half_, filtered.end + half_};
}

bool RideTrial::gains_anywhere(std::span<const float> extended, PlaceRange changed,
                               std::size_t from) const {
    std::array<float, block> room{};
    std::size_t i = 1; // the sample whose mean comes next, and
    float mean = 0.0F; // the mean of the one before
    if (changed.first < base_) {
        mean = box_mean(extended.first(base_));
        if (gains_within(0, {&mean, 1}, from)) {
            return true;
        }
    } else {
        i = changed.first - base_ + 1;
        mean = means_[i - 1];
    }
    while (i < means_.size()) {
        const bool updates_are_untouched = i > changed.end;
        const bool stays_above_lower_run = updates_are_untouched && mean >= lower_means_[i - 1];
        if (stays_above_lower_run && i >= lower_gains_until_) {
            return false;
        }
        const std::span<float> means = std::span(room).first(std::min(block, means_.size() - i));
        const std::span<const float> leaving = extended.subspan(i - 1);
        continue_means(leaving, leaving.subspan(base_), base_, mean, means);
        if (gains_within(i, means, from)) {
            return true;
        }
        mean = means.back();
        i += means.size();
    }
    return false;
}

// The means are those of the samples from `first` on; the samples from `from` on count.
bool RideTrial::gains_within(std::size_t first, std::span<const float> means,
                             std::size_t from) const {
    for (std::size_t k = from - std::min(from, first); k < means.size(); ++k) {
        if (gains(first + k, means[k])) {
            return true;
        }
    }
    return false;
}

bool RideTrial::gains(std::size_t sample, float mean) const {
    if (in_stretch_[sample] == 0) {
        return false;
    }
    const float ride_after = squared_ ? std::sqrt(mean > 0.0F ? mean : 0.0F) : mean;
    return gain(cfg_, ride_before_[sample], ride_after) > negligible_gain;
}

} // namespace vialto
