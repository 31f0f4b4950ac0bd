#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "comparison/norm_cal.hpp"
#include "comparison/overlap.hpp"
#include "comparison/sweep.hpp"
#include "support/cases.hpp"
#include "support/current_event.hpp"
#include "support/literal_sweep.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

using Road = std::vector<float>;

struct Sweep {
    Road final_cc, roughness, shape, offset;
    SweepOptimum optimum{-7, 0.0F, 0.0F, 0.0F, 0.0F};
    std::string event;

    Sweep(const Road& reference, const Road& test, std::size_t positions)
        : final_cc(positions, -999.0F), roughness(final_cc), shape(final_cc), offset(final_cc) {
        reset_event();
        (void)cc_sweep({{reference}, {test}}, 0.025F, 1.0F, {final_cc, roughness, shape, offset},
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

const Road measured = random_road(2000, 0.025, 11);
const Road flat(2000, 0.1F);
const Road stripes{1.0F, -1.0F, 1.0F, -1.0F, 1.0F, -1.0F, 1.0F, -1.0F};
const Road faint = mapped(stripes, 1.0e-7F);

TEST(NormCal, SegmentLosesMeanAndScaleOfItsMiddle) {
    float rms = 0.0F;
    Road segment{100.0F, 7.0F, 1.0F, -20.0F};
    EXPECT_EQ(norm_cal(1, segment, rms), success);
    reset_event();
    EXPECT_EQ(norm_cal(3, segment, rms), failure);
    EXPECT_EQ(summary_of_current_event(), "101 2 norm_cal: x_num_act should not be zero");
    EXPECT_EQ(segment, (Road{32.0F, 1.0F, -1.0F, -8.0F}));
    EXPECT_EQ(rms, 3.0F);
    EXPECT_EQ(norm_cal(2, segment, rms), success);
    EXPECT_TRUE(std::isnan(rms) && std::isnan(segment[0]) && std::isnan(segment[3]));
}

TEST(CrossCorrelation, NumeratorIsRoundedAndWithoutVarianceOnlyItsSignCounts) {
    float coefficient = 0.0F;
    const Road step{0.0F, 1.0F + 0x1p-12F};
    EXPECT_EQ(sngl_croxcorr(step, step, coefficient), success);
    EXPECT_EQ(coefficient, std::nextafter(100.0F, 0.0F));
    EXPECT_EQ(sngl_croxcorr(Road{0.0F, 1.0e-5F}, Road{0.0F, 1.0F}, coefficient), success);
    EXPECT_EQ(coefficient, 100.0F);
    EXPECT_EQ(sngl_croxcorr(Road{1.0F, 2.0F}, Road{1.0F, 1.0F}, coefficient), success);
    EXPECT_EQ(coefficient, -100.0F);
}

TEST(CrossCorrelation, HeightIsOfTheShapeAndSignOfTheRoughness) {
    // Roughness and shape at offset 0, which is position 2 of 5, and the position of the optimum.
    const auto correlates = [](const Claim& claim, const Road& reference, const Road& test,
                               float roughness, float shape, std::int32_t best) {
        const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
        const Sweep sweep(reference, test, 5);
        EXPECT_TRUE(same<float>({sweep.roughness[2]}, {roughness}, 1e-5F)) << "roughness";
        EXPECT_TRUE(same<float>({sweep.shape[2]}, {shape}, 1e-5F)) << "shape";
        EXPECT_TRUE(same<float>({sweep.final_cc[2]}, {roughness * shape}, 1e-5F)) << "final";
        EXPECT_EQ(sweep.optimum.index, best);
    };
    correlates("with itself", measured, measured, 100.0F, 1.0F, 2);
    correlates("of half the height", measured, mapped(measured, 0.5F), 100.0F, 0.5F, 2);
    correlates("a flat road has no coefficient at all", measured, flat, NAN, 0.0F, 0);
    // Even overlaps of stripes normalise to themselves.
    correlates("the first of equal maxima counts", stripes, stripes, 100.0F, 1.0F, 0);
    correlates("upside down", stripes, mapped(stripes, -1.0F), -100.0F, 1.0F, 1);
    correlates("one alone is below the limit", mapped(faint, 1.25F), faint, 100.0F, 0.8F, 0);
}

TEST(CrossCorrelation, FailureLeavesTheEarlierPositions) {
    const auto fails = [](const Claim& claim, const Road& reference, const Road& test,
                          const std::string& event, std::int32_t done) {
        const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
        const Sweep sweep(reference, test, 21);
        EXPECT_EQ(sweep.event, "101 2 " + event);
        EXPECT_EQ(std::count(sweep.offset.begin(), sweep.offset.end(), -999.0F), 21 - done);
        EXPECT_EQ(sweep.optimum.index, -7);
    };
    const std::string too_flat = "cc_sweep: max(x_rms_test, x_rms_base) is close to zero";
    fails("ten samples end it", random_road(10, 0.025, 1), measured, too_flat, 19);
    fails("nine samples", Road(50), Road(9), "norm_cal/cc_sweep: x_num_act should not be zero", 0);
    fails("ten flat samples", Road(50), Road(10),
          "sngl_croxcorr/cc_sweep: number of points is less than zero", 0);
    fails("faint and flat", faint, flat, too_flat, 0);
}

TEST(CrossCorrelation, RunningSumsAgreeWithNormalisingEachOverlapAnew) {
    const Road other = random_road(1700, 0.025, 12), wave = sinusoid(2000, 0.025, 1.0, 0.01);
    const Road end(measured.end() - 20, measured.end());
    Road noisy(measured.begin() + 5, measured.end()), cliff = measured, spoilt = measured;
    std::fill_n(noisy.begin() + 700, 30, 0.05F);
    std::fill_n(cliff.begin(), 3, 1.0e6F); // most overlaps lose what its sums begin with
    spoilt[1990] = NAN;
    const auto agrees = [](const Claim& claim, const Road& reference, const Road& test,
                           std::size_t positions) {
        const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
        const Sweep sweep(reference, test, positions);
        const LiteralSweep literal = literal_sweep(reference, test, positions);
        EXPECT_TRUE(same(sweep.roughness, literal.roughness, 1e-4F));
        EXPECT_TRUE(same(sweep.shape, literal.shape, 1e-6F));
        EXPECT_EQ(static_cast<std::size_t>(sweep.optimum.index), literal.best);
        EXPECT_EQ(sweep.optimum.roughness, literal.roughness[literal.best]);
        EXPECT_EQ(sweep.optimum.shape, literal.shape[literal.best]);
    };
    agrees("shifted and disturbed", measured, noisy, 201);
    agrees("of another road", other, measured, 100);
    agrees("high above the sea", mapped(measured, 1.0F, 1000.0F), mapped(noisy, 1.0F, 500.0F), 51);
    agrees("hardly any height", mapped(measured, 1.0e-30F), noisy, 21);
    agrees("equal maxima", wave, wave, 199);
    agrees("down to two samples", end, end, 37);
    agrees("a cliff", cliff, cliff, 31);
    agrees("a sample that is no number", spoilt, noisy, 33);
}

} // namespace
} // namespace vialto::test
