#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <tuple>
#include <vector>

#include "support/host.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

using Floats = std::vector<float>;

// The failure; the valid range, the summary; what is not 0.0, by sample.
std::string roll(const Floats& profile, float length) {
    EventRecord event;
    Floats d(profile.size(), -7.0F);
    float summary = -7.0F;
    std::int32_t first = -7;
    std::int32_t last = -7;
    const auto n = static_cast<std::int32_t>(profile.size());
    const std::int32_t code =
        rse_dlldrv(n, 0.25F, length, profile.data(), d.data(), &summary, &first, &last, event);
    EXPECT_EQ(code, event.untouched() ? 1 : 3);
    std::ostringstream told;
    told << (code == 1 ? "" : event.summary() + "; ") << first << " " << last << " "
         << (std::isnan(summary) ? NAN : summary) << ";";
    for (std::size_t i = 0; i < d.size(); ++i) {
        if (d[i] != 0.0F) {
            told << " " << i << ": " << d[i];
        }
    }
    return told.str();
}

} // namespace

TEST(RollingStraightedge, TellsHeightsAtTheMiddleAgainstItsEnds) {
    const TemporaryDirectory directory;
    const std::string refused = "100 2 rse_dlldrv: xStrLeng is negative or not a number; ";
    const std::tuple<Floats, float, std::string> cases[] = {
        // A bump, whose share at the ends goes by the distance where they fall between samples.
        {{0, 0, 0, 0, 1, 0, 0, 0, 0}, 1.0F, "2 6 4.38178; 2: -0.5 4: 1 6: -0.5"},
        {{0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0},
         1.1F,
         "3 9 2.89273; 3: -0.1 4: -0.4 6: 1 8: -0.4 9: -0.1"},
        // Elevation 16 x^2, acceleration -32.
        {{0, 1, 4, 9, 16, 25}, 1.0F, "2 3 32; 2: -4 3: -4"},
        {straight_line(40, 0.25, 0.5), 3.0F, "6 33 0;"},
        {Floats(40), 3.1F, "7 32 0;"},
        // Roads shorter than the straightedge.
        {Floats(12), 3.0F, "6 5 nan;"},
        {Floats(11), 3.0F, "6 4 -0;"},
        {Floats(14), 3.1F, "7 6 nan;"},
        {{}, 0.0F, "0 -1 nan;"},
        {Floats(5), 1e38F, "2147483647 -2147483643 -0;"},
        {{}, HUGE_VALF, "2147483647 -2147483648 -0;"},
        {{0}, -0.1F, refused + "-7 -7 -7; 0: -7"},
        {{0}, NAN, refused + "-7 -7 -7; 0: -7"},
    };
    for (const auto& [road, length, told] : cases) {
        EXPECT_EQ(roll(road, length), told);
    }
}

TEST(RollingStraightedge, HalfLengthWithinATrifleOfAWholeNumberEndsOnSamples) {
    const TemporaryDirectory directory;
    const auto deflection = [](float length) {
        const std::string told = roll(random_road(64, 0.25, 3), length);
        return told.substr(told.find(';'));
    };
    EXPECT_EQ(deflection(3.000004F), deflection(3.0F));
    EXPECT_EQ(deflection(2.999996F), deflection(3.0F));
    EXPECT_NE(deflection(3.00002F), deflection(3.0F));
    EXPECT_NE(deflection(2.99998F), deflection(3.0F));
}

TEST(RollingStraightedge, DiagnosticFileHoldsTheCall) {
    const TemporaryDirectory directory;
    EXPECT_EQ(roll(Floats(20, 1.5F), 3.0F), "6 13 0;");
    EXPECT_EQ(directory.text_of("rse_dlldrv2.txt"),
              " iSizeDataArray: 20\n xStepSize     : 0.25\n xStrLeng      : 3\n"
              " done with the rse_drv call\n xRMSvertacc   : 0\n iBeginelemIdx : 6\n"
              " iEndelemIdx   : 13\n");
}

} // namespace vialto::test
