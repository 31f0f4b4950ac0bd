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

TrialOutcome RideTrial::outcome(std::span<const float> ground_profile, PlaceRange cut,
                                std::size_t from) {
    PlaceRange slopes{};
    const bool finite = refilter(ground_profile, cut, slopes);
    const PlaceRange changed = extend_changed_start(slopes);
    const bool gained = finite && gains_anywhere(changed, from);
    std::copy(untouched_.begin() + static_cast<std::ptrdiff_t>(changed.first),
              untouched_.begin() + static_cast<std::ptrdiff_t>(changed.end),
              trial_.begin() + static_cast<std::ptrdiff_t>(changed.first));
    if (!finite) {
        return TrialOutcome::unknown;
    }
    return gained ? TrialOutcome::helps : TrialOutcome::does_not_help;
}

void RideTrial::filter_untouched_road(std::span<const float> xProfile) {
    const std::size_t count = xProfile.size();
    slope_count_ = count_slopes(car_, count);
    untouched_.resize(count + 2 * half_);
    QuarterCarState state = start_state(car_, xProfile);
    for (std::size_t first = 0; first < slope_count_; first += block) {
        checkpoints_.push_back(state);
        filter_block(xProfile, first, state, untouched_);
    }
    extend_both_ends(untouched_);
    trial_ = untouched_;
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

// The slopes from `first` on, a block or what is left of one, into their places in `extended`.
void RideTrial::filter_block(std::span<const float> xProfile, std::size_t first,
                             QuarterCarState& state, std::vector<float>& extended) const {
    const std::span<float> y =
        std::span(extended).subspan(half_ + first, std::min(block, slope_count_ - first));
    QuarterCarRun run{xProfile.subspan(first), state, y};
    run_quarter_car(car_, {&run, 1});
    state = run.state;
    for (float& slope : y) {
        slope = squared_ ? slope * slope : std::fabs(slope);
    }
}

// Filters the ground profile into trial_, from the last checkpoint ahead of the first slope that
// the cut touches, until the state coincides with the untouched road's. `slopes` is the range
// filtered anew. Returns false where the state has left the finite numbers, to which it never
// returns.
bool RideTrial::refilter(std::span<const float> ground_profile, PlaceRange cut,
                         PlaceRange& slopes) {
    QuarterCarState state = start_state(car_, ground_profile);
    std::size_t number = 0; // of the next block, and of the checkpoint ahead of it
    if (state == checkpoints_[0]) {
        const auto reach = static_cast<std::size_t>(car_.iBase);
        number = (cut.first - std::min(cut.first, reach)) / block;
        state = checkpoints_[number];
    }
    slopes.first = number * block;
    const auto coincides = [&] {
        return number * block >= cut.end && state == checkpoints_[number];
    };
    while (number < checkpoints_.size() && !coincides()) {
        filter_block(ground_profile, number * block, state, trial_);
        ++number;
    }
    slopes.end = std::min(number * block, slope_count_);
    return std::all_of(state.begin(), state.end(), [](float x) { return std::isfinite(x); });
}

// Extends trial_ anew where the line through its first slopes has changed. Returns the range of
// trial_ that differs from untouched_, as far as the means of samples out of specification depend
// on it: none of their boxes reaches the extension of the end.
PlaceRange RideTrial::extend_changed_start(PlaceRange slopes) {
    const bool at_start = slopes.first < half_;
    if (at_start) {
        extend_both_ends(trial_);
    }
    return {at_start ? 0 : slopes.first + half_, slopes.end + half_};
}

bool RideTrial::gains_anywhere(PlaceRange changed, std::size_t from) const {
    std::array<float, block> room{};
    std::size_t i = 1; // the sample whose mean comes next, and
    float mean = 0.0F; // the mean of the one before
    if (changed.first < base_) {
        mean = box_mean(std::span(trial_).first(base_));
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
        const std::span<const float> leaving = std::span(trial_).subspan(i - 1);
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
