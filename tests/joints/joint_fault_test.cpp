#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <sstream>
#include <tuple>
#include <vector>

#include "joints/polycurvfit.hpp"
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
    const auto& [profile, joints, window, step] = request;
    const std::int32_t code = joint_fault_dlldrv(
        static_cast<std::int32_t>(profile.size()), static_cast<std::int32_t>(joints.size()), step,
        window, profile.data(), joints.data(), found.data(), event);
    EXPECT_EQ(code, event.untouched() ? 1 : 3);
    std::ostringstream text;
    text << (code == 1 ? "" : event.summary());
    for (const float fault : found) {
        text << " " << static_cast<double>(std::lround(fault * 1000.0F)) / 1000.0;
    }
    return text.str();
}

} // namespace

TEST(JointFault, IsTheHeightOfTheApproachSlabOverTheLeaveSlab) {
    const TemporaryDirectory directory;
    const std::string no_stretch = "101 2 jntfault_drv/joint_fault_dlldrv: profile segment for "
                                   "current joint is not defined properly 3 -77 -77";
    const std::string fit = "101 2 polycurvfit/joint_func/jntfault_drv/joint_fault_dlldrv: ";
    const std::string no_number = fit + "x or y data contains NaN -77";
    const std::string no_fit = fit + "error calling imsl drcurv -77";
    const std::pair<Request, std::string> cases[]{
        {{slabs(2, -3, -3)}, " 2"}, // the offset of parallel lines
        // Opening slabs tell how many samples past the joint they are read: 7 and 2.
        {{slabs(0, 1, -1), {2.5}, 0, 0.025F}, " 14"},
        {{slabs(0, 1, -1)}, " 4"},
        // Lines through four samples are read at 1.3 mm and 0.7 mm, at a height at which 32 bits
        // hold whole millimetres only.
        {{changed(8388609.0F, {99, 101}, Profile(200, 8388608.0F)), {60}, 0, 0.6F}, " 0"},
        // Of 24 samples to either side a window of 500 mm takes five. One that is not a number
        // shows whether it is read.
        {{changed(NAN, {75, 95, 105, 125}), {10}, 500}, " 3"},
        {{changed(NAN, {76}), {10}, 500}, no_number},
        {{changed(NAN, {106}), {10}, 500}, no_number},
        {{changed(NAN, {99}), {10}, 99}, no_number},
        // In 64-bit a window of 300 mm would take two samples, in 32-bit it takes three.
        {{changed(NAN, {97, 103}), {10}, 300}, " 3"},
        // A window of less than nothing reaches over the joint, at most to the whole stretch.
        {{changed(NAN, {75, 125}), {10}, -1e30F}, " 0"},
        // A joint at 10.05 m stands at 100.5 intervals in 32-bit, at fewer in 64-bit.
        {{changed(NAN, {125}), {10.05}}, no_number},
        // Samples 25 and 176 are the first and the last with the whole reach on both sides. What
        // is not a number stands at the start.
        {{.joints = {0, 0.1, 2.4, 2.5, 17.6, 17.7, 20, missing}}, " -77 -77 -77 0 0 -77 -77 -77"},
        {{.joints = {10, 20.1, 10}}, no_stretch},
        {{.profile = {}, .joints = {}, .step = NAN}, ""}, // nothing to do
        {{.window = 1e30F}, no_fit},
        // An interval of two thirds of the reach leaves slabs of one sample.
        {{.joints = {162}, .window = 0, .step = 1.62F}, " 3"},
        {{.joints = {163}, .window = 0, .step = 1.63F}, no_fit},
        // The first sample and the next one are as many as are needed there.
        {{.joints = {2}, .window = -2000, .step = 2}, " 0"},
        // An interval beyond twice the reach leaves stretches of one sample, here of none.
        {{.joints = {0}, .window = -1e30F, .step = 5}, no_fit}};
    for (const auto& [request, result] : cases) {
        EXPECT_EQ(faults(request), result);
    }
}

TEST(JointFault, DiagnosticFileTellsOfSettingsAndSlopes) {
    const TemporaryDirectory directory;
    EXPECT_EQ(faults({slabs(3, 0.4, -0.6), {1.0, 10.0}}), " -77 5");
    const std::string told = directory.text_of("joint_fault_dlldrv.txt");
    // The right slope counts against the direction of travel: 6, and the mean is 5.
    EXPECT_EQ(told, " Num profile Points       :  200\n"
                    " Num Joints               :  2\n"
                    " Sample Interval (m)      :  0.1\n"
                    " Joint Window (mm)        :  200\n"
                    " Joint, left slope, right slope, mean slope (mm/m), fault (mm)\n"
                    "  1 too near an end of the profile\n"
                    "  2 4 6 5 5\n"
                    " done with the jntfault_drv call\n");
    // The joints ahead of one that fails keep their lines.
    EXPECT_NE(faults({slabs(3, 0.4, -0.6), {1.0, 10.0, 30.0}}), "");
    const std::string lines =
        told.substr(told.find(" Joint, "), told.find(" done") - told.find(" Joint, "));
    EXPECT_NE(directory.text_of("joint_fault_dlldrv.txt").find(lines), std::string::npos);
}

TEST(PolynomialFit, IsThatOfLeastSquaresOrRefused) {
    const std::string event = "101 2 polycurvfit: ";
    // The binomials of 10, of alternating sign, times a polynomial of degree k are orthogonal to all
    // degrees below 10 - k; these are sums that have terms of degrees 8 and 9 only.
    const Values eleventh{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    const Values eleven{445, -2750, 6435, -5880, -1470, 6300, -1050, -6360, 6705, -2830, 455};
    const std::string no_fit = event + "error calling imsl drcurv";
    // The failure, the points, the degree; the value at 1.
    using Case = std::tuple<std::string, Values, Values, std::optional<std::int32_t>, double>;
    for (const auto& [failure, x, y, degree, added] :
         {// Sums over x 0 1 2 4 of (x - 7/4)(y - 5/4) and (x - 7/4)^2 are 21/4 and 35/4.
          Case{"", {0, 1, 2, 4}, {0, 2, 0, 3}, 1, 0.8}, Case{"", {0, 2}, {1, 5}, {}, 3},
          Case{"", {0, 1, 2}, {1, 4, 1}, {}, 2}, Case{"", eleventh, eleven, {}, -2790},
          Case{"", eleventh, eleven, 9, -2750},
          // Two abscissae determine no more than a line.
          Case{"", {0, 0, 2, 2}, {1, 3, 5, 8}, 5, 4.25},
          Case{event + "degrees of polynomial exceeds 9", {1, 2}, {1, missing}, 10, 0},
          Case{event + "x or y data contains NaN", {missing, 2}, {1, missing}, 1, 0},
          Case{no_fit, {2, 2, 2}, {1, 2, 3}, 1, 0}, Case{no_fit, {1, 2}, {1, 2}, -1, 0},
          Case{no_fit, {}, {}, {}, 0},
          Case{event + "cannot do curve with one point", {2}, {1}, {}, 0}}) {
        reset_event();
        Values values{7.0};
        EXPECT_EQ(polycurvfit(x, y, Values{1.0}, values, degree) == success, failure.empty());
        EXPECT_EQ(summary_of_current_event(), failure);
        EXPECT_NEAR(values[0], 7.0 + added, 1e-8);
    }
}

} // namespace vialto::test
