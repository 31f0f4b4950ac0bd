#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
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

constexpr std::int32_t untouched_type = -77;
constexpr double untouched_location = -77.0;

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

// Flat but for steps up or down in turn: behind each of the samples given, counted from 1.
Profile steps(std::size_t count, const std::vector<std::size_t>& behind, float height = 0.003F) {
    Profile profile(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto passed = std::count_if(behind.begin(), behind.end(),
                                          [i](std::size_t sample) { return sample <= i; });
        profile[i] = passed % 2 == 0 ? 0.0F : height;
    }
    return profile;
}

// Slabs of 5 m at 0.025 m, 2.5 m long at either end, with `edge` added at a distance from a joint.
template <class Edge>
Profile slabs(std::size_t joints, const Edge& edge) {
    Profile profile(joints * 200 + 1);
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

Types leading(const Types& types, std::size_t count) {
    return {types.begin(), types.begin() + static_cast<std::ptrdiff_t>(count)};
}

} // namespace

TEST(JointScreening, TellsCracksByTheDistanceFromTheLastJoint) {
    struct Case {
        const char* claim;
        std::vector<double> locations;
        bool keep_cracks;
        Types types;
        std::vector<double> kept;
    };
    const Case cases[] = {
        {"a crack between joints", {0, 5, 7, 10}, true, {1, 1, 2, 1}, {0, 5, 7, 10}},
        {"cracks dropped", {0, 5, 7, 10, 12, 15}, false, {1, 1, 1, 1}, {0, 5, 10, 15}},
        {"measured from the joint, not from the crack",
         {0, 4, 8, 9},
         true,
         {1, 2, 1, 2},
         {0, 4, 8, 9}},
        {"the limit itself is a crack",
         {0, 4.75, 4.7500001},
         true,
         {1, 2, 1},
         {0, 4.75, 4.7500001}},
        {"one feature is a joint", {3}, true, {1}, {3}},
    };
    for (const Case& c : cases) {
        Types types(c.locations.size() + 1, 1);
        std::vector<double> locations = c.locations;
        locations.push_back(99.0);
        auto count = static_cast<std::int32_t>(c.locations.size());
        joint_loc_screen(c.keep_cracks, {1, 0, 5.0F}, count, types, locations);
        ASSERT_EQ(static_cast<std::size_t>(count), c.types.size()) << c.claim;
        EXPECT_EQ(leading(types, c.types.size()), c.types) << c.claim;
        locations.resize(c.types.size());
        EXPECT_EQ(locations, c.kept) << c.claim;
    }
}

TEST(StepDetection, PutsAJointHalfWayBetweenTheSamplesOfAStep) {
    Identification found;
    const Profile profile = steps(200, {40, 90, 110, 140});
    ASSERT_EQ(found.run({1, 0, 5.0F}, 0.1F, profile, profile), vialto_success);
    const auto step = static_cast<double>(0.1F);
    for (const JointTrackResult& track : {found.left, found.right}) {
        EXPECT_EQ(leading(track.types, 6), (Types{1, 1, 2, 1, 0, 0}));
        EXPECT_EQ(track.locations[0], 40.5 * step);
        EXPECT_EQ(track.locations[3], 140.5 * step);
        EXPECT_EQ(track.locations[4], untouched_location);
        EXPECT_TRUE(std::all_of(track.types.begin() + 4, track.types.end(),
                                [](std::int32_t type) { return type == 0; }));
    }
}

TEST(StepDetection, RejectsAStepWithinThreeFeetOfTheLast) {
    Identification found;
    const Profile profile = steps(200, {50, 59, 100, 110});
    ASSERT_EQ(found.run({1, 0, 5.0F}, 0.1F, profile, profile), vialto_success);
    EXPECT_EQ(leading(found.right.types, 4), (Types{1, 1, 2, 0}));
    EXPECT_EQ(found.right.locations[1], 100.5 * static_cast<double>(0.1F));

    // Three feet are those of 32-bit: one interval of that length is far enough.
    Identification three_feet_on;
    const Profile yard_steps = steps(200, {50, 51});
    ASSERT_EQ(three_feet_on.run({1, 0, 5.0F}, 0.9144F, yard_steps, yard_steps), vialto_success);
    EXPECT_EQ(leading(three_feet_on.right.types, 3), (Types{1, 2, 0}));

    Identification rejected_last;
    const Profile close_last = steps(200, {50, 100, 109});
    ASSERT_EQ(rejected_last.run({1, 0, 9.9F}, 0.1F, close_last, close_last), vialto_success);
    EXPECT_EQ(leading(rejected_last.right.types, 3), (Types{1, 2, 0}));
    EXPECT_EQ(rejected_last.right.locations[2], -1.0);
}

TEST(StepDetection, SmoothRoadHasOneJointAtWhateverTheHostGave) {
    Identification found;
    const Profile smooth(300, 1.0F);
    ASSERT_EQ(found.run({1, 0, 5.0F}, 0.1F, smooth, smooth), vialto_success);
    EXPECT_EQ(leading(found.left.types, 2), (Types{1, 0}));
    EXPECT_EQ(found.left.locations[0], untouched_location);
}

TEST(JointIdentification, RightTrackAloneEndsTheIteration) {
    const Profile clear = steps(200, {40, 90, 140, 190});
    const Profile faint = steps(200, {40, 90, 140, 190}, 0.001F);
    Identification right_clear;
    ASSERT_EQ(right_clear.run({1, 0, 5.0F}, 0.1F, faint, clear), vialto_success);
    EXPECT_EQ(leading(right_clear.left.types, 2), (Types{1, 0}));
    Identification right_faint;
    ASSERT_EQ(right_faint.run({1, 0, 5.0F}, 0.1F, clear, faint), vialto_success);
    EXPECT_EQ(leading(right_faint.right.types, 5), (Types{1, 1, 1, 1, 0}));
}

TEST(JointIdentification, SpacingLongerThanTheRoadEndsAfterOnePass) {
    const Profile profile = steps(200, {40, 90}, 0.001F);
    for (const float spacing : {21.0F, -21.0F, std::numeric_limits<float>::infinity(),
                                std::numeric_limits<float>::quiet_NaN()}) {
        Identification found;
        ASSERT_EQ(found.run({1, 0, spacing}, 0.1F, profile, profile), vialto_success);
        EXPECT_EQ(leading(found.right.types, 2), (Types{1, 0})) << spacing;
    }
    for (const float spacing : {-5.0F, 0.0F, 1e-30F}) { // never enough features: twenty passes
        Identification found;
        ASSERT_EQ(found.run({1, 0, spacing}, 0.1F, profile, profile), vialto_success);
        EXPECT_EQ(leading(found.right.types, 3), (Types{1, 1, 0})) << spacing;
    }
}

TEST(JointIdentification, FindsEveryJointOfARowOfSlabs) {
    constexpr std::size_t joints = 20;
    struct Case {
        std::int32_t method;
        Profile profile;
    };
    for (const auto& [method, profile] :
         {Case{3, slabs(joints, open_joint)}, Case{4, slabs(joints, curled_edge)}}) {
        Identification found;
        ASSERT_EQ(found.run({method, 0, 5.0F}, 0.025F, profile, profile), vialto_success);
        for (const JointTrackResult& track : {found.left, found.right}) {
            EXPECT_EQ(leading(track.types, joints), Types(joints, 1)) << method;
            EXPECT_EQ(track.types[joints], 0) << method;
            for (std::size_t k = 0; k < joints; ++k) {
                EXPECT_NEAR(track.locations[k], 2.5 + 5.0 * static_cast<double>(k), 0.3) << method;
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
        EXPECT_EQ(found.left.types, left_expected.types) << method << " " << step;
        EXPECT_EQ(found.left.locations, left_expected.locations) << method << " " << step;
        EXPECT_EQ(found.right.types, right_expected.types) << method << " " << step;
        EXPECT_EQ(found.right.locations, right_expected.locations) << method << " " << step;
    }
}

TEST(JointIdentification, FailuresNameTheirRoutine) {
    const std::string path = "joint_id_cal/joint_id/joint_id_dlldrv: ";
    const Profile flat(4000, 1.0F);
    const Profile brief(15, 1.0F);
    struct Case {
        std::int32_t method;
        float step;
        Profile profile;
        std::string summary;
    };
    const Case cases[] = {
        {2, 0.025F, flat, "100 2 " + path + "idx_jntid_valleydetect is not implemented"},
        {0, 0.025F, {}, "100 2 " + path + "i_jntid_method is not defined"},
        {5, 0.025F, flat, "100 2 " + path + "i_jntid_method is not defined"},
        {3, 0.025F, flat,
         "100 2 joint_id_antismooth/" + path + "No joints found using the anti-smooth method"},
        {4, 0.025F, flat,
         "100 2 joint_id_curledge/" + path + "No joints found using the curled-edge method"},
        {3, 0.3F, flat,
         "101 2 antismooth/filtcon_drv/joint_id_antismooth/" + path +
             "the baselength is only 1 sampling interval- check your input"},
        {3, 0.025F, brief,
         "101 2 norm_cal/joint_id_antismooth/" + path + "x_num_act should not be zero"},
        {4, 0.025F, brief,
         "101 2 mvgavg/filtcon_drv/joint_id_curledge/" + path +
             "hi-pass moving average base length is greater the sampling distance"},
        {4, 1e-30F, brief,
         "101 2 mvgavg/filtcon_drv/joint_id_curledge/" + path +
             "hi-pass moving average base length is greater the sampling distance"},
    };
    for (const Case& c : cases) {
        Identification failed;
        EXPECT_EQ(failed.run({c.method, 0, 5.0F}, c.step, c.profile, c.profile), vialto_failure);
        EXPECT_EQ(failed.event.summary(), c.summary);
        EXPECT_EQ(failed.left.types, Types(c.profile.size(), untouched_type)) << c.summary;
        EXPECT_EQ(failed.right.types, Types(c.profile.size(), untouched_type)) << c.summary;
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
    struct Case {
        float step;
        Profile jointed;
        std::int32_t behind; // the type that stays behind the last feature
    };
    for (const auto& [step, jointed, behind] :
         {Case{0.25F, deep_start, 0}, Case{0.025F, slabs(20, curled_edge), 1}}) {
        const Profile flat(jointed.size(), 0.0F);
        const tJointIDCfg settings{4, 0, 5.0F};
        Identification failed;
        EXPECT_EQ(failed.run(settings, step, jointed, flat), vialto_failure);
        EXPECT_EQ(failed.event.description(), "No joints found using the curled-edge method");
        JointTrackResult left = untouched(jointed.size());
        JointTrackResult right = left;
        ASSERT_FALSE(literal_joint_id(settings, step, jointed, flat, left, right));
        EXPECT_EQ(failed.left.types, left.types);
        EXPECT_EQ(failed.left.locations, left.locations);
        const auto end = std::find(left.types.begin(), left.types.end(), untouched_type);
        EXPECT_EQ(end[-1], behind);
        EXPECT_EQ(failed.right.types, Types(jointed.size(), untouched_type));
    }
}

TEST(JointIdentification, UnusualSizesStayInsideTheArrays) {
    const TemporaryDirectory directory;
    const tJointIDCfg settings{1, 0, 5.0F};
    EventRecord event;
    for (const std::int32_t size : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(joint_id_dlldrv(&settings, 0.1F, size, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr, event),
                  vialto_success);
    }
    Identification one_sample;
    EXPECT_EQ(one_sample.run(settings, 0.1F, {1.0F}, {1.0F}), vialto_success);
    EXPECT_EQ(one_sample.right.types, Types{1});
    Identification not_numbers;
    const Profile nans(100, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(not_numbers.run(settings, 0.1F, nans, nans), vialto_success);
    EXPECT_EQ(leading(not_numbers.right.types, 2), (Types{1, 0}));
    EXPECT_EQ(joint_id_dlldrv(nullptr, 0.1F, 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr, event),
              vialto_failure);
    EXPECT_EQ(event.summary(), "100 2 joint_id_dlldrv: settings is a null pointer");
}

TEST(JointIdentification, DiagnosticFileTellsOfTheSettings) {
    Identification found;
    const Profile profile = steps(200, {40, 90, 140});
    ASSERT_EQ(found.run({1, 12345, 5.5F}, 0.25F, profile, profile), vialto_success);
    EXPECT_EQ(found.directory.text_of("joint_id_dlldrv.txt"), " Joint ID Analysis\n"
                                                              " Joint ID method          :  1\n"
                                                              " If skewed joints         :  12345\n"
                                                              " Dominating joint spacing :  5.5\n"
                                                              " Sample Interval (m)  :  0.25\n"
                                                              " Num profile Points       :  200\n"
                                                              " done with the joint_id call\n");
}

} // namespace vialto::test
