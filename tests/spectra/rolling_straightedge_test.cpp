#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <tuple>
#include <vector>

#include "support/host.hpp"

namespace vialto::test {

namespace {

using Floats = std::vector<float>;

// The failure; the valid range, the summary; the deflections.
std::string roll(const Floats& profile, float length) {
    EventRecord event;
    Floats d(profile.size(), -7.0F);
    float summary = -7.0F;
    std::int32_t range[]{-7, -7};
    const auto n = static_cast<std::int32_t>(profile.size());
    const std::int32_t code = rse_dlldrv(n, 0.25F, length, profile.data(), d.data(), &summary,
                                         &range[0], &range[1], event);
    EXPECT_EQ(code, event.untouched() ? 1 : 3);
    std::ostringstream told;
    told << (code == 1 ? "" : event.summary() + "; ") << range[0] << " " << range[1] << " "
         << (std::isnan(summary) ? NAN : summary) << ";";
    for (const float deflection : d) {
        told << " " << deflection;
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
        {bump, 1.0F, "2 6 4.38178; 0 0 -0.5 0 1 0 -0.5 0 0"},
        {{0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0},
         1.4F,
         "3 9 1.78582; 0 0 0 -0.4 -0.1 0 1 0 -0.1 -0.4 0 0 0"},
        // Within a trifle of a whole number of samples the ends are on samples.
        {bump, 1.000003F, "2 6 4.38175; 0 0 -0.5 0 1 0 -0.5 0 0"},
        {bump, 0.999997F, "2 6 4.38181; 0 0 -0.5 0 1 0 -0.5 0 0"},
        {bump, 1.000006F, "3 5 4.61875; 0 0 0 0 1 0 0 0 0"},
        // Elevation 16 x^2, acceleration -32.
        {{0, 1, 4, 9, 16, 25}, 1.0F, "2 3 32; 0 0 -4 -4 0 0"},
        // Roads shorter than the straightedge.
        {Floats(12), 3.0F, "6 5 nan; 0 0 0 0 0 0 0 0 0 0 0 0"},
        {Floats(11), 3.0F, "6 4 -0; 0 0 0 0 0 0 0 0 0 0 0"},
        {{}, 0.0F, "0 -1 nan;"},
        {{}, HUGE_VALF, "2147483647 -2147483648 -0;"},
        {{0}, -0.1F, refused + "-7 -7 -7; -7"},
        {{0}, NAN, refused + "-7 -7 -7; -7"},
    };
    for (const auto& [road, length, told] : cases) {
        EXPECT_EQ(roll(road, length), told);
    }
}

TEST(RollingStraightedge, DiagnosticFileHoldsTheCall) {
    const TemporaryDirectory directory;
    EXPECT_EQ(roll(Floats(15, 1.5F), 3.0F), "6 8 0; 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0");
    EXPECT_EQ(directory.text_of("rse_dlldrv2.txt"),
              " iSizeDataArray: 15\n xStepSize     : 0.25\n xStrLeng      : 3\n"
              " done with the rse_drv call\n xRMSvertacc   : 0\n iBeginelemIdx : 6\n"
              " iEndelemIdx   : 8\n");
}

} // namespace vialto::test
