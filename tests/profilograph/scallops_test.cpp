#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "profilograph/scallops.hpp"

namespace vialto::test {

namespace {

// To the last bit: raw and final sum, raw heights of the partial scallops at the start and the end;
// then each scallop: type, samples, distances, height.
std::string described(const LotScallops& found) {
    const auto& [start, end] = found.edges;
    std::ostringstream text;
    text << std::setprecision(9) << found.xSumRaw << "/" << found.xSumRnd << " " << start.xRawHt
         << "/" << end.xRawHt;
    const auto add = [&](const char* name, std::int32_t type, const auto& s, float height) {
        if (type != no_scallop) {
            text << name << type << ": " << s.iStart << "-" << s.iEnd << " " << s.BeginX << ".."
                 << (std::isnan(s.EndX) ? std::fabs(s.EndX) : s.EndX) << " h" << height;
        }
    };
    add("; start ", start.iType, start, start.xRndHt);
    for (const Scallop& s : found.scallops) {
        add("; ", s.Type, s, s.MxHts);
    }
    add("; end ", end.iType, end, end.xRndHt);
    return text.str();
}

} // namespace

TEST(Scallops, AreMeasuredFromCrossingToCrossing) {
    struct Case {
        std::vector<float> lot;
        std::string expected;
        ScallopRules rules{4, 0.1F, 0, 0}; // band, width [m], rounding, height
        float interval = 0.5F;             // m
        float x0 = 0.0F;                   // m
    };
    const std::vector<float> peak{0, 4, 6, 4, 0};
    const std::vector<float> edges{6, 5, 4, 0, 4, 5, 6};
    const std::vector<float> hat{0.5F, 2.5F, 0.5F};
    const std::vector<float> rough{3.9F, 5.6F, 0.3F,  -4.4F, -2.6F, 0.1F,
                                   4.6F, 5.5F, -0.2F, -3.5F, -4};
    const Case cases[] = {
        {{2, 4, 2, 0, -2}, "2/2 0/0; 1: 2-2 0.5..1.5 h2"}, // on the edge is inside
        {{0, 4, -4, 0}, "4/4 0/0; 1: 2-2 0.75..1.125 h2; 2: 3-3 1.375..1.75 h2"},
        {peak, "4/4 0/0; 1: 2-4 0.75..2.25 h4", {4, 1.5F, 0, 4}}, // just wide and high enough
        {peak, "0/0 0/0", {4, 1.51F, 0, 0}},
        {peak, "4/0 0/0", {4, 0.1F, 0, 4.01F}}, // its raw height counts all the same
        {peak, "4/3 0/0; 1: 2-4 0.75..2.25 h3", {4, 0.1F, 3, 0}},
        {peak, "4/4 0/0; 1: 2-4 0.75..2.25 h4", {4, 0.1F, 1e-9F, 0}}, // 4 milliard steps
        {{0, 2.75F, 0}, "0.75/0 0/0", {4, 0.1F, 2, 0}},
        {{1, 3, 1}, "1/2 0/0; 1: 2-2 0.75..1.25 h2", {4, 0.1F, 2, 0}},
        // One and two machine epsilons high.
        {{0, 0x1p-23F, 0}, "1.1920929e-07/0 0/0", {0, 0, 0, 0}},
        {{0, 0x1p-22F, 0},
         "2.38418579e-07/2.38418579e-07 0/0; 1: 2-2 0.5..1.5 h2.38418579e-07",
         {0, 0, 0, 0}},
        {{0x1p-23F, 0}, "0/0 1.1920929e-07/0", {0, 0, 0, 0}},
        {{0x1p-22F, 0}, "0/0 2.38418579e-07/0; start 1: 1-1 0..1 h2.38418579e-07", {0, 0, 0, 0}},
        // 0.33 of the width is 0.9999 m and 1.0032 m.
        {edges, "0/0 4/4; start 1: 1-2 0..2.5 h4; end 1: 5-7 2.25..3.5 h4", {4, 3.03F, 0, 0}},
        {edges, "0/0 0/0", {4, 3.04F, 0, 0}},
        {{-6, -5, -4, 0, -4, -6},
         "0/0 4/4; start 2: 1-2 0.5..2.5 h6; end 2: 5-6 2.25..3 h6",
         {4, 0, 6, 4}},
        // On over samples on the edge, along two equal samples.
        {{6, 5, 2, 0}, "0/0 4/0; start 1: 1-2 0..1.5 h4"},
        {{6, 5, 5, 0}, "0/0 4/0; start 1: 1-2 0..inf h4"},
        {{6, 2, 2, 0}, "0/0 4/0; start 1: 1-2 0..nan h4"},
        {{0, 4, 2, 5}, "2/2 0/3; 1: 2-2 0.75..1.5 h2; end 1: 3-4 0.5..2 h3"},
        // Not into a whole one.
        {{6, 5, 4, 2, 4, 2, 0}, "2/2 4/0; start 1: 1-3 0..2 h4; 1: 5-5 2..3 h2"},
        {{0, 4, -4}, "2/2 0/2; 1: 2-2 0.75..1.125 h2; end 2: 3-3 1.375..1.5 h2", {4, 0, 0, 0}},
        // Without a sample before the first there is no crossing.
        {{6}, "0/0 4/4; start 1: 1-0 0..0.5 h4; end 1: 1-1 0..0.5 h4", {4, 0, 0, 0}},
        {{-6}, "0/0 4/4; start 2: 1-0 0.5..0.5 h4; end 2: 1-1 0.5..0.5 h4", {4, 0, 0, 0}},
        {{}, "0/0 0/0"},
        // Between the sides of a negative band: below for above, or at least its heights.
        {hat, "0/0 0.5/0.5; start 2: 1-0 0.5..0.5 h0.5; end 2: 3-3 1.375..1.5 h0.5", {-2, 0, 0, 0}},
        {hat, "0/0 0.5/0.5; start 1: 1-2 0..1.875 h0; end 1: 1-3 0..1.5 h0", {-2, 0, 0, 3}},
        // Rounded to float32 at every step, in its order.
        {rough,
         "5.9000001/5.9000001 3.5999999/2; start 1: 1-1 2..3.23529434 h3.5999999; "
         "2: 4-5 3.04680848..3.56666684 h2.4000001; 1: 7-8 3.92666674..4.5842104 h3.5; "
         "end 2: 10-11 4.86363602..5.30000019 h2",
         {4, 0.1F, 0, 0},
         0.3F,
         2},
    };
    for (const Case& c : cases) {
        LotScallops found;
        EXPECT_EQ(CountScallops(c.lot, c.interval, c.x0, c.rules, found), success);
        EXPECT_EQ(described(found), c.expected);
    }
}

} // namespace vialto::test
