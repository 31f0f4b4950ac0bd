// What is done to a profile before it is compared: padding, filtering, trimming to the section of
// interest, resampling to the comparison step.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "comparison/overlap.hpp"
#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

inline constexpr std::int32_t filter_unpadded = 2;   // if_padding; any other value pads
inline constexpr std::int32_t step_of_reference = 2; // if_upsampling; any other value seeks a step

// The largest profile whose padded copy an int32 can count.
inline constexpr std::int32_t largest_padded_profile = 715827883;

// 3n - 2 points for a profile of n; none for an empty one.
[[nodiscard]] std::size_t padded_size(std::size_t n);

// A copy of a profile of n samples, padded by odd reflection at both ends: the profile turned by
// 180 degrees about its first sample, the profile, the profile turned about its last sample, the
// two samples standing there once.
//
// Fails with "Padded array should be (3 times - 2) of the org array" unless padded has 3n - 2
// points; it is then untouched.
[[nodiscard]] ReturnCode profpad(std::span<const float> profile, std::span<float> padded);

// Filters a profile and trims the result to the section of interest.
//
// Given: n samples; if_padding; i_raw_leadin, not negative, and i_raw_leadout, below n, counted
// from 0; x_sampleinterval [m]; the filter settings, which are not written.
// Returned: n points in filtered, of which the first are the trimmed profile; i_filt_leadin 0 and
// i_filt_leadout, their number minus 1. Of the filter's valid range the end counts alone: what lies
// before its begin stays in the section as the filter left it, deliberately.
//
// Fails with the failures of profpad and filtcon_drv, and when the filter's last element lies
// outside the profile.
[[nodiscard]] ReturnCode prefiltering(std::span<const float> profile, std::int32_t if_padding,
                                      tProfinfo& info, std::vector<float>& filtered);

// A step of which both intervals are near-multiples [m]: the largest whole fraction of the smaller
// one, above 1 mm, into which the larger one goes with a remainder below 0.02, and 5.08 mm if
// there is none. A quotient just below a whole number does not count: deliberate.
[[nodiscard]] float upsamp_step(float first_interval, float second_interval);

// The comparison step [m] of two profiles.
[[nodiscard]] float comparison_step(std::int32_t if_upsampling, const tProfinfo& reference,
                                    const tProfinfo& test);

// Brings a profile to another step by linear interpolation: sample i stands at i times the step,
// and what lies behind the last but one sample takes the value of the last one. A profile that has
// the step already (to 1.2e-7 m) stays as it is; the samples of others are made in `room`. One
// without samples has no count of its own: deliberately the formula decides, which gives 0 or less,
// or a single 0.0 where the step is the larger.
//
// Fails with "the resampled profile is too long", code 100, when an int32 cannot count its samples.
[[nodiscard]] ReturnCode resampling(std::span<const float> profile, float interval, float step,
                                    std::vector<float>& room, PreparedProfile& resampled);

} // namespace vialto
