#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "profilograph/scallops.hpp"
#include "support/literal_profilograph.hpp"

namespace vialto::test {

namespace {

// Raw and final sum, then each scallop: side, samples, distances, height; of a partial one both
// the raw and the final height.
std::string described(const LotScallops& found, int digits = 6) {
    std::ostringstream text;
    text << std::setprecision(digits) << found.xSumRaw << "/" << found.xSumRnd;
    const auto unsigned_nan = [](float x) { return std::isnan(x) ? std::fabs(x) : x; };
    const auto add = [&](std::int32_t type, const auto& s) -> std::ostream& {
        return text << (type == scallop_above ? "up " : "down ") << s.iStart << "-" << s.iEnd << " "
                    << s.BeginX << ".." << unsigned_nan(s.EndX) << " h";
    };
    const auto partial = [&](const char* name, const PartialScallop& s) {
        if (s.iType != no_scallop) {
            text << "; " << name;
            add(s.iType, s) << s.xRawHt << "/" << s.xRndHt;
        }
    };
    partial("start ", found.edges.start);
    for (const Scallop& s : found.scallops) {
        text << "; ";
        add(s.Type, s) << s.MxHts;
    }
    partial("end ", found.edges.end);
    return text.str();
}

struct Case {
    std::vector<float> lot;
    std::string expected;
    float width = 0.1F; // m
    float round = 0.0F;
    float height = 0.0F;
};

// With an interval of 0.5 m and the edges of the band at 2 and -2.
void expect_scallops(const std::vector<Case>& cases, float band = 4.0F) {
    for (const Case& c : cases) {
        LotScallops found;
        EXPECT_EQ(CountScallops(c.lot, 0.5F, 0.0F, {band, c.width, c.round, c.height}, found),
                  success);
        EXPECT_EQ(described(found), c.expected);
    }
}

} // namespace

TEST(Scallops, WholeOnesAreMeasuredFromCrossingToCrossing) {
    const std::vector<float> peak{0, 4, 6, 4, 0};
    expect_scallops({
        {{0, -4, -6, -4, 0}, "4/4; down 2-4 0.75..2.25 h4"},
        {{0, 2, 0, -2, 0}, "0/0"}, // on the edge is inside
        {{2, 4, 2}, "2/2; up 2-2 0.5..1.5 h2"},
        {{0, 4, -4, 0}, "4/4; up 2-2 0.75..1.125 h2; down 3-3 1.375..1.75 h2"},
        {peak, "4/4; up 2-4 0.75..2.25 h4", 1.5F, 0.0F, 4.0F}, // of exactly the width and height
        {peak, "0/0", 1.51F},
        {peak, "4/0", 0.1F, 0.0F, 4.01F}, // its raw height counts all the same
        {peak, "4/3; up 2-4 0.75..2.25 h3", 0.1F, 3.0F},
        {peak, "4/4; up 2-4 0.75..2.25 h4", 0.1F, -3.0F},
        {peak, "4/4; up 2-4 0.75..2.25 h4", 0.1F, 1e-9F}, // more steps than an int32 counts
        {{0, 2.9F, 0}, "0.9/0", 0.1F, 2.0F},
    });
    // By a height of one and of two machine epsilons above a band of no width.
    expect_scallops(
        {
            {{0, 1.1920929e-7F, 0}, "1.19209e-07/0"},
            {{0, 2.3841858e-7F, 0}, "2.38419e-07/2.38419e-07; up 2-2 0.5..1.5 h2.38419e-07"},
            {{1.1920929e-7F, 0}, "0/0"},
            {{2.3841858e-7F, 0}, "0/0; start up 1-1 0..1 h2.38419e-07/2.38419e-07"},
        },
        0.0F);
}

TEST(Scallops, PartialOnesReachFromTheEndsOfTheLotToTheirCrossing) {
    expect_scallops({
        {{6, 5, 4, 0}, "0/0; start up 1-2 0..2.5 h4/4", 3.03F}, // 0.33 of the width is 0.9999 m
        {{6, 5, 4, 0}, "0/0", 3.04F},
        {{6, 5, 4, 0}, "0/0; start up 1-2 0..2.5 h4/3", 0.1F, 3.0F},
        {{6, 5, 4, 0}, "0/0", 0.1F, 0.0F, 4.5F},
        {{-6, -5, -4, 0, 0}, "0/0; start down 1-2 0.5..2.5 h4/4"},
        {{6, 5, 2, 0}, "0/0; start up 1-2 0..1.5 h4/4"}, // runs on over a sample on the edge
        {{6, 5, 5, 0}, "0/0; start up 1-2 0..inf h4/4"},
        {{6, 2, 2, 0}, "0/0; start up 1-2 0..nan h4/4"},
        // It stops ahead of the first whole one.
        {{6, 5, 4, 2, 4, 2, 0}, "2/2; start up 1-3 0..2 h4/4; up 5-5 2..3 h2"},
        {{0, 4, 5, 6}, "0/0; end up 2-4 0.75..2 h4/4", 3.03F},
        {{0, 4, 5, 6}, "0/0", 3.04F},
        {{0, 0, -4, -5, -6}, "0/0; end down 3-5 1.25..2.5 h4/4"},
        // It never reaches back into the last whole one.
        {{0, 4, 2, 4}, "2/2; up 2-2 0.75..1.5 h2; end up 3-4 0.5..2 h2/2"},
        {{0, 4, -4}, "2/2; up 2-2 0.75..1.125 h2; end down 3-3 1.375..1.5 h2/2", 0.0F},
        // Without a sample before the first there is no crossing.
        {{-6, 0, 0}, "0/0; start down 1-0 0.5..0.5 h4/4", -1.0F},
        {{-6, -5, -4}, "0/0; start down 1-2 0.5..2.5 h4/4; end down 1-3 0.5..1.5 h4/4"},
        {{6}, "0/0; start up 1-0 0..0.5 h4/4; end up 1-1 0..0.5 h4/4", 0.0F},
        {{}, "0/0"},
    });
}

TEST(Scallops, HaveTheBitsOfTheLiteralVersion) {
    std::mt19937 generator(7);
    const auto below = [&](std::uint32_t count) { return generator() % count; };
    for (int run = 0; run < 20000; ++run) {
        // Half steps, so that samples on the edge, level stretches and leaps over the band occur.
        std::vector<float> lot(2 + below(40));
        for (float& sample : lot) {
            sample = 0.5F * (static_cast<float>(below(15)) - 7.0F) / (run % 2 == 0 ? 1.0F : 0.93F);
        }
        // The two sides of a negative band overlap: a sample may be above and below it.
        const ScallopRules rules{0.5F * (static_cast<float>(below(11)) - 2.0F),
                                 0.3F * (static_cast<float>(below(8)) - 1.0F),
                                 0.4F * static_cast<float>(below(3)),
                                 0.5F * static_cast<float>(below(3))};
        const float x0 = 25.0F * static_cast<float>(below(2));
        LotScallops found;
        ASSERT_EQ(CountScallops(lot, 0.3F, x0, rules, found), success);
        constexpr int every_bit = 9;
        EXPECT_EQ(described(found, every_bit),
                  described(literal_scallops(lot, 0.3F, x0, rules), every_bit));
    }
}

} // namespace vialto::test
