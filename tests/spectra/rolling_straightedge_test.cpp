#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

constexpr float unwritten = -7.0F;

struct Straightedge {
    std::vector<float> deflection;
    float acceleration = unwritten;
    std::int32_t first = -7;
    std::int32_t last = -7;
    std::int32_t result = 0;
    EventRecord event;
    std::string text; // of the diagnostic file
};

Straightedge roll(const std::vector<float>& profile, float interval, float length) {
    const TemporaryDirectory directory;
    Straightedge out;
    out.deflection.assign(profile.size(), unwritten);
    out.result =
        rse_dlldrv(static_cast<std::int32_t>(profile.size()), interval, length, profile.data(),
                   out.deflection.data(), &out.acceleration, &out.first, &out.last, out.event);
    out.text = directory.text_of("rse_dlldrv2.txt");
    return out;
}

// Forty samples, and a single bump of height 1 at sample 20.
std::vector<float> bump() {
    std::vector<float> profile(40, 0.0F);
    profile[20] = 1.0F;
    return profile;
}

} // namespace

TEST(RollingStraightedge, EndsOnSamplesSeeABumpAtTheMiddleAndAtBothEnds) {
    const Straightedge out = roll(bump(), 0.25F, 3.0F);
    EXPECT_EQ(out.result, vialto_success);
    EXPECT_TRUE(out.event.untouched());
    EXPECT_EQ(out.first, 6);
    EXPECT_EQ(out.last, 33);
    std::vector<float> expected(40, 0.0F);
    expected[20] = 1.0F;
    expected[14] = expected[26] = -0.5F;
    EXPECT_EQ(out.deflection, expected);
    // The curvature is deflection * 2 / 1.5^2, and 28 samples count.
    EXPECT_NEAR(out.acceleration, 2.0 / 2.25 * std::sqrt(1.5 / 28.0), 1e-7);
}

TEST(RollingStraightedge, EndsBetweenSamplesShareABumpByDistance) {
    const Straightedge out = roll(bump(), 0.25F, 3.1F);
    EXPECT_EQ(out.first, 7);
    EXPECT_EQ(out.last, 32);
    for (std::size_t i = 0; i < 40; ++i) {
        const double expected = i == 20              ? 1.0
                                : i == 14 || i == 26 ? -0.4
                                : i == 13 || i == 27 ? -0.1
                                                     : 0.0;
        EXPECT_NEAR(out.deflection[i], expected, 1e-6) << i;
    }
}

TEST(RollingStraightedge, ParabolaHasItsCurvatureWhateverTheLengthAndAStraightRoadNone) {
    for (const float curvature : {0.0F, 1.0F}) {
        std::vector<float> road(100);
        for (std::size_t i = 0; i < road.size(); ++i) {
            const float x = 0.25F * static_cast<float>(i);
            road[i] = 0.5F * x * (curvature * x + 0.25F); // exact in float32
        }
        for (const float half : {0.25F, 1.5F, 5.0F}) {
            const Straightedge out = roll(road, 0.25F, 2.0F * half);
            for (std::int32_t i = out.first; i <= out.last; ++i) {
                EXPECT_EQ(out.deflection[static_cast<std::size_t>(i)],
                          -0.5F * curvature * half * half);
            }
            EXPECT_EQ(out.acceleration, curvature);
        }
    }
}

TEST(RollingStraightedge, HalfLengthWithinATrifleOfAWholeNumberEndsOnSamples) {
    const std::vector<float> road = random_road(64, 0.25, 3);
    EXPECT_EQ(roll(road, 0.25F, 3.000004F).first, 6);
    EXPECT_EQ(roll(road, 0.25F, 2.999996F).first, 6);
    EXPECT_EQ(roll(road, 0.25F, 3.00002F).first, 7);
    EXPECT_EQ(roll(road, 0.25F, 2.99998F).first, 6);
}

TEST(RollingStraightedge, RoadTooShortIsASuccessWithAnEmptyRange) {
    constexpr float infinite = std::numeric_limits<float>::infinity();
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    struct Case {
        std::size_t count;
        float length;
        std::int32_t first;
        std::int32_t last;
        bool summary_is_nan;
    };
    for (const Case& c :
         {Case{12, 3.0F, 6, 5, true}, Case{11, 3.0F, 6, 4, false}, Case{14, 3.1F, 7, 6, true},
          Case{0, 0.0F, 0, -1, true}, Case{5, 1e38F, most, 4 - most, false},
          Case{0, infinite, most, -1 - most, false}}) {
        const Straightedge out = roll(random_road(c.count, 0.25, 3), 0.25F, c.length);
        EXPECT_EQ(out.result, vialto_success);
        EXPECT_EQ(out.first, c.first);
        EXPECT_EQ(out.last, c.last);
        EXPECT_EQ(out.deflection, std::vector<float>(c.count, 0.0F));
        EXPECT_TRUE(c.summary_is_nan ? std::isnan(out.acceleration)
                                     : out.acceleration == 0.0F && std::signbit(out.acceleration));
    }
}

TEST(RollingStraightedge, LengthThatIsNegativeOrNoNumberIsRefused) {
    for (const float length : {-0.1F, std::numeric_limits<float>::quiet_NaN()}) {
        const Straightedge out = roll(random_road(64, 0.25, 3), 0.25F, length);
        EXPECT_EQ(out.result, vialto_failure);
        EXPECT_EQ(out.event.summary(), "100 2 rse_dlldrv: xStrLeng is negative or not a number");
        EXPECT_EQ(out.deflection, std::vector<float>(64, unwritten));
        EXPECT_EQ(out.acceleration, unwritten);
        EXPECT_EQ(out.first + out.last, -14);
    }
}

TEST(RollingStraightedge, DiagnosticFileHoldsTheCall) {
    EXPECT_EQ(roll(std::vector<float>(20, 1.5F), 0.25F, 3.0F).text, " iSizeDataArray: 20\n"
                                                                    " xStepSize     : 0.25\n"
                                                                    " xStrLeng      : 3\n"
                                                                    " done with the rse_drv call\n"
                                                                    " xRMSvertacc   : 0\n"
                                                                    " iBeginelemIdx : 6\n"
                                                                    " iEndelemIdx   : 13\n");
}

} // namespace vialto::test
