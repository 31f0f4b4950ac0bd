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
constexpr std::size_t reach = 24;
constexpr double read_past_joint = 0.2; // m

const std::string fit = "101 2 polycurvfit/joint_func/jntfault_drv/joint_fault_dlldrv: ";
const std::string no_fit = fit + "error calling imsl drcurv";

// A profile of 20 m, in mm: two slabs that meet at 10 m, at sample 100 counted from 1.
struct Slabs {
    double approach_height = 3.0; // mm, of the line of either slab at the joint
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
    EventRecord record;

    // Returns the event, empty after a success.
    std::string run(const std::vector<float>& profile, const std::vector<double>& joints,
                    float window = 200.0F, float step = 0.1F) {
        faults.assign(joints.size(), untouched);
        const bool done = joint_fault_dlldrv(static_cast<std::int32_t>(profile.size()),
                                             static_cast<std::int32_t>(joints.size()), step, window,
                                             profile.data(), joints.data(), faults.data(),
                                             record) == vialto_success;
        EXPECT_EQ(record.untouched(), done);
        return done ? std::string{} : record.summary();
    }
};

} // namespace

TEST(JointFault, IsTheHeightOfTheApproachSlabOverTheLeaveSlab) {
    struct Case {
        const char* claim;
        Slabs slabs;
        double fault;
    };
    for (const auto& [claim, slabs, fault] :
         {Case{"a step down is positive", {3, 0, 0, 0}, 3.0},
          Case{"a step up is negative", {0, 5, 0, 0}, -5.0},
          Case{"slabs without a step have none", {0, 0, 8, 8}, 0.0},
          Case{"parallel slabs have the offset of their lines", {2, 0, -30, -30}, 2.0},
          Case{"opening slabs are read past the joint", {0, 0, 10, -10}, 20 * read_past_joint}}) {
        Faults found;
        EXPECT_EQ(found.run(slabs.profile(), {10.0}), "") << claim;
        EXPECT_NEAR(static_cast<double>(found.faults[0]), fault, 2e-5) << claim;
    }
}

TEST(JointFault, WindowAndReachBoundWhatIsFitted) {
    // A window of 500 mm takes five samples from each slab of 24; a sample that is not a number
    // shows whether it is read.
    struct Case {
        std::size_t sample;
        float window;
        bool read;
        double joint = 10.0;
    };
    for (const auto& [sample, window, read, joint] :
         {Case{100 - reach - 1, 500.0F, false}, Case{100 - reach, 500.0F, true},
          Case{100 - 6, 500.0F, true}, Case{100 - 5, 500.0F, false}, Case{100, 500.0F, false},
          Case{100 + 5, 500.0F, false}, Case{100 + 6, 500.0F, true},
          Case{100 + reach, 500.0F, true}, Case{100 + reach + 1, 500.0F, false},
          Case{100 - 1, 99.0F, true}, Case{100, 99.0F, false},
          // In 64-bit a window of 300 mm would take two samples, in 32-bit it takes three.
          Case{100 - 4, 300.0F, true}, Case{100 - 3, 300.0F, false},
          // A window of less than nothing reaches over the joint, up to the whole stretch.
          Case{100, -150.0F, true}, Case{100 - reach - 1, -1e30F, false},
          // A joint at 10.05 m stands at 100.5 intervals in 32-bit, at fewer in 64-bit.
          Case{101 + reach, 200.0F, true, 10.05}}) {
        Faults found;
        std::vector<float> profile = Slabs{}.profile();
        profile[sample - 1] = nan;
        EXPECT_EQ(found.run(profile, {joint}, window), read ? fit + "x or y data contains NaN" : "")
            << sample << " " << window;
    }
}

TEST(JointFault, IsTheDifferenceOfHeightsIn32Bit) {
    // Two level slabs of 22 samples, 10 and 12 of them raised: 10/22 and 12/22 of a millimetre
    // above a height at which 32 bits hold whole millimetres only.
    std::vector<float> profile(200, 8388608.0F);
    for (const int k : {75,  76,  77,  78,  79,  92,  93,  94,  95,  96,  102,
                        103, 104, 105, 106, 107, 118, 119, 120, 121, 122, 123}) {
        profile[static_cast<std::size_t>(k)] += 1.0F;
    }
    Faults found;
    EXPECT_EQ(found.run(profile, {10.0}), "");
    EXPECT_EQ(found.faults[0], -1.0F);
}

TEST(JointFault, JointNearAnEndKeepsTheHostsValue) {
    Faults found;
    // Samples 25 and 176 are the first and the last with the whole reach on both sides.
    EXPECT_EQ(found.run(Slabs{}.profile(), {0.0, 0.1, 2.4, 2.5, 10.0, 17.6, 17.7, 20.0}), "");
    EXPECT_EQ(found.faults, (std::vector<float>{untouched, untouched, untouched, 0.0F, 3.0F, 0.0F,
                                                untouched, untouched}));
}

TEST(JointFault, JointOffTheProfileStopsTheAnalysis) {
    for (const double joint : {20.1, -0.1, 1e30, -1e30, infinity, -infinity}) {
        Faults found;
        EXPECT_EQ(found.run(Slabs{}.profile(), {10.0, joint, 10.0}),
                  "101 2 jntfault_drv/joint_fault_dlldrv: profile segment "
                  "for current joint is not defined properly");
        EXPECT_EQ(found.faults, (std::vector<float>{3.0F, untouched, untouched})) << joint;
    }
}

TEST(JointFault, WindowThatLeavesNoSlabFailsTheFit) {
    struct Case {
        double joint;
        float window, step;
        bool fitted;
    };
    for (const auto& [joint, window, step, fitted] :
         {Case{10.0, 2200.0F, 0.1F, true}, Case{10.0, 2300.0F, 0.1F, false},
          Case{10.0, 2400.0F, 0.1F, false}, Case{10.0, 1e30F, 0.1F, false},
          // An interval of two thirds of the reach leaves slabs of one sample.
          Case{50.0, 0.0F, 1.62F, true}, Case{50.0, 0.0F, 1.63F, false},
          // So does the first sample with the next one, which are as many as are needed there.
          Case{2.0, 0.0F, 2.0F, false}, Case{2.0, -2000.0F, 2.0F, true},
          // One beyond twice the reach leaves stretches of one sample, also ahead of the first.
          Case{0.0, 0.0F, 5.0F, false}, Case{0.0, -1e30F, 5.0F, false},
          Case{50.0, 0.0F, 5.0F, false}, Case{50.0, -1e30F, 5.0F, false}}) {
        Faults found;
        EXPECT_EQ(found.run(Slabs{}.profile(), {joint}, window, step), fitted ? "" : no_fit);
        EXPECT_EQ(found.faults[0] == untouched, !fitted) << joint << " " << window << " " << step;
    }
}

TEST(JointFault, UnusualSizesAndIntervalsStayInsideTheArrays) {
    const auto least = std::numeric_limits<std::int32_t>::min();
    const TemporaryDirectory directory;
    const double joint = 0.0;
    float fault = untouched;
    EventRecord event;
    for (const std::int32_t size : {0, least}) {
        EXPECT_EQ(joint_fault_dlldrv(size, size, 0.1F, 1.0F, nullptr, nullptr, nullptr, event),
                  vialto_success);
    }
    // Half a stretch of more samples than an index can count: every joint is near an end.
    EXPECT_EQ(joint_fault_dlldrv(least, 1, 1e-30F, 1.0F, nullptr, &joint, &fault, event),
              vialto_success);
    Faults found;
    EXPECT_EQ(found.run(Slabs{}.profile(), {std::nan("")}), ""); // stands at the start
    EXPECT_EQ(found.faults[0], fault);
    std::vector<float> infinite = Slabs{}.profile();
    infinite[80] = static_cast<float>(infinity);
    EXPECT_EQ(found.run(infinite, {10.0}), "");
    EXPECT_TRUE(std::isnan(found.faults[0]));
    EXPECT_EQ(found.run(Slabs{}.profile(), {10.0}, 1.0F, 0.0F),
              "100 2 joint_fault_dlldrv: xStepSize is not a positive finite number");
    EXPECT_EQ(fault, untouched);
}

TEST(JointFault, DiagnosticFileTellsOfSettingsAndSlopes) {
    Faults found;
    EXPECT_EQ(found.run(Slabs{3, 0, 4, -6}.profile(), {1.0, 10.0}), "");
    const std::string text = found.directory.text_of("joint_fault_dlldrv.txt");
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
