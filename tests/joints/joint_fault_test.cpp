#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

constexpr float untouched = -77.0F;
constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// At 0.1 m: 24 samples from a joint to either end of its stretch, the fault read at the second
// sample past the joint (half of the three in 0.3 m, cut, and one more).
constexpr float interval = 0.1F;
constexpr std::int32_t reach = 24;
constexpr double read_past_joint = 0.2; // m

// A profile of 20 m, in mm: two slabs that meet at 10 m.
struct Slabs {
    double approach_height = 0.0; // mm, of the line of either slab at the joint
    double leave_height = 0.0;
    double approach_slope = 0.0; // mm/m, in the direction of travel
    double leave_slope = 0.0;

    [[nodiscard]] std::vector<float> profile() const {
        std::vector<float> elevations(200);
        for (std::size_t i = 0; i < elevations.size(); ++i) {
            const double past_joint = static_cast<double>(i + 1) * 0.1 - 10.0;
            elevations[i] =
                static_cast<float>(past_joint < 0.05 ? approach_height + approach_slope * past_joint
                                                     : leave_height + leave_slope * past_joint);
        }
        return elevations;
    }
};

struct Faults {
    TemporaryDirectory directory;
    std::vector<float> faults;
    EventRecord event;

    std::int32_t run(const std::vector<float>& profile, const std::vector<double>& joints,
                     float window = 200.0F, float step = interval) {
        faults.assign(joints.size(), untouched);
        return joint_fault_dlldrv(static_cast<std::int32_t>(profile.size()),
                                  static_cast<std::int32_t>(joints.size()), step, window,
                                  profile.data(), joints.data(), faults.data(), event);
    }
};

} // namespace

TEST(JointFault, IsTheHeightOfTheApproachSlabOverTheLeaveSlab) {
    struct Case {
        const char* claim;
        Slabs slabs;
        double fault;
    };
    const Case cases[] = {
        {"a step down is positive", {.approach_height = 3.0}, 3.0},
        {"a step up is negative", {.leave_height = 5.0}, -5.0},
        {"slabs without a step have none", {.approach_slope = 8.0, .leave_slope = 8.0}, 0.0},
        {"parallel slabs have the offset of their lines",
         {.approach_height = 2.0, .approach_slope = -30.0, .leave_slope = -30.0},
         2.0},
        {"slabs that open are read past the joint",
         {.approach_slope = 10.0, .leave_slope = -10.0},
         20.0 * read_past_joint},
    };
    for (const Case& c : cases) {
        Faults faults;
        ASSERT_EQ(faults.run(c.slabs.profile(), {10.0}), vialto_success) << c.claim;
        EXPECT_NEAR(static_cast<double>(faults.faults[0]), c.fault, 2e-5) << c.claim;
        EXPECT_TRUE(faults.event.untouched());
    }
}

TEST(JointFault, WindowAndReachBoundWhatIsFitted) {
    // The joint is sample 100, counted from 1. A window of 500 mm takes five samples from each
    // slab of 24; a sample that is not a number shows whether it is read.
    struct Case {
        std::size_t sample;
        float window;
        bool read;
    };
    for (const auto& [sample, window, read] :
         {Case{100 - reach - 1, 500.0F, false}, Case{100 - reach, 500.0F, true},
          Case{100 - 6, 500.0F, true}, Case{100 - 5, 500.0F, false}, Case{100, 500.0F, false},
          Case{100 + 5, 500.0F, false}, Case{100 + 6, 500.0F, true},
          Case{100 + reach, 500.0F, true}, Case{100 + reach + 1, 500.0F, false},
          Case{100 - 1, 99.0F, true}, Case{100, 99.0F, false},
          // In 64-bit a window of 300 mm would take two samples, in 32-bit it takes three.
          Case{100 - 4, 300.0F, true}, Case{100 - 3, 300.0F, false},
          // A window of less than nothing reaches over the joint, up to the whole stretch.
          Case{100, -150.0F, true}, Case{100 - reach - 1, -1e30F, false}}) {
        Faults faults;
        std::vector<float> profile = Slabs{.approach_height = 3.0}.profile();
        profile[sample - 1] = nan;
        const bool failed = faults.run(profile, {10.0}, window) != vialto_success;
        EXPECT_EQ(failed, read) << sample << " " << window;
        if (failed) {
            EXPECT_EQ(faults.event.summary(),
                      "101 2 polycurvfit/joint_func/jntfault_drv/joint_fault_dlldrv: x or y data "
                      "contains NaN");
        }
    }
}

TEST(JointFault, JointStandsAtTheNearestSampleIn32Bit) {
    // 10.05 m are 100.5 intervals in 32-bit and fewer in 64-bit.
    std::vector<float> profile = Slabs{.approach_height = 3.0}.profile();
    profile[101 + reach - 1] = nan;
    Faults hundredth;
    EXPECT_EQ(hundredth.run(profile, {10.0}), vialto_success);
    Faults next;
    EXPECT_EQ(next.run(profile, {10.05}), vialto_failure);
}

TEST(JointFault, IsTheDifferenceOfHeightsIn32Bit) {
    // Two level slabs of 22 samples, 10 and 12 of them raised: 10/22 and 12/22 of a millimetre
    // above a height at which 32 bits hold whole millimetres only.
    constexpr float height = 8388608.0F;
    std::vector<float> profile(200, height);
    for (std::size_t k = 0; k < 5; ++k) {
        profile[75 + k] = profile[96 - k] = height + 1.0F;
    }
    for (std::size_t k = 0; k < 6; ++k) {
        profile[102 + k] = profile[123 - k] = height + 1.0F;
    }
    Faults faults;
    ASSERT_EQ(faults.run(profile, {10.0}), vialto_success);
    EXPECT_EQ(faults.faults[0], -1.0F);
}

TEST(JointFault, JointNearAnEndKeepsTheHostsValue) {
    Faults faults;
    const std::vector<float> profile = Slabs{.approach_height = 3.0}.profile();
    // Samples 25 and 176 are the first and the last with the whole reach on both sides.
    ASSERT_EQ(faults.run(profile, {0.0, 0.1, 2.4, 2.5, 10.0, 17.6, 17.7, 20.0}), vialto_success);
    EXPECT_EQ(faults.faults[0], untouched);
    EXPECT_EQ(faults.faults[1], untouched);
    EXPECT_EQ(faults.faults[2], untouched);
    EXPECT_EQ(faults.faults[3], 0.0F);
    EXPECT_NEAR(faults.faults[4], 3.0F, 1e-5F);
    EXPECT_EQ(faults.faults[5], 0.0F);
    EXPECT_EQ(faults.faults[6], untouched);
    EXPECT_EQ(faults.faults[7], untouched);
}

TEST(JointFault, JointOffTheProfileStopsTheAnalysis) {
    const double off_profile[] = {20.1, -0.1, 1e30, -1e30, infinity, -infinity};
    for (const double joint : off_profile) {
        Faults faults;
        EXPECT_EQ(faults.run(Slabs{.approach_height = 3.0}.profile(), {10.0, joint, 10.0}),
                  vialto_failure);
        EXPECT_EQ(faults.event.summary(), "101 2 jntfault_drv/joint_fault_dlldrv: profile segment "
                                          "for current joint is not defined properly");
        EXPECT_NEAR(faults.faults[0], 3.0F, 1e-5F);
        EXPECT_EQ(faults.faults[1], untouched);
        EXPECT_EQ(faults.faults[2], untouched);
    }
}

TEST(JointFault, WindowThatLeavesNoSlabFailsTheFit) {
    const std::vector<float> profile = Slabs{.approach_height = 3.0}.profile();
    const char* summary = "101 2 polycurvfit/joint_func/jntfault_drv/joint_fault_dlldrv: error "
                          "calling imsl drcurv";
    for (const float window : {2300.0F, 2400.0F, 1e30F}) {
        Faults faults;
        EXPECT_EQ(faults.run(profile, {10.0}, window), vialto_failure);
        EXPECT_EQ(faults.event.summary(), summary);
        EXPECT_EQ(faults.faults[0], untouched);
    }
    Faults two_samples;
    EXPECT_EQ(two_samples.run(profile, {10.0}, 2200.0F), vialto_success);
    // An interval of two thirds of the reach leaves slabs of one sample.
    Faults one_sample;
    EXPECT_EQ(one_sample.run(profile, {50.0}, 0.0F, 1.63F), vialto_failure);
    EXPECT_EQ(one_sample.event.summary(), summary);
    EXPECT_EQ(one_sample.run(profile, {50.0}, 0.0F, 1.62F), vialto_success);
    // One beyond twice the reach leaves stretches of one sample, also ahead of the first.
    for (const double joint : {0.0, 50.0}) {
        for (const float window : {0.0F, -1e30F}) {
            Faults coarse;
            EXPECT_EQ(coarse.run(profile, {joint}, window, 5.0F), vialto_failure);
            EXPECT_EQ(coarse.event.summary(), summary);
        }
    }
}

TEST(JointFault, UnusualSizesAndIntervalsStayInsideTheArrays) {
    const auto least = std::numeric_limits<std::int32_t>::min();
    const TemporaryDirectory directory;
    float fault = untouched;
    const double joint = 0.0;
    EventRecord event;
    EXPECT_EQ(joint_fault_dlldrv(0, 0, interval, 1.0F, nullptr, nullptr, nullptr, event),
              vialto_success);
    EXPECT_EQ(joint_fault_dlldrv(least, least, interval, 1.0F, nullptr, nullptr, nullptr, event),
              vialto_success);
    // Half a stretch of more samples than an index can count: every joint is near an end.
    EXPECT_EQ(joint_fault_dlldrv(least, 1, 1e-30F, 1.0F, nullptr, &joint, &fault, event),
              vialto_success);
    EXPECT_EQ(fault, untouched);
    EXPECT_TRUE(event.untouched());
    Faults not_a_place; // a location that is not a number stands at the start
    EXPECT_EQ(not_a_place.run(Slabs{}.profile(), {std::nan("")}), vialto_success);
    EXPECT_EQ(not_a_place.faults[0], untouched);
    Faults unbounded; // a slab that is not finite
    std::vector<float> infinite = Slabs{}.profile();
    infinite[80] = std::numeric_limits<float>::infinity();
    EXPECT_EQ(unbounded.run(infinite, {10.0}), vialto_success);
    EXPECT_TRUE(std::isnan(unbounded.faults[0]));
    Faults not_a_step;
    EXPECT_EQ(not_a_step.run(Slabs{}.profile(), {10.0}, 1.0F, 0.0F), vialto_failure);
    EXPECT_EQ(not_a_step.event.summary(),
              "100 2 joint_fault_dlldrv: xStepSize is not a positive finite number");
}

TEST(JointFault, DiagnosticFileTellsOfSettingsAndSlopes) {
    Faults faults;
    const Slabs slabs{.approach_height = 3.0, .approach_slope = 4.0, .leave_slope = -6.0};
    ASSERT_EQ(faults.run(slabs.profile(), {1.0, 10.0}), vialto_success);
    const std::string text = faults.directory.text_of("joint_fault_dlldrv.txt");
    EXPECT_EQ(text.find(" Num profile Points       :  200\n"
                        " Num Joints               :  2\n"
                        " Sample Interval (m)      :  0.1\n"
                        " Joint Window (mm)        :  200\n"
                        " done with the jntfault_drv call\n"),
              0U);
    // The right slope counts against the direction of travel: 6, and the mean is 5.
    EXPECT_NE(text.find("\n  1 too near an end of the profile\n  2 4 6 5 "), std::string::npos)
        << text;
}

} // namespace vialto::test
