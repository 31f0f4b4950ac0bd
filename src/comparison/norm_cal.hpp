// Normalisation of a stretch of profile: zero mean and unit root mean square. Serves the comparison
// of profiles and the identification of joints.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"

namespace vialto {

// Given: a segment of x_num_act samples, and i_trim, the number of samples at either end that are
// left out of mean and rms; not negative.
// Returned: the segment less the mean, divided by the rms, all of it, the trimmed ends included;
// the rms before the division in x_rms, in the unit of the segment.
//
// Fails with "x_num_act should not be zero" when the trims exceed the count, which leaves segment
// and x_rms untouched. Trims that leave no sample pass the test, deliberately, and divide by zero:
// the segment and x_rms become NaN. A flat segment divides 0 by 0 and becomes NaN, with x_rms 0.
[[nodiscard]] ReturnCode norm_cal(std::int32_t i_trim, std::span<float> segment, float& x_rms);

// The test at the head of norm_cal, for a caller whose count may lie below what a segment can hold:
// success if x_num_act less the two trims is not negative, otherwise norm_cal's failure.
[[nodiscard]] ReturnCode check_norm_count(std::int64_t x_num_act, std::int32_t i_trim);

} // namespace vialto
