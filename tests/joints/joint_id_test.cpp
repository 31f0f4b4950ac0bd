#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <tuple>
#include <vector>

#include "joints/joint_loc_screen.hpp"
#include "support/host.hpp"
#include "support/literal_joint_id.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

using Profile = std::vector<float>;

// The locations of a track's features, with a c behind those of cracks.
std::string features(const JointTrackResult& track) {
    std::ostringstream text;
    for (std::size_t i = 0; i < track.types.size() && track.types[i] != 0; ++i) {
        text << " " << track.locations[i] << (track.types[i] == 2 ? "c" : "");
    }
    return text.str();
}

struct Identification {
    Profile left, right;
    float spacing = 5.0F;
    float step = 0.1F;
    std::int32_t method = 1;
    JointTrackResult l{std::vector<std::int32_t>(left.size(), -77),
                       std::vector<double>(left.size(), -77.0)};
    JointTrackResult r = l;

    // The event, or the features of both tracks.
    std::string run() {
        const tJointIDCfg settings{method, 12345, spacing};
        EventRecord event;
        const std::int32_t code = joint_id_dlldrv(
            &settings, step, static_cast<std::int32_t>(left.size()), left.data(), right.data(),
            l.types.data(), r.types.data(), l.locations.data(), r.locations.data(), event);
        EXPECT_EQ(code, event.untouched() ? 1 : 3);
        return code == 1 ? features(l) + " |" + features(r) : event.summary();
    }
};

// Flat but for steps up and down in turn, behind each of some samples counted from 1.
Profile steps(const std::vector<std::ptrdiff_t>& behind, float height = 0.003F) {
    Profile profile(200);
    for (const std::ptrdiff_t sample : behind) {
        std::fill(profile.begin() + sample, profile.end(), height - profile.back());
    }
    return profile;
}

} // namespace

TEST(JointScreening, DropsCracksThatAreNotKept) {
    JointTrackResult track{{1, 1, 1, 1}, {0.0, 5.0, 7.0, 10.0}};
    std::int32_t count = 4;
    joint_loc_screen(false, {1, 0, 5.0F}, count, track.types, track.locations);
    track.types[static_cast<std::size_t>(count)] = 0;
    EXPECT_EQ(features(track), " 0 5 10");
}

TEST(JointIdentification, PutsFeaturesWhereTheTracksShowThemOrRefuses) {
    const TemporaryDirectory directory;
    const Profile clear = steps({40, 90, 140, 190});
    const Profile faint = steps({40, 90, 140, 190}, 1e-5F); // found by the last pass
    const Profile flat(200, 1.0F);
    const std::string all = " 4.05 9.05 14.05 19.05";
    const std::string none = " -77"; // one, at what the first location held
    const std::string cal = "joint_id_cal/joint_id/joint_id_dlldrv: ";
    std::pair<Identification, std::string> cases[] = {
        {{clear, steps({40, 90, 110, 140})}, all + " | 4.05 9.05 11.05c 14.05"},
        {{flat, steps({20, 39}), 20.0F, 1.0F}, none + " | 20.5 39.5c"}, // at the limit
        // Less than three feet behind the last; three feet are those of 32-bit.
        {{flat, steps({50, 59, 100, 110})}, none + " | 5.05 10.05 11.05c"},
        {{flat, steps({50, 51}), 5.0F, 0.9144F}, none + " | 46.1772 47.0916c"},
        // The right track alone ends the iteration.
        {{faint, clear}, none + " |" + all},
        // Nine features for ten spacings do not exceed 0.9 of them.
        {{faint, steps({20, 40, 60, 80, 100, 120, 140, 160, 180}), 2.0F},
         all + " | 2.05 4.05 6.05 8.05 10.05 12.05 14.05 16.05 18.05"},
        // A spacing longer than the road, or that is no number, ends it after one pass.
        {{clear, faint, NAN}, " 4.05 9.05c 14.05c 19.05c |" + none},
        {{steps({40}, std::nextafter(0.002032F, 1.0F)), steps({40}, 0.002032F), 21.0F},
         " 4.05 |" + none},
        {{flat, faint, 0.0F}, none + " |" + all}, // never enough features
        {{}, " |"},
        // The anti-smoothed spike stands six samples ahead of the profile's, and half of ten samples
        // are added.
        {{steps({99, 100}, -0.01F), steps({102, 103}, -0.01F), 5.0F, 0.025F, 3}, " 2.475 | 2.55"},
        // Deflections of 5 mm, half of that at either end of the straightedge. One sample is taken
        // off, and the second of two neighbours replaces the first.
        {{steps({99, 100}, 0.005F), steps({99, 101}, -0.005F), 50.0F, 0.25F, 4}, " 24.75 | 25"},
        {{flat, flat, 5, 0.1F, 2}, "100 2 " + cal + "idx_jntid_valleydetect is not implemented"},
        {{flat, flat, 5, 0.1F, 5}, "100 2 " + cal + "i_jntid_method is not defined"},
        {{flat, flat, 5, 0.1F, 3},
         "100 2 joint_id_antismooth/" + cal + "No joints found using the anti-smooth method"},
        {{flat, flat, 5, 0.3F, 4},
         "100 2 joint_id_curledge/" + cal + "No joints found using the curled-edge method"}};
    for (auto& [road, found] : cases) {
        EXPECT_EQ(road.run(), found);
    }
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
            EXPECT_EQ(road.run().front() == ' ', literal_joint_id({method, 1, spacing}, step, left,
                                                                  other, literal.l, literal.r));
            EXPECT_TRUE(road.l == literal.l && road.r == literal.r) << method;
        }
    }
}

TEST(JointIdentification, DiagnosticFileTellsOfTheSettings) {
    const TemporaryDirectory directory;
    EXPECT_EQ((Identification{Profile(2), Profile(2), 5.5F, 0.25F}.run()), " -77 | -77");
    EXPECT_EQ(directory.text_of("joint_id_dlldrv.txt"), " Joint ID Analysis\n"
                                                        " Joint ID method          :  1\n"
                                                        " If skewed joints         :  12345\n"
                                                        " Dominating joint spacing :  5.5\n"
                                                        " Sample Interval (m)  :  0.25\n"
                                                        " Num profile Points       :  2\n"
                                                        " done with the joint_id call\n");
}

} // namespace vialto::test
