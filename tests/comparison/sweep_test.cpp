#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "comparison/sweep.hpp"
#include "support/current_event.hpp"
#include "support/literal_sweep.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

constexpr float mark = -999.0F;

using Road = std::vector<float>;

struct Sweep {
    Road final_cc, roughness, shape, offset;
    SweepOptimum optimum{-7, 0.0F, 0.0F, 0.0F, 0.0F};
    ReturnCode code = failure;

    Sweep(const Road& reference, const Road& test, std::size_t positions)
        : final_cc(positions, mark), roughness(final_cc), shape(final_cc), offset(final_cc) {
        reset_event();
        code = cc_sweep({reference, test}, 0.025F, 1.0F, {final_cc, roughness, shape, offset},
                        optimum);
    }
};

Road mapped(Road road, float factor, float height = 0.0F) {
    std::transform(road.begin(), road.end(), road.begin(),
                   [=](float y) { return height + factor * y; });
    return road;
}

Road alternating(std::size_t count) {
    Road road(count, 1.0F);
    for (std::size_t i = 1; i < count; i += 2) {
        road[i] = -1.0F;
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
const Road faint = mapped(alternating(2000), 1.0e-7F);

} // namespace

TEST(CrossCorrelation, HeightIsOfTheShapeAndSignOfTheRoughness) {
    struct Case {
        float factor, roughness, shape; // at offset 0
    };
    for (const Case& c : {Case{1.0F, 100.0F, 1.0F},
                          {0.5F, 100.0F, 0.5F},
                          {2.0F, 100.0F, 0.5F},
                          {-1.0F, -100.0F, 1.0F}}) {
        const Sweep sweep(measured, mapped(measured, c.factor), 41);
        EXPECT_NEAR(sweep.roughness[20], c.roughness, 1e-4F);
        EXPECT_NEAR(sweep.shape[20], c.shape, 1e-6F);
        EXPECT_EQ(sweep.optimum.index == 20, c.factor > 0.0F);
    }
}

TEST(CrossCorrelation, FirstOfEqualMaximaIsTheOptimum) {
    // Even overlaps of an alternation normalise to themselves: exactly 100 at offsets -2, 0 and 2.
    const Sweep sweep(alternating(64), alternating(64), 5);
    EXPECT_EQ(sweep.final_cc[4], 100.0F);
    EXPECT_EQ(sweep.optimum.final_cc, 100.0F);
    EXPECT_EQ(sweep.optimum.index, 0);
}

TEST(CrossCorrelation, OneFlatStretchGivesNoCoefficient) {
    const Sweep sweep(measured, flat, 5);
    EXPECT_EQ(sweep.code, success);
    EXPECT_TRUE(std::isnan(sweep.roughness[2]) && std::isnan(sweep.final_cc[2]));
    EXPECT_EQ(sweep.shape[2], 0.0F);
    EXPECT_TRUE(sweep.optimum.index == 0 && std::isnan(sweep.optimum.final_cc));
    // The limit is met by the larger root mean square alone.
    EXPECT_EQ(Sweep(mapped(faint, 1.25F), faint, 5).code, success);
}

TEST(CrossCorrelation, FailureLeavesTheEarlierPositions) {
    const std::string too_flat = "cc_sweep: max(x_rms_test, x_rms_base) is close to zero";
    const std::string empty = "sngl_croxcorr/cc_sweep: number of points is less than zero";
    struct Case {
        Road reference, test;
        std::size_t positions;
        std::string event;
        std::ptrdiff_t done; // positions written before the failure
    };
    const Case cases[] = {
        {Road(50), Road(9), 21, "norm_cal/cc_sweep: x_num_act should not be zero", 0},
        {Road(50), Road(10), 21, empty, 0},
        {random_road(50, 0.025, 1), random_road(11, 0.025, 2), 21, too_flat, 0}, // one sample
        {random_road(10, 0.025, 1), random_road(50, 0.025, 2), 21, too_flat, 19},
        {{}, {}, 1, empty, 0},
        {flat, flat, 5, too_flat, 0},
        {faint, flat, 5, too_flat, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.reference.size() << " and " << c.test.size());
        const Sweep sweep(c.reference, c.test, c.positions);
        EXPECT_EQ(sweep.code, failure);
        EXPECT_EQ(summary_of_current_event(), "101 2 " + c.event);
        for (const Road& array : {sweep.final_cc, sweep.offset}) {
            EXPECT_EQ(std::ssize(array) - std::count(array.begin(), array.end(), mark), c.done);
        }
        EXPECT_EQ(sweep.optimum.index, -7);
    }
}

// The sweep takes its coefficients from sums that go from offset to offset; the literal version
// normalises and correlates each overlap anew.
TEST(CrossCorrelation, RunningSumsAgreeWithTheLiteralSweep) {
    const Road other = random_road(1700, 0.025, 12);
    Road noisy(measured.begin() + 5, measured.end());
    for (std::size_t i = 0; i < other.size(); ++i) {
        noisy[i] += 0.3F * other[i];
    }
    const Road end(measured.end() - 20, measured.end());
    Road cliff = measured; // its sums are those of the first samples, which most overlaps lose
    std::fill_n(cliff.begin(), 3, 1.0e6F);
    Road spoilt = measured;
    spoilt[1990] = std::nanf("");
    const Road wave = sinusoid(2000, 0.025, 1.0, 0.01);
    struct Case {
        const char* name;
        Road reference, test;
        std::size_t positions;
    };
    const Case cases[] = {
        {"noisy", measured, noisy, 201},
        {"unrelated, unequal lengths", measured, other, 101},
        {"reference the shorter", other, measured, 101},
        {"far above zero", mapped(measured, 1.0F, 1000.0F), mapped(noisy, 1.0F, 500.0F), 51},
        {"tiny heights", mapped(measured, 1.0e-30F), noisy, 21},
        {"on a grade", straight_line(2000, 0.025, 0.05), noisy, 51},
        {"periodic, equal maxima", wave, wave, 201},
        {"an even number of positions", measured, noisy, 16},
        {"down to two samples", end, end, 37},
        {"offsets that leave the weight behind", cliff, cliff, 31},
        {"a NaN near the end", spoilt, noisy, 31},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Sweep sweep(c.reference, c.test, c.positions);
        const LiteralSweep literal = literal_sweep(c.reference, c.test, c.positions);
        EXPECT_EQ(sweep.code, success);
        EXPECT_TRUE(near(sweep.final_cc, literal.final_cc, 1e-4F));
        EXPECT_TRUE(near(sweep.roughness, literal.roughness, 1e-4F));
        EXPECT_TRUE(near(sweep.shape, literal.shape, 1e-6F));
        ASSERT_EQ(static_cast<std::size_t>(sweep.optimum.index), literal.best);
        EXPECT_EQ(sweep.optimum.final_cc, literal.final_cc[literal.best]);
        EXPECT_EQ(sweep.optimum.roughness, literal.roughness[literal.best]);
        EXPECT_EQ(sweep.optimum.shape, literal.shape[literal.best]);
    }
}

} // namespace vialto::test
