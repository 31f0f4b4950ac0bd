#include <gtest/gtest.h>

#include <cmath>
#include <limits>
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
};

Straightedge roll(const std::vector<float>& profile, float interval, float length) {
    const TemporaryDirectory directory;
    Straightedge out;
    out.deflection.assign(profile.size(), unwritten);
    out.result =
        rse_dlldrv(static_cast<std::int32_t>(profile.size()), interval, length, profile.data(),
                   out.deflection.data(), &out.acceleration, &out.first, &out.last, out.event);
    return out;
}

// A single bump of height 1 at the given sample.
std::vector<float> bump(std::size_t count, std::size_t at) {
    std::vector<float> profile(count, 0.0F);
    profile[at] = 1.0F;
    return profile;
}

} // namespace

TEST(RollingStraightedge, EndsOnSamplesSeeABumpAtTheMiddleAndAtBothEnds) {
    const Straightedge out = roll(bump(40, 20), 0.25F, 3.0F);
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
    const Straightedge out = roll(bump(40, 20), 0.25F, 3.1F);
    EXPECT_EQ(out.first, 7);
    EXPECT_EQ(out.last, 32);
    for (std::int32_t i = 0; i < 40; ++i) {
        const std::int32_t distance = std::abs(i - 20);
        const double expected =
            distance == 0 ? 1.0 : (distance == 6 ? -0.4 : (distance == 7 ? -0.1 : 0.0));
        EXPECT_NEAR(out.deflection[static_cast<std::size_t>(i)], expected, 1e-6) << i;
    }
}

TEST(RollingStraightedge, StraightRoadHasNoDeflection) {
    for (const float length : {3.0F, 3.125F}) {
        const Straightedge out = roll(straight_line(200, 0.25, 0.125), 0.25F, length);
        EXPECT_EQ(out.deflection, std::vector<float>(200, 0.0F));
        EXPECT_EQ(out.acceleration, 0.0F);
    }
}

TEST(RollingStraightedge, ParabolaHasItsCurvatureWhateverTheLength) {
    std::vector<float> parabola(100);
    for (std::size_t i = 0; i < parabola.size(); ++i) {
        const float x = 0.25F * static_cast<float>(i);
        parabola[i] = 0.5F * x * x; // exact in float32
    }
    for (const float half : {0.25F, 1.5F, 5.0F}) {
        const Straightedge out = roll(parabola, 0.25F, 2.0F * half);
        for (std::int32_t i = out.first; i <= out.last; ++i) {
            EXPECT_EQ(out.deflection[static_cast<std::size_t>(i)], -0.5F * half * half) << i;
        }
        EXPECT_EQ(out.acceleration, 1.0F);
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
    const float huge = std::numeric_limits<float>::max();
    const float infinite = std::numeric_limits<float>::infinity();
    const std::int32_t most = std::numeric_limits<std::int32_t>::max();
    struct Case {
        std::size_t count;
        float length;
        std::int32_t first;
        std::int32_t last;
        bool summary_is_nan;
    };
    for (const Case& c :
         {Case{12, 3.0F, 6, 5, true}, Case{11, 3.0F, 6, 4, false}, Case{14, 3.1F, 7, 6, true},
          Case{0, 3.0F, 6, -7, false}, Case{0, 0.0F, 0, -1, true},
          Case{5, huge, most, 4 - most, false}, Case{0, infinite, most, -1 - most, false}}) {
        const Straightedge out = roll(random_road(c.count, 0.25, 3), 0.25F, c.length);
        EXPECT_EQ(out.result, vialto_success);
        EXPECT_EQ(out.first, c.first);
        EXPECT_EQ(out.last, c.last);
        EXPECT_EQ(out.deflection, std::vector<float>(c.count, 0.0F));
        EXPECT_EQ(std::isnan(out.acceleration), c.summary_is_nan) << c.count << " " << c.length;
        if (!c.summary_is_nan) {
            EXPECT_EQ(out.acceleration, 0.0F);
        }
    }
}

TEST(RollingStraightedge, LengthThatIsNegativeOrNoNumberIsRefused) {
    for (const float length : {-3.0F, -0.1F, std::numeric_limits<float>::quiet_NaN()}) {
        const Straightedge out = roll(random_road(64, 0.25, 3), 0.25F, length);
        EXPECT_EQ(out.result, vialto_failure);
        EXPECT_EQ(out.event.summary(), "100 2 rse_dlldrv: xStrLeng is negative or not a number");
        EXPECT_EQ(out.deflection, std::vector<float>(64, unwritten));
        EXPECT_EQ(out.acceleration, unwritten);
    }
}

TEST(RollingStraightedge, DiagnosticFileHoldsTheCall) {
    const TemporaryDirectory directory;
    const std::vector<float> profile(20, 1.5F);
    std::vector<float> deflection(20);
    float acceleration = 0.0F;
    std::int32_t first = 0;
    std::int32_t last = 0;
    EventRecord event;
    ASSERT_EQ(rse_dlldrv(20, 0.25F, 3.0F, profile.data(), deflection.data(), &acceleration, &first,
                         &last, event),
              vialto_success);
    EXPECT_EQ(directory.text_of("rse_dlldrv2.txt"), " iSizeDataArray: 20\n"
                                                    " xStepSize     : 0.25\n"
                                                    " xStrLeng      : 3\n"
                                                    " done with the rse_drv call\n"
                                                    " xRMSvertacc   : 0\n"
                                                    " iBeginelemIdx : 6\n"
                                                    " iEndelemIdx   : 13\n");
}

} // namespace vialto::test
