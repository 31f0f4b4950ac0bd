#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <tuple>
#include <vector>

#include "support/host.hpp"

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
    const Floats bump{0, 0, 0, 0, 1, 0, 0, 0, 0};
    const std::tuple<Floats, float, std::string> cases[] = {
        // A bump, whose share at the ends goes by the distance where they fall between samples.
        {bump, 1.0F, "2 6 4.38178; 2: -0.5 4: 1 6: -0.5"},
        {{0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0},
         1.4F,
         "3 9 1.78582; 3: -0.4 4: -0.1 6: 1 8: -0.1 9: -0.4"},
        // Within a trifle of a whole number of samples the ends are on samples.
        {bump, 1.000003F, "2 6 4.38175; 2: -0.5 4: 1 6: -0.5"},
        {bump, 0.999997F, "2 6 4.38181; 2: -0.5 4: 1 6: -0.5"},
        {bump, 1.000006F, "3 5 4.61875; 4: 1"},
        // Elevation 16 x^2, acceleration -32.
        {{0, 1, 4, 9, 16, 25}, 1.0F, "2 3 32; 2: -4 3: -4"},
        {{0, 1, 2, 3, 4, 5}, 1.0F, "2 3 0;"},
        // Roads shorter than the straightedge.
        {Floats(12), 3.0F, "6 5 nan;"},
        {Floats(11), 3.0F, "6 4 -0;"},
        {{}, 0.0F, "0 -1 nan;"},
        {{}, HUGE_VALF, "2147483647 -2147483648 -0;"},
        {{0}, -0.1F, refused + "-7 -7 -7; 0: -7"},
        {{0}, NAN, refused + "-7 -7 -7; 0: -7"},
    };
    for (const auto& [road, length, told] : cases) {
        EXPECT_EQ(roll(road, length), told);
    }
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
