// The stretch over which two profiles lie side by side at one offset, and how well they agree
// there.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "frame/event.hpp"

namespace vialto {

struct PreparedProfile {
    std::span<const float> samples;
    // Of the samples; below 0 where resampling has that result.
    std::int64_t count = std::ssize(samples);
};

// Both at the comparison step.
struct ProfilePair {
    PreparedProfile reference;
    PreparedProfile test;
};

// All in samples, from 0. A negative offset skips the beginning of the test profile, a positive one
// that of the reference profile. The count is 0 or less when nothing overlaps.
struct Overlap {
    std::int64_t offset;
    std::int64_t reference_first;
    std::int64_t test_first;
    std::int64_t count;
};

[[nodiscard]] Overlap overlap_at(std::int64_t offset, const ProfilePair& profiles);

struct Agreement {
    float roughness; // coefficient of the normalised stretches, -100 to 100 percent
    float shape;     // ratio of the smaller to the larger root mean square, 0 to 1
};

// Copies of the overlapping stretches to work on, kept from one offset to the next.
struct OverlapSegments {
    std::vector<float> reference;
    std::vector<float> test;
};

// The ratio of the smaller to the larger of two root mean squares; a NaN if one of them is.
[[nodiscard]] float shape_factor(float x_rms_base, float x_rms_test);

// Whether both stretches are too flat to be compared. A flat stretch beside one that is not passes,
// deliberately, and so does a NaN.
[[nodiscard]] bool both_flat(float x_rms_base, float x_rms_test);

// The agreement of one overlap by its definition: both stretches are copied, normalised and
// correlated.
//
// Fails with the failure of norm_cal for a negative count, that of sngl_croxcorr for a count of 0
// and, as "cc_sweep", with "max(x_rms_test, x_rms_base) is close to zero" for two flat stretches.
// Two guards, "... profile segment array size exceeded", cannot fire on what overlap_at gives.
[[nodiscard]] ReturnCode compute_agreement(const ProfilePair& profiles, const Overlap& overlap,
                                           OverlapSegments& segments, Agreement& agreement);

// Pearson's coefficient of two segments of equal length in percent, its sums in 64-bit. A segment
// without variance gives +100 or -100 by the sign of the covariance, not 0; a variance that is a
// NaN gives a NaN.
//
// Fails with "number of points is less than zero" for empty segments; the coefficient is then 0.
[[nodiscard]] ReturnCode sngl_croxcorr(std::span<const float> reference,
                                       std::span<const float> test, float& coefficient);

} // namespace vialto
