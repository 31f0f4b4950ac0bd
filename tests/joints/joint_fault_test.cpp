#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <sstream>
#include <vector>

#include "joints/polycurvfit.hpp"
#include "support/current_event.hpp"
#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

using Profile = std::vector<float>;
using Values = std::vector<double>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr double missing = std::numeric_limits<double>::quiet_NaN();

// Two slabs of 100 samples, the approach slab so many mm higher at their joint, which is sample 100
// counted from 1, and their slopes in the direction of travel, in mm/m.
Profile slabs(double height = 3.0, double approach_slope = 0.0, double leave_slope = 0.0,
              double interval = 0.1) {
    Profile profile;
    for (int i = -99; i <= 100; ++i) {
        const double line =
            i > 0 ? leave_slope * i * interval : height + approach_slope * i * interval;
        profile.push_back(static_cast<float>(line));
    }
    return profile;
}

// With another height at some samples, counted from 1.
Profile changed(float height, const std::vector<std::size_t>& samples, Profile profile = slabs()) {
    for (const std::size_t sample : samples) {
        profile[sample - 1] = height;
    }
    return profile;
}

struct Request {
    Profile profile = slabs();
    Values joints{10.0};
    float window = 200.0F;
    float step = 0.1F;
};

// The event, if there is one, and the faults to a thousandth; untouched ones read -77.
std::string faults(const Request& request) {
    std::vector<float> found(request.joints.size(), -77.0F);
    EventRecord event;
    const bool done =
        joint_fault_dlldrv(static_cast<std::int32_t>(request.profile.size()),
                           static_cast<std::int32_t>(found.size()), request.step, request.window,
                           request.profile.data(), request.joints.data(), found.data(),
                           event) == vialto_success;
    EXPECT_EQ(event.untouched(), done);
    std::ostringstream text;
    text << (done ? "" : event.summary());
    for (const float fault : found) {
        const double rounded = static_cast<double>(std::lround(fault * 1000.0F)) / 1000.0;
        text << " " << (std::isnan(fault) ? missing : rounded);
    }
    return text.str();
}

} // namespace

TEST(JointFault, IsTheHeightOfTheApproachSlabOverTheLeaveSlab) {
    const TemporaryDirectory directory;
    // 10 and 12 samples of level slabs of 22, raised by 1 mm to means of 10/22 and 12/22 mm, at a
    // height at which 32 bits hold whole millimetres only.
    const Profile high =
        changed(8388609.0F, {76,  77,  78,  79,  80,  93,  94,  95,  96,  97,  103,
                             104, 105, 106, 107, 108, 119, 120, 121, 122, 123, 124},
                Profile(200, 8388608.0F));
    const std::string no_stretch = "101 2 jntfault_drv/joint_fault_dlldrv: profile segment for "
                                   "current joint is not defined properly 3 -77 -77";
    const std::string fit = "101 2 polycurvfit/joint_func/jntfault_drv/joint_fault_dlldrv: ";
    const std::string no_number = fit + "x or y data contains NaN -77";
    const std::string no_fit = fit + "error calling imsl drcurv -77";
    const std::pair<Request, std::string> cases[]{
        {{slabs(3)}, " 3"},
        {{slabs(-5)}, " -5"},
        {{slabs(2, -30, -30)}, " 2"}, // the offset of parallel lines
        {{high}, " -1"},
        // Opening slabs, 20 mm/m, tell how far past the joint they are read: 0.175 m to 1 m.
        {{slabs(0, 10, -10, 0.025), {2.5}, 0, 0.025F}, " 3.5"},
        {{slabs(0, 10, -10)}, " 4"},
        {{slabs(0, 10, -10, 0.3), {30}, 0, 0.3F}, " 6"},
        {{slabs(0, 10, -10, 1.0), {100}, 0, 1.0F}, " 20"},
        // Of 24 samples to either side a window of 500 mm takes five. One that is not a number
        // shows whether it is read.
        {{changed(nan, {75, 95, 105, 125}), {10}, 500}, " 3"},
        {{changed(nan, {76}), {10}, 500}, no_number},
        {{changed(nan, {94}), {10}, 500}, no_number},
        {{changed(nan, {106}), {10}, 500}, no_number},
        {{changed(nan, {124}), {10}, 500}, no_number},
        {{changed(nan, {99}), {10}, 99}, no_number},
        {{changed(nan, {100}), {10}, 99}, " 3"},
        // In 64-bit a window of 300 mm would take two samples, in 32-bit it takes three.
        {{changed(nan, {97, 103}), {10}, 300}, " 3"},
        // A window of less than nothing reaches over the joint, up to the whole stretch.
        {{changed(nan, {100}), {10}, -150}, no_number},
        {{changed(nan, {75, 125}), {10}, -1e30F}, " 0"},
        // A joint at 10.05 m stands at 100.5 intervals in 32-bit, at fewer in 64-bit.
        {{changed(nan, {125}), {10.05}}, no_number},
        // Samples 25 and 176 are the first and the last with the whole reach on both sides.
        {{.joints = {0, 0.1, 2.4, 2.5, 17.6, 17.7, 20}}, " -77 -77 -77 0 0 -77 -77"},
        {{.joints = {missing}}, " -77"}, // stands at the start
        {{.joints = {0}, .step = 1e-30F}, " -77"},
        {{.joints = {}}, ""},
        {{.joints = {10, 20.1, 10}}, no_stretch},
        {{.joints = {10, -0.1, 10}}, no_stretch},
        {{.joints = {10, -HUGE_VAL, 10}}, no_stretch},
        {{.window = 2200}, " 3"},
        {{.window = 2300}, no_fit},
        {{.window = 1e30F}, no_fit},
        // An interval of two thirds of the reach leaves slabs of one sample.
        {{.joints = {162}, .window = 0, .step = 1.62F}, " 3"},
        {{.joints = {163}, .window = 0, .step = 1.63F}, no_fit},
        // So does the first sample with the next one, which are as many as are needed there.
        {{.joints = {2}, .window = 0, .step = 2}, no_fit},
        {{.joints = {2}, .window = -2000, .step = 2}, " 0"},
        // One beyond twice the reach leaves stretches of one sample, also ahead of the first.
        {{.joints = {0}, .window = -1e30F, .step = 5}, no_fit},
        {{.joints = {50}, .window = -1e30F, .step = 5}, no_fit},
        {{changed(HUGE_VALF, {81})}, " nan"},
        {{.step = 0}, "100 2 joint_fault_dlldrv: xStepSize is not a positive finite number -77"}};
    for (const auto& [request, result] : cases) {
        EXPECT_EQ(faults(request), result);
    }
}

TEST(JointFault, DiagnosticFileTellsOfSettingsAndSlopes) {
    const TemporaryDirectory directory;
    EXPECT_EQ(faults({slabs(3, 4, -6), {1.0, 10.0}}), " -77 5");
    // The right slope counts against the direction of travel: 6, and the mean is 5.
    EXPECT_EQ(directory.text_of("joint_fault_dlldrv.txt"),
              " Num profile Points       :  200\n"
              " Num Joints               :  2\n"
              " Sample Interval (m)      :  0.1\n"
              " Joint Window (mm)        :  200\n"
              " done with the jntfault_drv call\n"
              " Joint, left slope, right slope, mean slope (mm/m), fault (mm)\n"
              "  1 too near an end of the profile\n"
              "  2 4 6 5 5\n");
}

TEST(PolynomialFit, FollowsAPolynomialOfItsDegree) {
    struct Case {
        std::size_t points, degree;
        std::optional<std::int32_t> given = {}; // otherwise it follows from the number of points
    };
    for (const auto& [points, degree, given] :
         {Case{30, 0, 0}, Case{30, 1, 1}, Case{30, 5, 5}, Case{30, 9, 9}, Case{2, 1}, Case{3, 1},
          Case{4, 2}, Case{9, 7}, Case{10, 8}, Case{11, 8}, Case{40, 8}}) {
        Values x(points);
        Values y(points);
        for (std::size_t i = 0; i < points; ++i) {
            x[i] = 1.0 + 3.0 * static_cast<double>(i) / static_cast<double>(points - 1);
            for (std::size_t power = 0; power <= degree; ++power) {
                y[i] = y[i] * (x[i] - 2.0) + 1.0; // 1 + (x - 2) + (x - 2)^2 + ...
            }
        }
        Values values{20.0};
        PolynomialFit fit;
        ASSERT_EQ(polycurvfit(x, y, Values{3.0}, values, given, &fit), success);
        EXPECT_NEAR(values[0], 20.0 + static_cast<double>(degree + 1), 1e-8) << points;
        EXPECT_EQ(degree < 9 ? fit.coefficients[degree + 1] : 0.0, 0.0) << points;
    }
}

TEST(PolynomialFit, IsThatOfLeastSquaresOrRefused) {
    const std::string event = "101 2 polycurvfit: ";
    struct Case {
        std::string outcome;
        Values x, y;
        std::optional<std::int32_t> degree;
        double added = 0.0; // the value at 1
    };
    for (const auto& [outcome, x, y, degree, added] :
         {// Sums over x 0 1 2 4 of (x - 7/4)(y - 5/4) and (x - 7/4)^2 are 21/4 and 35/4.
          Case{"fitted", {0, 1, 2, 4}, {0, 2, 0, 3}, 1, 0.8},
          // Two abscissae determine no more than a line.
          Case{"fitted", {0, 0, 2, 2}, {1, 3, 5, 8}, 5, 4.25},
          Case{event + "degrees of polynomial exceeds 9", {1, 2}, {1, missing}, 10},
          Case{event + "x or y data contains NaN", {1, 2, 3}, {1, missing, 3}, 1},
          Case{event + "x or y data contains NaN", {missing, 2, 2}, {1, 2, 3}, 1}, // comes first
          Case{event + "error calling imsl drcurv", {2, 2, 2}, {1, 2, 3}, 1},
          Case{event + "error calling imsl drcurv", {1, 2}, {1, 2}, -1},
          Case{event + "error calling imsl drcurv", {}, {}, {}},
          Case{event + "cannot do curve with one point", {2}, {1}, {}}}) {
        reset_event();
        Values values{7.0};
        const bool done = polycurvfit(x, y, Values{1.0}, values, degree) == success;
        EXPECT_EQ(done ? "fitted" : summary_of_current_event(), outcome);
        EXPECT_NEAR(values[0], 7.0 + added, 1e-14);
    }
}

} // namespace vialto::test
