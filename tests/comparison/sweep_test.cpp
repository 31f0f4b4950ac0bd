#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "comparison/norm_cal.hpp"
#include "comparison/sweep.hpp"
#include "support/current_event.hpp"
#include "support/literal_sweep.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

using Road = std::vector<float>;

constexpr float mark = -999.0F;

struct Sweep {
    Road final_cc, roughness, shape, offset;
    SweepOptimum optimum{-7, 0.0F, 0.0F, 0.0F, 0.0F};
    std::string event; // empty after a success

    Sweep(const Road& reference, const Road& test, std::size_t positions)
        : final_cc(positions, mark), roughness(final_cc), shape(final_cc), offset(final_cc) {
        reset_event();
        (void)cc_sweep({reference, test}, 0.025F, 1.0F, {final_cc, roughness, shape, offset},
                       optimum);
        event = summary_of_current_event();
    }
};

Road mapped(Road road, float factor, float height = 0.0F) {
    for (float& y : road) {
        y = height + factor * y;
    }
    return road;
}

bool near(const Road& values, const Road& expected, float tolerance) {
    return std::equal(values.begin(), values.end(), expected.begin(), [=](float a, float b) {
        return std::isnan(b) ? std::isnan(a) : std::fabs(a - b) <= tolerance;
    });
}

const Road measured = random_road(2000, 0.025, 11);
const Road flat(2000, 0.1F);
const Road stripes{1.0F, -1.0F, 1.0F, -1.0F, 1.0F, -1.0F, 1.0F, -1.0F};
const Road faint = mapped(stripes, 1.0e-7F);

} // namespace

TEST(NormCal, SegmentLosesMeanAndScaleOfItsMiddle) {
    float rms = 0.0F;
    Road segment{100.0F, 7.0F, 1.0F, -20.0F};
    EXPECT_EQ(norm_cal(1, segment, rms), success);
    EXPECT_EQ(segment, (Road{32.0F, 1.0F, -1.0F, -8.0F}));
    EXPECT_EQ(rms, 3.0F);
    reset_event();
    EXPECT_EQ(norm_cal(3, segment, rms), failure);
    EXPECT_EQ(summary_of_current_event(), "101 2 norm_cal: x_num_act should not be zero");
    EXPECT_TRUE(rms == 3.0F && segment[0] == 32.0F);
    EXPECT_EQ(norm_cal(2, segment, rms), success);
    EXPECT_TRUE(std::isnan(rms) && std::isnan(segment[0]) && std::isnan(segment[3]));
}

TEST(CrossCorrelation, WithoutVarianceOnlyTheSignOfTheCovarianceCounts) {
    float coefficient = 0.0F;
    EXPECT_EQ(sngl_croxcorr(Road{0.0F, 1.0e-5F}, Road{0.0F, 1.0F}, coefficient), success);
    EXPECT_EQ(coefficient, 100.0F);
    EXPECT_EQ(sngl_croxcorr(Road{1.0F, 2.0F}, Road{1.0F, 1.0F}, coefficient), success);
    EXPECT_EQ(coefficient, -100.0F);
}

TEST(CrossCorrelation, HeightIsOfTheShapeAndSignOfTheRoughness) {
    struct Case {
        Road reference, test;
        float roughness, shape; // at offset 0, which is position 2
        std::int32_t best;
    };
    for (const auto& [reference, test, roughness, shape, best] :
         {Case{measured, measured, 100.0F, 1.0F, 2},
          Case{measured, mapped(measured, 0.5F), 100.0F, 0.5F, 2},
          Case{measured, flat, NAN, 0.0F, 0}, // no coefficient at all
          // Even overlaps of stripes normalise to themselves: the first of equal maxima counts.
          Case{stripes, stripes, 100.0F, 1.0F, 0},
          Case{stripes, mapped(stripes, -1.0F), -100.0F, 1.0F, 1},
          Case{mapped(faint, 1.25F), faint, 100.0F, 0.8F,
               0}}) { // the test alone is below the limit
        const Sweep sweep(reference, test, 5);
        EXPECT_EQ(sweep.event, "");
        EXPECT_TRUE(near({sweep.roughness[2], sweep.shape[2]}, {roughness, shape}, 1e-5F));
        EXPECT_TRUE(near({sweep.final_cc[2]}, {roughness * shape}, 1e-4F));
        EXPECT_EQ(sweep.optimum.index, best);
    }
}

TEST(CrossCorrelation, FailureLeavesTheEarlierPositions) {
    const std::string too_flat = "cc_sweep: max(x_rms_test, x_rms_base) is close to zero";
    struct Case {
        Road reference, test;
        std::string event;
        std::ptrdiff_t done = 0; // of 21 positions
    };
    for (const auto& [reference, test, event, done] :
         {Case{Road(50), Road(9), "norm_cal/cc_sweep: x_num_act should not be zero"},
          Case{Road(50), Road(10), "sngl_croxcorr/cc_sweep: number of points is less than zero"},
          Case{random_road(10, 0.025, 1), measured, too_flat, 19}, Case{flat, flat, too_flat},
          Case{faint, flat, too_flat}}) {
        const Sweep sweep(reference, test, 21);
        EXPECT_EQ(sweep.event, "101 2 " + event);
        EXPECT_EQ(std::count(sweep.final_cc.begin(), sweep.final_cc.end(), mark), 21 - done);
        EXPECT_EQ(std::count(sweep.offset.begin(), sweep.offset.end(), mark), 21 - done);
        EXPECT_EQ(sweep.optimum.index, -7);
    }
}

// The sweep takes its coefficients from sums that go from offset to offset; the literal version
// normalises and correlates each overlap anew.
TEST(CrossCorrelation, RunningSumsAgreeWithTheLiteralSweep) {
    const Road other = random_road(1700, 0.025, 12);
    Road noisy(measured.begin() + 5, measured.end());
    std::transform(other.begin(), other.end(), noisy.begin(), noisy.begin(),
                   [](float noise, float y) { return y + 0.3F * noise; });
    const Road end(measured.end() - 20, measured.end());
    Road cliff = measured; // its sums are those of the first samples, which most overlaps lose
    std::fill_n(cliff.begin(), 3, 1.0e6F);
    Road spoilt = measured;
    spoilt[1990] = NAN;
    const Road wave = sinusoid(2000, 0.025, 1.0, 0.01);
    struct Case {
        const char* name;
        Road reference, test;
        std::size_t positions;
    };
    for (const auto& [name, reference, test, positions] :
         {Case{"noisy", measured, noisy, 201}, Case{"reference the shorter", other, measured, 101},
          Case{"far above zero", mapped(measured, 1.0F, 1000.0F), mapped(noisy, 1.0F, 500.0F), 51},
          Case{"tiny heights", mapped(measured, 1.0e-30F), noisy, 21},
          Case{"periodic, equal maxima", wave, wave, 201},
          Case{"an even number of positions", measured, noisy, 16},
          Case{"down to two samples", end, end, 37}, Case{"weight left behind", cliff, cliff, 31},
          Case{"a NaN near the end", spoilt, noisy, 31}}) {
        const Sweep sweep(reference, test, positions);
        const LiteralSweep literal = literal_sweep(reference, test, positions);
        EXPECT_EQ(sweep.event, "") << name;
        EXPECT_TRUE(near(sweep.roughness, literal.roughness, 1e-4F)) << name;
        EXPECT_TRUE(near(sweep.shape, literal.shape, 1e-6F)) << name;
        const SweepOptimum& found = sweep.optimum;
        ASSERT_EQ(static_cast<std::size_t>(found.index), literal.best) << name;
        EXPECT_EQ((Road{found.final_cc, found.roughness, found.shape}),
                  (Road{literal.final_cc[literal.best], literal.roughness[literal.best],
                        literal.shape[literal.best]}));
    }
}

} // namespace vialto::test
