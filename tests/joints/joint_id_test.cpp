#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "joints/joint_loc_screen.hpp"
#include "support/cases.hpp"
#include "support/host.hpp"
#include "support/literal_joint_id.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

using Profile = std::vector<float>;

constexpr double untouched = -77.0;

struct Feature {
    double location; // m
    std::int32_t type = idx_jnttyp_joint;
};
using Features = std::vector<Feature>;

Feature crack(double location) {
    return {location, idx_jnttyp_crack};
}

// To a tenth of a millimetre.
void finds(const char* track, const JointTrackResult& result, const Features& features) {
    SCOPED_TRACE(track);
    const auto end = std::find(result.types.begin(), result.types.end(), idx_jnttyp_none);
    ASSERT_EQ(end - result.types.begin(), std::ssize(features));
    for (std::size_t i = 0; i < features.size(); ++i) {
        EXPECT_NEAR(result.locations[i], features[i].location, 1e-4) << "feature " << i;
        EXPECT_EQ(result.types[i], features[i].type) << "feature " << i;
    }
}

struct Identification {
    Profile left, right;
    float spacing = 5.0F; // m
    float step = 0.1F;    // m
    std::int32_t method = idx_jntid_stepdetect;
    JointTrackResult l{std::vector<std::int32_t>(left.size(), -77),
                       std::vector<double>(left.size(), untouched)};
    JointTrackResult r = l;

    // Gives the event of a failure, or nothing.
    std::string run() {
        const tJointIDCfg settings{method, 12345, spacing};
        EventRecord event;
        return event.outcome(joint_id_dlldrv(&settings, step, size_of(left), left.data(),
                                             right.data(), l.types.data(), r.types.data(),
                                             l.locations.data(), r.locations.data(), event));
    }
};

void finds(const Claim& claim, Identification road, const Features& left, const Features& right) {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    EXPECT_EQ(road.run(), "");
    finds("left track", road.l, left);
    finds("right track", road.r, right);
}

// Flat but for steps up and down in turn, behind each of some samples counted from 1.
Profile steps(const std::vector<std::ptrdiff_t>& behind, float height = 0.003F) {
    Profile profile(200);
    for (const std::ptrdiff_t sample : behind) {
        std::fill(profile.begin() + sample, profile.end(), height - profile.back());
    }
    return profile;
}

TEST(JointScreening, DropsCracksThatAreNotKept) {
    JointTrackResult track{{1, 1, 1, 1}, {0.0, 5.0, 7.0, 10.0}};
    std::int32_t count = 4;
    joint_loc_screen(false, {1, 0, 5.0F}, count, track.types, track.locations);
    track.types[static_cast<std::size_t>(count)] = idx_jnttyp_none;
    finds("of 5 m spacing", track, {{0}, {5}, {10}});
}

const Profile clear = steps({40, 90, 140, 190});
const Profile faint = steps({40, 90, 140, 190}, 1e-5F); // found by the last pass
const Profile flat(200, 1.0F);
const Features all{{4.05}, {9.05}, {14.05}, {19.05}};
const Features nowhere{{untouched}}; // one, at what the first location held

TEST(JointIdentification, PutsJointsAndCracksWhereEachTrackShowsThem) {
    const TemporaryDirectory directory;
    finds("a crack between joints", {clear, steps({40, 90, 110, 140})}, all,
          {{4.05}, {9.05}, crack(11.05), {14.05}});
    finds("a crack at the limit of the spacing", {flat, steps({20, 39}), 20.0F, 1.0F}, nowhere,
          {{20.5}, crack(39.5)});
    finds("not within three feet of the last", {flat, steps({50, 59, 100, 110})}, nowhere,
          {{5.05}, {10.05}, crack(11.05)});
    finds("three feet of 32-bit apart", {flat, steps({50, 51}), 5.0F, 0.9144F}, nowhere,
          {{46.1772}, crack(47.0916)});
    finds("the higher of two steps of a last bit",
          {steps({40}, std::nextafter(0.002032F, 1.0F)), steps({40}, 0.002032F), 21.0F}, {{4.05}},
          nowhere);
    finds("a spike six samples ahead of the profile's, and half of ten samples on",
          {steps({99, 100}, -0.01F), steps({102, 103}, -0.01F), 5.0F, 0.025F, 3}, {{2.475}},
          {{2.55}});
    // Deflections of 5 mm, half of that at either end of the straightedge.
    finds("one sample off, and the second of two neighbours replaces the first",
          {steps({99, 100}, 0.005F), steps({99, 101}, -0.005F), 50.0F, 0.25F, 4}, {{24.75}},
          {{25}});
}

TEST(JointIdentification, LooksForFainterStepsUntilThereAreEnoughForTheSpacing) {
    const TemporaryDirectory directory;
    finds("the right track alone ends it", {faint, clear}, nowhere, all);
    finds("nine for ten spacings do not exceed 0.9 of them",
          {faint, steps({20, 40, 60, 80, 100, 120, 140, 160, 180}), 2.0F}, all,
          {{2.05}, {4.05}, {6.05}, {8.05}, {10.05}, {12.05}, {14.05}, {16.05}, {18.05}});
    finds("no spacing ends it after one pass", {clear, faint, NAN},
          {{4.05}, crack(9.05), crack(14.05), crack(19.05)}, nowhere);
    finds("never enough for a spacing of nothing", {flat, faint, 0.0F}, nowhere, all);
}

TEST(JointIdentification, FailsByAMethodThatFindsNothingOrIsNone) {
    const TemporaryDirectory directory;
    const std::string cal = "joint_id_cal/joint_id/joint_id_dlldrv: ";
    EXPECT_EQ((Identification{flat, flat, 5, 0.1F, 5}.run()),
              "100 2 " + cal + "i_jntid_method is not defined");
    EXPECT_EQ((Identification{flat, flat, 5, 0.1F, 3}.run()),
              "100 2 joint_id_antismooth/" + cal + "No joints found using the anti-smooth method");
    EXPECT_EQ((Identification{flat, flat, 5, 0.3F, 4}.run()),
              "100 2 joint_id_curledge/" + cal + "No joints found using the curled-edge method");
}

TEST(JointIdentification, AgreesWithTheDefinitionStepByStep) {
    const TemporaryDirectory directory;
    using Case = std::tuple<std::int32_t, float, float>;
    for (const auto& [method, step, spacing] :
         {Case{1, 0.025F, 5.0F}, Case{1, 0.3F, 1.5F}, Case{3, 0.0165F, 0.6F}, Case{3, 0.1F, 2.0F},
          Case{3, 0.25F, 3.0F}, Case{4, 0.025F, 0.7F}, Case{4, 0.1F, 1.0F}, Case{4, 4.0F, 9.0F}}) {
        Profile left = random_road(2600, static_cast<double>(step), 1);
        Profile right = random_road(2600, static_cast<double>(step), 2);
        for (std::size_t i = 30; i < 2600; i += 170) {
            left[i] -= 0.01F;
            right[i] -= 0.01F * static_cast<float>(1 + i % 3);
        }
        // Features whose numbers point to here reject what is near them instead of giving way.
        std::fill(left.begin() + 7, left.begin() + 30, -0.5F);
        for (const auto& other : {right, Profile(2600)}) { // flat, it fails methods 3 and 4
            Identification road{left, other, spacing, step, method};
            Identification literal = road;
            SCOPED_TRACE(testing::Message()
                         << "method " << method << ", interval " << step << ", spacing " << spacing
                         << (other == right ? "" : ", flat right track"));
            EXPECT_EQ(road.run().empty(), literal_joint_id({method, 1, spacing}, step, left, other,
                                                           literal.l, literal.r));
            EXPECT_EQ(road.l.types, literal.l.types);
            EXPECT_EQ(road.l.locations, literal.l.locations);
            EXPECT_EQ(road.r.types, literal.r.types);
            EXPECT_EQ(road.r.locations, literal.r.locations);
        }
    }
}

} // namespace
} // namespace vialto::test
