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
    Straightedge(const std::vector<float>& profile, float length)
        : deflection(profile.size(), unwritten) {
        EventRecord event;
        const auto result =
            rse_dlldrv(static_cast<std::int32_t>(profile.size()), 0.25F, length, profile.data(),
                       deflection.data(), &acceleration, &first, &last, event);
        EXPECT_EQ(result, event.untouched() ? vialto_success : vialto_failure);
        failure = event.untouched() ? "" : event.summary();
    }

    TemporaryDirectory directory;
    std::vector<float> deflection;
    float acceleration = unwritten;
    std::int32_t first = -7;
    std::int32_t last = -7;
    std::string failure;
};

} // namespace

TEST(RollingStraightedge, SeesABumpAtTheMiddleAndSharesItByDistanceAtItsEnds) {
    std::vector<float> road(40, 0.0F);
    road[20] = 1.0F;
    struct Case {
        double length;
        std::int32_t first;
        float at_end; // the share of the sample 6 from the bump, and of the one behind it
        float beyond;
    };
    for (const Case& c : {Case{3.0, 6, -0.5F, 0.0F}, {3.1, 7, -0.4F, -0.1F}}) {
        const Straightedge out(road, static_cast<float>(c.length));
        EXPECT_EQ(out.failure, "");
        EXPECT_EQ(out.first, c.first);
        EXPECT_EQ(out.last, 39 - c.first);
        std::vector<float> expected(40, 0.0F);
        expected[20] = 1.0F;
        expected[14] = expected[26] = c.at_end;
        expected[13] = expected[27] = c.beyond;
        double squares = 0.0;
        for (std::size_t i = 0; i < 40; ++i) {
            EXPECT_NEAR(out.deflection[i], expected[i], 1e-6F) << i;
            squares += std::pow(static_cast<double>(expected[i]) * 8.0 / (c.length * c.length), 2);
        }
        EXPECT_NEAR(out.acceleration, std::sqrt(squares / (40.0 - 2.0 * c.first)), 1e-6);
    }
}

TEST(RollingStraightedge, HalfLengthWithinATrifleOfAWholeNumberEndsOnSamples) {
    const std::vector<float> road = random_road(64, 0.25, 3);
    const auto whole = Straightedge(road, 3.0F).deflection;
    EXPECT_EQ(Straightedge(road, 3.000004F).deflection, whole);
    EXPECT_EQ(Straightedge(road, 2.999996F).deflection, whole);
    EXPECT_NE(Straightedge(road, 3.00002F).deflection, whole);
    EXPECT_NE(Straightedge(road, 2.99998F).deflection, whole);
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
        const Straightedge out(random_road(c.count, 0.25, 3), c.length);
        EXPECT_EQ(out.failure, "");
        EXPECT_EQ(out.first, c.first);
        EXPECT_EQ(out.last, c.last);
        EXPECT_EQ(out.deflection, std::vector<float>(c.count, 0.0F));
        EXPECT_TRUE(c.summary_is_nan ? std::isnan(out.acceleration)
                                     : out.acceleration == 0.0F && std::signbit(out.acceleration));
    }
}

TEST(RollingStraightedge, LengthThatIsNegativeOrNoNumberIsRefused) {
    for (const float length : {-0.1F, std::numeric_limits<float>::quiet_NaN()}) {
        const Straightedge out(random_road(64, 0.25, 3), length);
        EXPECT_EQ(out.failure, "100 2 rse_dlldrv: xStrLeng is negative or not a number");
        EXPECT_EQ(out.deflection, std::vector<float>(64, unwritten));
        EXPECT_EQ(out.acceleration, unwritten);
        EXPECT_EQ(out.first + out.last, -14);
    }
}

TEST(RollingStraightedge, DiagnosticFileHoldsTheCall) {
    const Straightedge out(std::vector<float>(20, 1.5F), 3.0F);
    EXPECT_EQ(out.directory.text_of("rse_dlldrv2.txt"),
              " iSizeDataArray: 20\n xStepSize     : 0.25\n xStrLeng      : 3\n"
              " done with the rse_drv call\n xRMSvertacc   : 0\n iBeginelemIdx : 6\n"
              " iEndelemIdx   : 13\n");
}

} // namespace vialto::test
