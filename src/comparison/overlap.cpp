#include "comparison/overlap.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string_view>

#include "comparison/norm_cal.hpp"
#include "numeric/units.hpp"

namespace vialto {

namespace {

constexpr std::string_view name = "cc_sweep";

constexpr float smallest_rms = std::numeric_limits<float>::epsilon(); // 1.1920929e-7
constexpr auto smallest_variance_sum = static_cast<double>(smallest_rms);

// The overlap never passes an end; the test is a guard.
ReturnCode check_bounds(const ProfilePair& profiles, const Overlap& overlap) {
    if (overlap.test_first + overlap.count > profiles.test.count) {
        return raise_failure("test profile segment array size exceeded", name);
    }
    if (overlap.reference_first + overlap.count > profiles.reference.count) {
        return raise_failure("reference profile segment array size exceeded", name);
    }
    return success;
}

void copy_stretch(std::span<const float> profile, std::int64_t first, std::int64_t count,
                  std::vector<float>& segment) {
    const auto stretch =
        profile.subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(count));
    segment.assign(stretch.begin(), stretch.end());
}

} // namespace

Overlap overlap_at(std::int64_t offset, const ProfilePair& profiles) {
    const auto& [reference, test] = profiles;
    if (offset < 0) {
        return {offset, 0, -offset, std::min(test.count + offset, reference.count)};
    }
    return {offset, offset, 0, std::min(reference.count - offset, test.count)};
}

float shape_factor(float x_rms_base, float x_rms_test) {
    return x_rms_base < x_rms_test ? x_rms_base / x_rms_test : x_rms_test / x_rms_base;
}

bool both_flat(float x_rms_base, float x_rms_test) {
    return x_rms_base < smallest_rms && x_rms_test < smallest_rms;
}

ReturnCode compute_agreement(const ProfilePair& profiles, const Overlap& overlap,
                             OverlapSegments& segments, Agreement& agreement) {
    if (check_bounds(profiles, overlap) != success) {
        return failure;
    }
    if (check_norm_count(overlap.count, 0) != success) {
        return pass_failure(name);
    }
    const auto& [offset, reference_first, test_first, count] = overlap;
    copy_stretch(profiles.reference.samples, reference_first, count, segments.reference);
    copy_stretch(profiles.test.samples, test_first, count, segments.test);
    float x_rms_base = 0.0F;
    float x_rms_test = 0.0F;
    if (norm_cal(0, segments.reference, x_rms_base) != success ||
        norm_cal(0, segments.test, x_rms_test) != success) {
        return pass_failure(name);
    }
    if (both_flat(x_rms_base, x_rms_test)) {
        return raise_failure("max(x_rms_test, x_rms_base) is close to zero", name);
    }
    agreement.shape = shape_factor(x_rms_base, x_rms_test);
    if (sngl_croxcorr(segments.reference, segments.test, agreement.roughness) != success) {
        return pass_failure(name);
    }
    return success;
}

ReturnCode sngl_croxcorr(std::span<const float> reference, std::span<const float> test,
                         float& coefficient) {
    coefficient = 0.0F;
    if (reference.empty()) {
        return raise_failure("number of points is less than zero", "sngl_croxcorr");
    }
    const auto n = static_cast<double>(reference.size());
    double sx = 0.0;
    double sy = 0.0;
    double sxy = 0.0;
    double sxx = 0.0;
    double syy = 0.0;
    for (std::size_t i = 0; i < reference.size(); ++i) {
        const auto x = static_cast<double>(reference[i]);
        const auto y = static_cast<double>(test[i]);
        sx += x;
        sy += y;
        sxy += x * y;
        sxx += x * x;
        syy += y * y;
    }
    // Only the numerator is rounded to 32 bits: deliberate.
    const auto c = static_cast<float>(sxy - sx * sy / n);
    const double a = std::fabs(sxx - sx * sx / n);
    const double b = std::fabs(syy - sy * sy / n);
    if (std::isnan(a) || std::isnan(b)) {
        coefficient = std::numeric_limits<float>::quiet_NaN();
    } else if (a > smallest_variance_sum && b > smallest_variance_sum) {
        coefficient = static_cast<float>(static_cast<double>(c) / std::sqrt(a * b)) * percent;
    } else {
        coefficient = c > 0.0F ? percent : -percent;
    }
    return success;
}

} // namespace vialto
