#include "joints/joint_fault.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "joints/polycurvfit.hpp"
#include "numeric/rounding.hpp"
#include "numeric/units.hpp"

namespace vialto {

namespace {

constexpr std::int32_t line_degree = 1;
constexpr float reading_zone = 0.3F; // m past the joint; the fault is read behind half of it

// The samples around one joint, counted from 1 as in the whole profile; both ends belong to it.
struct Stretch {
    std::int64_t start;
    std::int64_t end;

    [[nodiscard]] std::int64_t length() const { return end - start + 1; }
};

// Past either end of the profile the stretch shrinks to what lies on the far side of the joint, or
// to what lies around it: shorter than needed, and told by that. The one exception is a joint at
// the first sample where half a stretch is one sample: with the next one it has the two that are
// needed.
Stretch stretch_around(std::int64_t joint, std::int64_t half, std::int64_t points) {
    Stretch stretch{joint - half, joint + half};
    if (stretch.start < 1) {
        stretch = {joint, 2 * joint};
    }
    if (stretch.end > points) {
        stretch = {2 * joint - points, points};
    }
    return stretch;
}

// The samples of a stretch of the profile. One that begins ahead of the profile comes here only
// where an interval of metres leaves half a stretch without a sample; nothing can be fitted then.
std::span<const float> samples_of(std::span<const float> xProfile, const Stretch& stretch) {
    const std::int64_t start = std::max<std::int64_t>(stretch.start, 1);
    const std::int64_t length = std::max<std::int64_t>(stretch.end - start + 1, 0);
    return xProfile.subspan(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(length));
}

// Where the lines are fitted and read, all counted from 1 along a stretch.
struct Geometry {
    std::int64_t slab;    // samples at each end of the stretch that belong to a slab
    std::int64_t reading; // the sample past the joint at which the fault is read
};

Geometry geometry_of(std::int64_t n, float xStepSize, float xJointWindow) {
    const std::int64_t half = n / 2;
    const std::int64_t outside = half - truncate(m_per_mm * xJointWindow / xStepSize);
    const std::int64_t beyond =
        truncate(static_cast<float>(truncate(reading_zone / xStepSize)) * 0.5F);
    // A window of less than nothing takes in the whole stretch at most.
    return {std::clamp<std::int64_t>(outside, 0, n), beyond + half + 1 + n % 2};
}

// Distance of a sample, counted from 1, from the first of the stretch, m.
double distance(std::int64_t sample, float xStepSize) {
    return static_cast<double>(sample - 1) * static_cast<double>(xStepSize);
}

struct SlabLine {
    float slope;   // mm/m
    float reading; // mm
};

// Fits the line through the slab's points and reads it at the sample `reading`. A slab without a
// point fails in the fit.
ReturnCode fit_slab(std::span<const double> x, std::span<const double> y, float xStepSize,
                    std::int64_t reading, SlabLine& line) {
    const double length = distance(std::ssize(x), xStepSize);
    const std::array<double, 3> xEval{0.0, length, distance(reading, xStepSize)};
    std::array<double, 3> yEval{};
    if (polycurvfit(x, y, xEval, yEval, line_degree) != success) {
        return failure;
    }
    line = {static_cast<float>((yEval[1] - yEval[0]) / length), static_cast<float>(yEval[2])};
    return success;
}

// The work arrays of the fits, one point a sample of a slab.
struct SlabPoints {
    std::vector<double> x; // m
    std::vector<double> y; // mm

    void resize(std::int64_t slab, float xStepSize) {
        x.resize(static_cast<std::size_t>(slab));
        y.resize(x.size());
        for (std::size_t i = 0; i < x.size(); ++i) {
            x[i] = distance(static_cast<std::int64_t>(i) + 1, xStepSize);
        }
    }
};

// One joint, in the middle of the stretch. The right slab is fitted on the stretch read backwards,
// so that the sample at which its line is read counts from the other end.
ReturnCode joint_func(std::span<const float> stretch, float xStepSize, float xJointWindow,
                      SlabPoints& points, JointFault& result) {
    constexpr std::string_view name = "joint_func";
    const auto n = static_cast<std::int64_t>(stretch.size());
    const Geometry geometry = geometry_of(n, xStepSize, xJointWindow);
    points.resize(geometry.slab, xStepSize);

    SlabLine left{};
    std::copy_n(stretch.begin(), points.y.size(), points.y.begin());
    if (fit_slab(points.x, points.y, xStepSize, geometry.reading, left) != success) {
        return pass_failure(name);
    }
    SlabLine right{};
    std::copy_n(stretch.rbegin(), points.y.size(), points.y.begin());
    if (fit_slab(points.x, points.y, xStepSize, n - geometry.reading + 1, right) != success) {
        return pass_failure(name);
    }

    result.left_slope = left.slope;
    // Positive where the slab falls in the direction of travel: deliberate.
    result.right_slope = right.slope;
    result.mean_slope = 0.5F * (result.right_slope + result.left_slope);
    result.fault = left.reading - right.reading;
    return success;
}

} // namespace

ReturnCode jntfault_drv(float xStepSize, float xJointWindow, float xReach,
                        std::span<const float> xProfile, std::span<const double> xJointLoc,
                        std::span<float> xFault, const JointDone& joint_done) {
    constexpr std::string_view name = "jntfault_drv";
    reset_event();
    const std::int64_t half = nint(xReach / xStepSize);
    SlabPoints points;
    for (std::size_t j = 0; j < xJointLoc.size(); ++j) {
        const std::int64_t joint = nint(static_cast<float>(xJointLoc[j]) / xStepSize);
        const Stretch stretch =
            stretch_around(joint, half, static_cast<std::int64_t>(xProfile.size()));
        if (stretch.start > stretch.end) {
            return raise_failure("profile segment for current joint is not defined properly", name);
        }
        JointFault result{};
        result.near_end = stretch.length() < 2 * half;
        if (!result.near_end) {
            if (joint_func(samples_of(xProfile, stretch), xStepSize, xJointWindow, points,
                           result) != success) {
                return pass_failure(name);
            }
            xFault[j] = result.fault;
        }
        joint_done(static_cast<std::int32_t>(j + 1), result);
    }
    return success;
}

} // namespace vialto
