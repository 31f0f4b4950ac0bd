#include "comparison/norm_cal.hpp"

#include <cmath>
#include <cstddef>

namespace vialto {

ReturnCode check_norm_count(std::int64_t x_num_act, std::int32_t i_trim) {
    if (x_num_act - 2 * std::int64_t{i_trim} < 0) {
        return raise_failure("x_num_act should not be zero", "norm_cal");
    }
    return success;
}

// Everything is 64-bit but the samples themselves; a difference from the mean is formed anew where
// it is used, which gives the same bits as a copy of the segment in double would.
ReturnCode norm_cal(std::int32_t i_trim, std::span<float> segment, float& x_rms) {
    if (check_norm_count(static_cast<std::int64_t>(segment.size()), i_trim) != success) {
        return failure;
    }
    const auto trim = static_cast<std::size_t>(i_trim);
    const std::span<const float> used = segment.subspan(trim, segment.size() - 2 * trim);
    const auto n = static_cast<double>(used.size());

    double sum = 0.0;
    for (const float sample : used) {
        sum += static_cast<double>(sample);
    }
    const double mean = sum / n;

    double sum_of_squares = 0.0;
    for (const float sample : used) {
        const double deviation = static_cast<double>(sample) - mean;
        sum_of_squares += deviation * deviation;
    }
    const double rms = std::sqrt(sum_of_squares / n);

    for (float& sample : segment) {
        sample = static_cast<float>((static_cast<double>(sample) - mean) / rms);
    }
    x_rms = static_cast<float>(rms);
    return success;
}

} // namespace vialto
