#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "joints/polycurvfit.hpp"
#include "support/cases.hpp"
#include "support/current_event.hpp"
#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

using Profile = std::vector<float>;
using Values = std::vector<double>;

constexpr double missing = std::numeric_limits<double>::quiet_NaN();

// Two slabs of 100 samples. The approach slab is so many mm higher at their joint, which is sample
// 100 counted from 1; the slopes are in mm a sample, in the direction of travel.
Profile slabs(double height = 3.0, double approach = 0.0, double leave = 0.0) {
    Profile profile;
    for (int i = -99; i <= 100; ++i) {
        profile.push_back(static_cast<float>(i > 0 ? leave * i : height + approach * i));
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

// Two slabs with a joint at 10 m, a window of 200 mm to either side.
struct Request {
    Profile profile = slabs();
    Values joints{10.0};   // m
    float window = 200.0F; // mm
    float step = 0.1F;     // m
};

constexpr float untouched = -77.0F;

// To a thousandth of a millimetre.
void gives(const Claim& claim, const Request& request, const std::vector<float>& faults,
           const std::string& failure = "") {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    const auto& [profile, joints, window, step] = request;
    std::vector<float> found(joints.size(), untouched);
    EventRecord event;
    const std::int32_t code =
        joint_fault_dlldrv(size_of(profile), size_of(joints), step, window, profile.data(),
                           joints.data(), found.data(), event);
    EXPECT_EQ(event.outcome(code), failure);
    EXPECT_TRUE(same(found, faults, 5e-4F));
}

void fails(const Claim& claim, const Request& request, const std::string& failure) {
    gives(claim, request, std::vector<float>(request.joints.size(), untouched), failure);
}

const std::string fit = "101 2 polycurvfit/joint_func/jntfault_drv/joint_fault_dlldrv: ";
const std::string no_number = fit + "x or y data contains NaN";
const std::string no_fit = fit + "error calling imsl drcurv";

TEST(JointFault, IsTheHeightOfTheApproachSlabOverTheLeaveSlab) {
    const TemporaryDirectory directory;
    gives("the offset of parallel lines", {slabs(2, -3, -3)}, {2});
    // Opening slabs tell how many samples past the joint they are read.
    gives("read 7 samples past the joint", {slabs(0, 1, -1), {2.5}, 0, 0.025F}, {14});
    gives("read 2 samples past the joint", {slabs(0, 1, -1)}, {4});
    gives("lines through four samples, at 1.3 mm and 0.7 mm above whole millimetres",
          {changed(8388609.0F, {99, 101}, Profile(200, 8388608.0F)), {60}, 0, 0.6F}, {0});
    gives("an interval of two thirds of the reach leaves slabs of one sample",
          {.joints = {162}, .window = 0, .step = 1.62F}, {3});
    fails("one of a little more leaves none", {.joints = {163}, .window = 0, .step = 1.63F},
          no_fit);
}

// A sample that is not a number shows whether it is read.
TEST(JointFault, ReadsTheReachOfTheWindowOnEitherSideButNotTheWindow) {
    const TemporaryDirectory directory;
    gives("of 24 samples a window of 500 mm takes five",
          {changed(NAN, {75, 95, 105, 125}), {10}, 500}, {3});
    fails("the first sample of the reach", {changed(NAN, {76}), {10}, 500}, no_number);
    fails("the first behind the window", {changed(NAN, {106}), {10}, 500}, no_number);
    fails("the last of a window of 99 mm", {changed(NAN, {99}), {10}, 99}, no_number);
    gives("300 mm are three samples in 32-bit, two in 64-bit", {changed(NAN, {97, 103}), {10}, 300},
          {3});
    gives("below zero it reaches over the joint, at most to the whole stretch",
          {changed(NAN, {75, 125}), {10}, -1e30F}, {0});
    fails("10.05 m are 100.5 intervals in 32-bit, fewer in 64-bit", {changed(NAN, {125}), {10.05}},
          no_number);
    fails("as wide as all roads", {.window = 1e30F}, no_fit);
    gives("two samples suffice at the first one", {.joints = {2}, .window = -2000, .step = 2}, {0});
    fails("an interval beyond twice the reach leaves no sample",
          {.joints = {0}, .window = -1e30F, .step = 5}, no_fit);
}

TEST(JointFault, IsLeftAloneWithoutTheWholeReachOnBothSides) {
    const TemporaryDirectory directory;
    constexpr float none = untouched;
    gives("samples 25 and 176 are the first and the last; no number stands at the start",
          {.joints = {0, 0.1, 2.4, 2.5, 17.6, 17.7, 20, missing}},
          {none, none, none, 0, 0, none, none, none});
    gives("a joint beyond the road ends the analysis", {.joints = {10, 20.1, 10}}, {3, none, none},
          "101 2 jntfault_drv/joint_fault_dlldrv: profile segment for current joint is not "
          "defined properly");
    gives("nothing to do", {.profile = {}, .joints = {}, .step = NAN}, {});
}

TEST(JointFault, DiagnosticFileTellsOfTheSlopesOfEachJoint) {
    const TemporaryDirectory directory;
    // The right slope counts against the direction of travel: 6, and the mean is 5.
    gives("the last one beyond the road", {slabs(3, 0.4, -0.6), {1.0, 10.0, 30.0}},
          {untouched, 5, untouched},
          "101 2 jntfault_drv/joint_fault_dlldrv: profile segment for current joint is not "
          "defined properly");
    EXPECT_NE(directory.text_of("joint_fault_dlldrv.txt")
                  .find(" Joint, left slope, right slope, mean slope (mm/m), fault (mm)\n"
                        "  1 too near an end of the profile\n"
                        "  2 4 6 5 5\n"),
              std::string::npos);
}

void fits(const Claim& claim, const Values& x, const Values& y, std::optional<std::int32_t> degree,
          double value_at_1, const std::string& event = "") {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    reset_event();
    Values values{7.0};
    EXPECT_EQ(polycurvfit(x, y, Values{1.0}, values, degree), event.empty() ? success : failure);
    EXPECT_EQ(summary_of_current_event(), event);
    EXPECT_NEAR(values[0] - 7.0, value_at_1, 1e-8);
}

TEST(PolynomialFit, AddsTheValueOfThatOfLeastSquares) {
    // The binomials of 10, of alternating sign, times a polynomial of degree k are orthogonal to all
    // degrees below 10 - k; these are sums that have terms of degrees 8 and 9 only.
    const Values x{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    const Values y{445, -2750, 6435, -5880, -1470, 6300, -1050, -6360, 6705, -2830, 455};
    // Sums over x of (x - 7/4)(y - 5/4) and (x - 7/4)^2 are 21/4 and 35/4.
    fits("a line through four points", {0, 1, 2, 4}, {0, 2, 0, 3}, 1, 0.8);
    fits("two points have a line", {0, 2}, {1, 5}, {}, 3);
    fits("three have a parabola", {0, 1, 2}, {1, 4, 1}, {}, 2);
    fits("eleven have degree 8 without being asked", x, y, {}, -2790);
    fits("degree 9", x, y, 9, -2750);
    fits("two abscissae determine a line", {0, 0, 2, 2}, {1, 3, 5, 8}, 5, 4.25);
}

TEST(PolynomialFit, RefusesWhatDeterminesNone) {
    const std::string event = "101 2 polycurvfit: ";
    const std::string no_fit_at_all = event + "error calling imsl drcurv";
    fits("degree 10", {1, 2}, {1, missing}, 10, 0, event + "degrees of polynomial exceeds 9");
    fits("no number", {missing, 2}, {1, missing}, 1, 0, event + "x or y data contains NaN");
    fits("one abscissa", {2, 2, 2}, {1, 2, 3}, 1, 0, no_fit_at_all);
    fits("degree -1", {1, 2}, {1, 2}, -1, 0, no_fit_at_all);
    fits("no points", {}, {}, {}, 0, no_fit_at_all);
    fits("one point", {2}, {1}, {}, 0, event + "cannot do curve with one point");
}

} // namespace
} // namespace vialto::test
