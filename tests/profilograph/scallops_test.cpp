#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "profilograph/scallops.hpp"
#include "support/current_event.hpp"
#include "support/literal_profilograph.hpp"

namespace vialto::test {

namespace {

constexpr float interval = 0.5F; // m
constexpr float band = 4.0F;     // so that the edges stand at 2 and -2

template <class Record>
std::string range(std::int32_t type, const Record& r) {
    std::ostringstream text;
    text << (type == scallop_above ? "up " : "down ") << r.iStart << "-" << r.iEnd << " "
         << r.BeginX << ".." << r.EndX;
    return text.str();
}

// Raw and final sum, then each scallop: side, samples, distances, final height.
std::string described(const LotScallops& found) {
    std::ostringstream text;
    text << found.xSumRaw << "/" << found.xSumRnd;
    const auto partial = [&](const char* name, const PartialScallop& edge) {
        if (edge.iType != no_scallop) {
            text << "; " << name << " " << range(edge.iType, edge) << " h" << edge.xRawHt << "/"
                 << edge.xRndHt;
        }
    };
    partial("start", found.edges.start);
    for (const Scallop& scallop : found.scallops) {
        text << "; " << range(scallop.Type, scallop) << " h" << scallop.MxHts;
    }
    partial("end", found.edges.end);
    return text.str();
}

template <class Record>
bool same_bits(std::span<const Record> left, std::span<const Record> right) {
    return std::ranges::equal(std::as_bytes(left), std::as_bytes(right));
}

struct Case {
    std::vector<float> lot;
    std::string expected;
    float width = 0.1F; // m
    float round = 0.0F;
    float height = 0.0F;
};

void expect_scallops(std::span<const Case> cases) {
    for (const Case& c : cases) {
        LotScallops found;
        EXPECT_EQ(CountScallops(c.lot, interval, 0.0F, {band, c.width, c.round, c.height}, found),
                  success);
        EXPECT_EQ(described(found), c.expected);
    }
}

} // namespace

TEST(Scallops, WholeOnesAreMeasuredFromCrossingToCrossing) {
    const std::vector<float> peak{0, 4, 6, 4, 0};
    const Case cases[] = {
        {peak, "4/4; up 2-4 0.75..2.25 h4"},
        {{0, -4, -6, -4, 0}, "4/4; down 2-4 0.75..2.25 h4"},
        {{0, 2, 0, -2, 0}, "0/0"}, // on the edge is inside
        {{2, 4, 2}, "2/2; up 2-2 0.5..1.5 h2"},
        {{-2, -4, -2}, "2/2; down 2-2 0.5..1.5 h2"},
        {{0, 4, -4, 0}, "4/4; up 2-2 0.75..1.125 h2; down 3-3 1.375..1.75 h2"},
        {peak, "4/4; up 2-4 0.75..2.25 h4", 1.5F}, // of exactly the width
        {peak, "0/0", 1.51F},
    };
    expect_scallops(cases);
}

TEST(Scallops, HeightIsFlooredThenRounded) {
    const std::vector<float> peak{0, 4, 6, 4, 0};
    const Case cases[] = {
        {peak, "4/4; up 2-4 0.75..2.25 h4", 0.1F, 0.0F, 4.0F},
        {peak, "4/0", 0.1F, 0.0F, 4.01F}, // its raw height counts all the same
        {peak, "4/3; up 2-4 0.75..2.25 h3", 0.1F, 3.0F},
        {peak, "4/4; up 2-4 0.75..2.25 h4", 0.1F, -3.0F},
        {peak, "4/4; up 2-4 0.75..2.25 h4", 0.1F, 1e-9F}, // more steps than an int32 counts
        {{0, 2.9F, 0}, "0.9/0", 0.1F, 2.0F},
        {{0, 3, 0}, "1/2; up 2-2 0.833333..1.16667 h2", 0.1F, 2.0F},
    };
    expect_scallops(cases);
}

TEST(Scallops, PartialOneAtTheStartIsProjectedForward) {
    const Case cases[] = {
        {{6, 5, 4, 0, 0}, "0/0; start up 1-2 0..2.5 h4/4"},
        {{-6, -5, -4, 0, 0}, "0/0; start down 1-2 0.5..2.5 h4/4"},
        {{6, 5, 2, 0}, "0/0; start up 1-2 0..1.5 h4/4"}, // runs on over a sample on the edge
        {{6, 5, 5, 0}, "0/0; start up 1-2 0..inf h4/4"},
        // It stops ahead of the first whole one.
        {{6, 5, 4, 2, 4, 2, 0}, "2/2; start up 1-3 0..2 h4/4; up 5-5 2..3 h2"},
        // Without a sample before the first there is no crossing.
        {{6, 0, 0}, "0/0; start up 1-0 0..0.5 h4/4", 0.0F},
        {{-6, 0, 0}, "0/0; start down 1-0 0.5..0.5 h4/4", -1.0F},
        {{6, 0, 0}, "0/0"},
        {{6, 5, 4, 0}, "0/0; start up 1-2 0..2.5 h4/4", 3.0F}, // 0.33 of the width is 0.99 m
        {{6, 5, 4, 0}, "0/0", 3.1F},
        {{6, 5, 4, 0}, "0/0; start up 1-2 0..2.5 h4/3", 0.1F, 3.0F},
        {{6, 5, 4, 0}, "0/0", 0.1F, 0.0F, 4.5F},
    };
    expect_scallops(cases);
}

TEST(Scallops, PartialOneAtTheEndBeginsAtItsCrossing) {
    const Case cases[] = {
        {{0, 0, 4, 5, 6}, "0/0; end up 3-5 1.25..2.5 h4/4"},
        {{0, 0, -4, -5, -6}, "0/0; end down 3-5 1.25..2.5 h4/4"},
        // It never reaches back into the last whole one.
        {{0, 4, 2, 4}, "2/2; up 2-2 0.75..1.5 h2; end up 3-4 0.5..2 h2/2"},
        {{0, 4, -4}, "2/2; up 2-2 0.75..1.125 h2; end down 3-3 1.375..1.5 h2/2", 0.0F},
        {{0, 4, 5, 6}, "0/0; end up 2-4 0.75..2 h4/4", 3.0F},
        {{0, 4, 5, 6}, "0/0", 3.1F},
        {{0, 4, 5, 6}, "0/0", 0.1F, 0.0F, 4.5F},
        // Without a sample before the first there is no crossing.
        {{6, 5, 4}, "0/0; start up 1-2 0..2.5 h4/4; end up 1-3 0..1.5 h4/4"},
        {{-6, -5, -4}, "0/0; start down 1-2 0.5..2.5 h4/4; end down 1-3 0.5..1.5 h4/4"},
        {{6}, "0/0; start up 1-0 0..0.5 h4/4; end up 1-1 0..0.5 h4/4", 0.0F},
        {{}, "0/0"},
    };
    expect_scallops(cases);
}

TEST(Scallops, ThousandthPassesAndTheNextCandidateFailsHoweverLow) {
    std::vector<float> lot;
    for (int i = 0; i < 1000; ++i) {
        lot.insert(lot.end(), {0.0F, 4.0F});
    }
    lot.push_back(0.0F);
    const ScallopRules rules{band, 0.1F, 0.0F, 1.0F};
    LotScallops found;
    reset_event();
    EXPECT_EQ(CountScallops(lot, interval, 0.0F, rules, found), success);
    EXPECT_EQ(found.scallops.size(), 1000U);
    EXPECT_EQ(found.xSumRnd, 2000.0F);
    lot.insert(lot.end(), {2.5F, 0.0F});
    EXPECT_EQ(CountScallops(lot, interval, 0.0F, rules, found), failure);
    EXPECT_EQ(summary_of_current_event(), "101 2 pgindex: maximum number of scallops exceeds the "
                                          "program limits. Try with smaller segments");
    reset_event();
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
        LotScallops found;
        ASSERT_EQ(CountScallops(lot, 0.3F, 0.0F, rules, found), success);
        const LotScallops expected = literal_scallops(lot, 0.3F, rules);
        EXPECT_TRUE(same_bits<Scallop>(found.scallops, expected.scallops));
        EXPECT_TRUE(same_bits<PartialScallop>({&found.edges.start, 1}, {&expected.edges.start, 1}));
        EXPECT_TRUE(same_bits<PartialScallop>({&found.edges.end, 1}, {&expected.edges.end, 1}));
        EXPECT_EQ(found.xSumRaw, expected.xSumRaw);
        EXPECT_EQ(found.xSumRnd, expected.xSumRnd);
    }
}

} // namespace vialto::test
