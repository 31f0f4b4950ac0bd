#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "joints/joint_loc_screen.hpp"
#include "support/host.hpp"
#include "support/literal_joint_id.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

using Profile = std::vector<float>;
using Types = std::vector<std::int32_t>;
using Features = std::vector<std::pair<double, std::int32_t>>; // location and type

constexpr std::int32_t untouched_type = -77;
constexpr double untouched_location = -77.0;
constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

JointTrackResult untouched(std::size_t count) {
    return {Types(count, untouched_type), std::vector<double>(count, untouched_location)};
}

struct Identification {
    TemporaryDirectory directory;
    JointTrackResult left;
    JointTrackResult right;
    EventRecord event;

    std::int32_t run(const tJointIDCfg& settings, float step, const Profile& left_profile,
                     const Profile& right_profile) {
        left = right = untouched(left_profile.size());
        return joint_id_dlldrv(&settings, step, static_cast<std::int32_t>(left_profile.size()),
                               left_profile.data(), right_profile.data(), left.types.data(),
                               right.types.data(), left.locations.data(), right.locations.data(),
                               event);
    }
};

// The features of a track, behind the last of which every type is 0.
Features features(const JointTrackResult& track) {
    Features found;
    for (std::size_t i = 0; i < track.types.size() && track.types[i] != 0; ++i) {
        found.emplace_back(track.locations[i], track.types[i]);
    }
    EXPECT_EQ(std::count(track.types.begin(), track.types.end(), 0),
              static_cast<std::ptrdiff_t>(track.types.size() - found.size()));
    return found;
}

// 200 samples, flat but for steps up or down in turn: behind each of those given, counted from 1.
Profile steps(const std::vector<std::size_t>& behind, float height = 0.003F) {
    Profile profile(200);
    for (std::size_t i = 0; i < profile.size(); ++i) {
        const auto passed = std::count_if(behind.begin(), behind.end(),
                                          [i](std::size_t sample) { return sample <= i; });
        profile[i] = passed % 2 == 0 ? 0.0F : height;
    }
    return profile;
}

// 20 slabs of 5 m at 0.025 m that meet in their middles, with `edge` at a distance from a joint.
template <class Edge>
Profile slabs(const Edge& edge) {
    Profile profile(4001);
    for (std::size_t i = 0; i < profile.size(); ++i) {
        const double along = static_cast<double>(i % 200) * 0.025;
        profile[i] = static_cast<float>(edge(std::fabs(along - 2.5)));
    }
    return profile;
}

double curled_edge(double distance) {
    return 0.005 * std::exp(-distance * distance / 0.1);
}

double open_joint(double distance) {
    return distance < 0.03 ? -0.004 : 0.0;
}

} // namespace

TEST(JointScreening, TellsCracksByTheDistanceFromTheLastJoint) {
    struct Case {
        const char* claim;
        bool keep_cracks;
        std::vector<double> locations;
        Features screened;
    };
    for (const auto& [claim, keep_cracks, locations, screened] :
         {Case{"cracks dropped", false, {0, 5, 7, 10, 12, 15}, {{0, 1}, {5, 1}, {10, 1}, {15, 1}}},
          Case{"not from the crack", true, {0, 4, 8, 9}, {{0, 1}, {4, 2}, {8, 1}, {9, 2}}},
          Case{"limit", true, {0, 4.75, 4.7500001}, {{0, 1}, {4.75, 2}, {4.7500001, 1}}},
          Case{"one feature is a joint", true, {3}, {{3, 1}}}}) {
        JointTrackResult track{Types(locations.size(), 1), locations};
        auto count = static_cast<std::int32_t>(locations.size());
        joint_loc_screen(keep_cracks, {1, 0, 5.0F}, count, track.types, track.locations);
        track.types.resize(static_cast<std::size_t>(count));
        EXPECT_EQ(features(track), screened) << claim;
    }
}

TEST(StepDetection, PutsAJointHalfWayBetweenTheSamplesOfAStep) {
    struct Case {
        std::vector<std::size_t> behind;
        Features found; // at places in samples
        float step = 0.1F;
    };
    for (const auto& [behind, found, step] :
         {Case{{40, 90, 110, 140}, {{40.5, 1}, {90.5, 1}, {110.5, 2}, {140.5, 1}}},
          // Less than three feet behind the last; three feet are those of 32-bit.
          Case{{50, 59, 100, 110}, {{50.5, 1}, {100.5, 1}, {110.5, 2}}},
          Case{{50, 51}, {{50.5, 1}, {51.5, 2}}, 0.9144F}}) {
        Features expected = found;
        for (auto& feature : expected) {
            feature.first *= static_cast<double>(step);
        }
        Identification track;
        ASSERT_EQ(track.run({1, 0, 5.0F}, step, steps(behind), steps(behind)), vialto_success);
        EXPECT_EQ(features(track.left), expected);
        EXPECT_EQ(features(track.right), expected);
    }
}

TEST(JointIdentification, RightTrackAloneEndsTheIteration) {
    const Profile clear = steps({40, 90, 140, 190});
    const Profile faint = steps({40, 90, 140, 190}, 0.001F);
    Identification found;
    ASSERT_EQ(found.run({1, 0, 5.0F}, 0.1F, faint, clear), vialto_success);
    EXPECT_EQ(features(found.left), (Features{{untouched_location, 1}}));
    ASSERT_EQ(found.run({1, 0, 5.0F}, 0.1F, clear, faint), vialto_success);
    EXPECT_EQ(features(found.right).size(), 4U);
}

TEST(JointIdentification, SpacingLongerThanTheRoadEndsAfterOnePass) {
    struct Case {
        float spacing;
        std::size_t features;
    };
    for (const auto& [spacing, count] :
         {Case{21.0F, 1}, Case{-21.0F, 1}, Case{infinity, 1}, Case{nan, 1},
          // Never enough features: twenty passes.
          Case{-5.0F, 2}, Case{0.0F, 2}, Case{1e-30F, 2}}) {
        Identification found;
        const Profile faint = steps({40, 90}, 0.001F);
        ASSERT_EQ(found.run({1, 0, spacing}, 0.1F, faint, faint), vialto_success);
        EXPECT_EQ(features(found.right).size(), count) << spacing;
    }
}

TEST(JointIdentification, FindsEveryJointOfARowOfSlabs) {
    for (const std::int32_t method : {3, 4}) {
        const Profile profile = slabs(method == 3 ? open_joint : curled_edge);
        Identification found;
        ASSERT_EQ(found.run({method, 0, 5.0F}, 0.025F, profile, profile), vialto_success);
        for (const Features& joints : {features(found.left), features(found.right)}) {
            ASSERT_EQ(joints.size(), 20U) << method;
            for (std::size_t k = 0; k < joints.size(); ++k) {
                EXPECT_EQ(joints[k].second, 1) << method;
                EXPECT_NEAR(joints[k].first, 2.5 + 5.0 * static_cast<double>(k), 0.3) << method;
            }
        }
    }
}

TEST(JointIdentification, AgreesWithTheDefinitionStepByStep) {
    struct Case {
        std::int32_t method;
        float step, spacing;
    };
    for (const auto& [method, step, spacing] :
         {Case{1, 0.025F, 5.0F}, Case{1, 0.3F, 1.5F}, Case{3, 0.025F, 5.0F}, Case{3, 0.0165F, 0.6F},
          Case{3, 0.1F, 2.0F}, Case{3, 0.25F, 3.0F}, Case{4, 0.025F, 4.5F}, Case{4, 0.025F, 0.7F},
          Case{4, 0.1F, 1.0F}, Case{4, 0.31F, 2.0F}, Case{4, 4.0F, 9.0F}}) {
        Profile left = random_road(2600, static_cast<double>(step), 1);
        Profile right = random_road(2600, static_cast<double>(step), 2);
        for (std::size_t i = 30; i < right.size(); i += 170) {
            left[i] -= 0.01F;
            right[i] -= 0.01F * static_cast<float>(1 + i % 3);
        }
        const tJointIDCfg settings{method, 1, spacing};
        Identification found;
        ASSERT_EQ(found.run(settings, step, left, right), vialto_success) << method << " " << step;
        JointTrackResult left_expected = untouched(left.size());
        JointTrackResult right_expected = untouched(right.size());
        ASSERT_TRUE(literal_joint_id(settings, step, left, right, left_expected, right_expected));
        EXPECT_TRUE(found.left == left_expected) << method << " " << step;
        EXPECT_TRUE(found.right == right_expected) << method << " " << step;
    }
}

TEST(JointIdentification, FailuresNameTheirRoutine) {
    struct Case {
        std::int32_t method;
        float step;
        std::size_t points;
        const char* code;
        const char* routine;
        const char* text;
    };
    const char* too_short = "hi-pass moving average base length is greater the sampling distance";
    const char* one_interval = "the baselength is only 1 sampling interval- check your input";
    const char* antismooth = "joint_id_antismooth/";
    const char* curledge = "joint_id_curledge/";
    for (const auto& [method, step, points, code, routine, text] :
         {Case{2, 0.025F, 4000, "100 2 ", "", "idx_jntid_valleydetect is not implemented"},
          Case{0, 0.025F, 0, "100 2 ", "", "i_jntid_method is not defined"},
          Case{5, 0.025F, 4000, "100 2 ", "", "i_jntid_method is not defined"},
          Case{3, 0.025F, 4000, "100 2 ", antismooth,
               "No joints found using the anti-smooth method"},
          Case{4, 0.025F, 4000, "100 2 ", curledge, "No joints found using the curled-edge method"},
          Case{3, 0.3F, 4000, "101 2 antismooth/filtcon_drv/", antismooth, one_interval},
          Case{3, 0.025F, 15, "101 2 norm_cal/", antismooth, "x_num_act should not be zero"},
          Case{4, 0.025F, 15, "101 2 mvgavg/filtcon_drv/", curledge, too_short},
          Case{4, 1e-30F, 15, "101 2 mvgavg/filtcon_drv/", curledge, too_short}}) {
        const Profile flat(points, 1.0F);
        Identification failed;
        EXPECT_EQ(failed.run({method, 0, 5.0F}, step, flat, flat), vialto_failure);
        EXPECT_EQ(failed.event.summary(),
                  std::string(code) + routine + "joint_id_cal/joint_id/joint_id_dlldrv: " + text);
        EXPECT_TRUE(failed.left == untouched(points)) << text;
        EXPECT_TRUE(failed.right == untouched(points)) << text;
    }
}

TEST(JointIdentification, FailureOnTheRightLeavesWhatTheLeftTrackHas) {
    // With a deep start, where the features' numbers point into the trace, shallow detections near
    // another are rejected; otherwise they replace it.
    Profile deep_start(400, 0.0F);
    std::fill(deep_start.begin() + 7, deep_start.begin() + 30, -0.5F);
    for (const std::size_t joint : {60U, 100U, 140U}) {
        deep_start[joint] = deep_start[joint + 1] = -0.01F;
    }
    for (const auto& [step, jointed] :
         {std::pair{0.25F, deep_start}, std::pair{0.025F, slabs(curled_edge)}}) {
        const Profile flat(jointed.size(), 0.0F);
        const tJointIDCfg settings{4, 0, 5.0F};
        Identification failed;
        EXPECT_EQ(failed.run(settings, step, jointed, flat), vialto_failure);
        JointTrackResult left = untouched(jointed.size());
        JointTrackResult right = left;
        ASSERT_FALSE(literal_joint_id(settings, step, jointed, flat, left, right));
        EXPECT_TRUE(failed.left == left) << step;
        EXPECT_TRUE(failed.right == untouched(jointed.size())) << step;
        const auto end = std::find(left.types.begin(), left.types.end(), untouched_type);
        EXPECT_EQ(end[-1], step == 0.25F ? 0 : 1); // the type behind the last feature
    }
}

TEST(JointIdentification, UnusualSizesStayInsideTheArrays) {
    const tJointIDCfg settings{1, 0, 5.0F};
    Identification found;
    for (const std::int32_t size : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(joint_id_dlldrv(&settings, 0.1F, size, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr, found.event),
                  vialto_success);
    }
    for (const Profile& smooth : {Profile(1, 1.0F), Profile(300, 1.0F), Profile(100, nan)}) {
        EXPECT_EQ(found.run(settings, 0.1F, smooth, smooth), vialto_success);
        EXPECT_EQ(features(found.right), (Features{{untouched_location, 1}}));
    }
    EXPECT_EQ(joint_id_dlldrv(nullptr, 0.1F, 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr, found.event),
              vialto_failure);
    EXPECT_EQ(found.event.summary(), "100 2 joint_id_dlldrv: settings is a null pointer");
}

TEST(JointIdentification, DiagnosticFileTellsOfTheSettings) {
    Identification found;
    ASSERT_EQ(found.run({1, 12345, 5.5F}, 0.25F, steps({}), steps({})), vialto_success);
    EXPECT_EQ(found.directory.text_of("joint_id_dlldrv.txt"), " Joint ID Analysis\n"
                                                              " Joint ID method          :  1\n"
                                                              " If skewed joints         :  12345\n"
                                                              " Dominating joint spacing :  5.5\n"
                                                              " Sample Interval (m)  :  0.25\n"
                                                              " Num profile Points       :  200\n"
                                                              " done with the joint_id call\n");
}

} // namespace vialto::test
