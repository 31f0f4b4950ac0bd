#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "comparison/sweep.hpp"
#include "support/literal_sweep.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

constexpr float mark = -999.0F;
constexpr float step = 0.025F;

struct Sweep {
    std::vector<float> final_cc, roughness, shape, offset;
    SweepOptimum optimum{-7, 0.0F, 0.0F, 0.0F, 0.0F};
    ReturnCode code = failure;

    Sweep(const std::vector<float>& reference, const std::vector<float>& test,
          std::size_t positions)
        : final_cc(positions, mark), roughness(positions, mark), shape(positions, mark),
          offset(positions, mark) {
        reset_event();
        code = cc_sweep({reference, test}, step, step * static_cast<float>(positions / 2),
                        {final_cc, roughness, shape, offset}, optimum);
    }
};

using Road = std::vector<float>;

Road mapped(Road road, const std::function<float(float)>& map) {
    std::transform(road.begin(), road.end(), road.begin(), map);
    return road;
}

Road from(const Road& road, std::size_t first) {
    return {road.begin() + static_cast<std::ptrdiff_t>(first), road.end()};
}

Road alternating(std::size_t count) {
    Road road(count);
    for (std::size_t i = 0; i < count; ++i) {
        road[i] = i % 2 == 0 ? 1.0F : -1.0F;
    }
    return road;
}

const Road measured = random_road(2000, 0.025, 11);

} // namespace

TEST(CrossCorrelation, AgreementOfCopies) {
    struct Case {
        const char* name;
        Road test;
        float roughness, shape; // at offset 0
    };
    const Case cases[] = {
        {"identical", measured, 100.0F, 1.0F},
        {"half the height", mapped(measured, [](float y) { return 0.5F * y; }), 100.0F, 0.5F},
        {"twice the height", mapped(measured, [](float y) { return 2.0F * y; }), 100.0F, 0.5F},
        {"inverted", mapped(measured, [](float y) { return -y; }), -100.0F, 1.0F},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Sweep sweep(measured, c.test, 41);
        ASSERT_EQ(sweep.code, success);
        EXPECT_NEAR(sweep.roughness[20], c.roughness, 1e-4F);
        EXPECT_NEAR(sweep.shape[20], c.shape, 1e-6F);
        EXPECT_EQ(sweep.final_cc[20], sweep.roughness[20] * sweep.shape[20]);
        EXPECT_EQ(sweep.optimum.index == 20, c.roughness > 0.0F);
        EXPECT_EQ(sweep.offset[0], 0.0F * step - 20.0F * step);
    }
}

TEST(CrossCorrelation, PositiveOffsetSkipsTheBeginningOfTheReference) {
    const Sweep late_test(measured, from(measured, 7), 41);
    EXPECT_EQ(late_test.optimum.index, 20 + 7);
    EXPECT_EQ(late_test.optimum.offset, 27.0F * step - 20.0F * step);
    const Sweep late_reference(from(measured, 7), measured, 41);
    EXPECT_EQ(late_reference.optimum.index, 20 - 7);
}

TEST(CrossCorrelation, FirstOfEqualMaximaIsTheOptimum) {
    // Even overlaps of an alternation normalise to themselves: exactly 100 at offsets -2, 0 and 2.
    const Sweep sweep(alternating(64), alternating(64), 5);
    EXPECT_EQ(sweep.final_cc[4], 100.0F);
    EXPECT_EQ(sweep.optimum.index, 0);
    EXPECT_EQ(sweep.optimum.final_cc, 100.0F);
}

TEST(CrossCorrelation, FlatStretchesGiveNoCoefficientAndTwoOfThemFail) {
    const Road flat(2000, 0.1F);
    const Sweep one(measured, flat, 5);
    EXPECT_EQ(one.code, success);
    EXPECT_TRUE(std::isnan(one.roughness[2]) && std::isnan(one.final_cc[2]));
    EXPECT_EQ(one.shape[2], 0.0F);
    EXPECT_EQ(one.optimum.index, 0);
    EXPECT_TRUE(std::isnan(one.optimum.final_cc));

    const Sweep both(flat, flat, 5);
    EXPECT_EQ(both.code, failure);
    EXPECT_EQ(current_event().description.trimmed(),
              "max(x_rms_test, x_rms_base) is close to zero");
    EXPECT_EQ(current_event().routine.trimmed(), "cc_sweep");
    EXPECT_EQ(both.final_cc[0], mark);
    EXPECT_EQ(both.optimum.index, -7);

    // The limit is met by the larger root mean square alone.
    const Road faint = mapped(alternating(2000), [](float y) { return 1.0e-7F * y; });
    EXPECT_EQ(Sweep(faint, flat, 5).code, failure);
    EXPECT_EQ(Sweep(mapped(faint, [](float y) { return 1.25F * y; }), faint, 5).code, success);
}

TEST(CrossCorrelation, OffsetsBeyondAProfileFailAndEarlierPositionsStay) {
    struct Case {
        const char* name;
        std::size_t reference, test, positions;
        const char* event;
        std::size_t done; // positions written before the failure
    };
    const Case cases[] = {
        {"test shorter than the offset", 50, 9, 21,
         "norm_cal/cc_sweep: x_num_act should not be zero", 0},
        {"test as long as the offset", 50, 10, 21,
         "sngl_croxcorr/cc_sweep: number of points is less than zero", 0},
        {"one sample left", 50, 11, 21, "cc_sweep: max(x_rms_test, x_rms_base) is close to zero",
         0},
        {"reference runs out", 10, 50, 21, "cc_sweep: max(x_rms_test, x_rms_base) is close to zero",
         19},
        {"no profiles", 0, 0, 1, "sngl_croxcorr/cc_sweep: number of points is less than zero", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Sweep sweep(random_road(c.reference, 0.025, 1), random_road(c.test, 0.025, 2),
                          c.positions);
        EXPECT_EQ(sweep.code, failure);
        EXPECT_EQ(std::string(current_event().routine.trimmed()) + ": " +
                      std::string(current_event().description.trimmed()),
                  c.event);
        EXPECT_EQ(std::count(sweep.final_cc.begin(), sweep.final_cc.end(), mark),
                  std::ssize(sweep.final_cc) - static_cast<std::ptrdiff_t>(c.done));
        EXPECT_EQ(std::count(sweep.offset.begin(), sweep.offset.end(), mark),
                  std::ssize(sweep.offset) - static_cast<std::ptrdiff_t>(c.done));
        EXPECT_EQ(sweep.optimum.index, -7);
    }
}

TEST(CrossCorrelation, NoPositionsGiveAnOptimumOfZeros) {
    const Sweep sweep(measured, measured, 0);
    EXPECT_EQ(sweep.code, success);
    EXPECT_EQ(sweep.optimum.index, 0);
    EXPECT_EQ(sweep.optimum.final_cc, 0.0F);
}

// The sweep takes its coefficients from sums that go from offset to offset; the literal version
// normalises and correlates each overlap anew.
TEST(CrossCorrelation, RunningSumsAgreeWithTheLiteralSweep) {
    const Road other = random_road(1700, 0.025, 12);
    Road noisy = from(measured, 5);
    for (std::size_t i = 0; i < other.size(); ++i) {
        noisy[i] += 0.3F * other[i];
    }
    Road cliff = measured; // its sums are those of the first samples, which most overlaps lose
    std::fill_n(cliff.begin(), 3, 1.0e6F);
    Road spoilt = measured;
    spoilt[1990] = std::nanf("");
    struct Case {
        const char* name;
        Road reference, test;
        std::size_t positions;
    };
    const Case cases[] = {
        {"noisy", measured, noisy, 201},
        {"unrelated, unequal lengths", measured, other, 101},
        {"reference the shorter", other, measured, 101},
        {"far above zero", mapped(measured, [](float y) { return 1000.0F + y; }),
         mapped(noisy, [](float y) { return 500.0F + y; }), 51},
        {"tiny heights", mapped(measured, [](float y) { return 1.0e-30F * y; }), noisy, 21},
        {"on a grade", straight_line(2000, 0.025, 0.05), noisy, 51},
        {"periodic, equal maxima", sinusoid(2000, 0.025, 1.0, 0.01),
         sinusoid(2000, 0.025, 1.0, 0.01), 201},
        {"an even number of positions", measured, noisy, 16},
        {"down to two samples", from(measured, 1980), from(measured, 1980), 37},
        {"offsets that leave the weight behind", cliff, cliff, 31},
        {"a NaN near the end", spoilt, noisy, 31},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Sweep sweep(c.reference, c.test, c.positions);
        const LiteralSweep literal = literal_sweep(c.reference, c.test, c.positions);
        ASSERT_EQ(sweep.code, success);
        for (std::size_t k = 0; k < c.positions; ++k) {
            SCOPED_TRACE(k);
            ASSERT_EQ(std::isnan(sweep.final_cc[k]), std::isnan(literal.final_cc[k]));
            if (!std::isnan(literal.final_cc[k])) {
                ASSERT_NEAR(sweep.final_cc[k], literal.final_cc[k], 1e-4F);
                ASSERT_NEAR(sweep.roughness[k], literal.roughness[k], 1e-4F);
                ASSERT_NEAR(sweep.shape[k], literal.shape[k], 1e-6F);
            }
        }
        ASSERT_EQ(static_cast<std::size_t>(sweep.optimum.index), literal.best);
        EXPECT_EQ(sweep.optimum.final_cc, literal.final_cc[literal.best]);
        EXPECT_EQ(sweep.optimum.roughness, literal.roughness[literal.best]);
        EXPECT_EQ(sweep.optimum.shape, literal.shape[literal.best]);
    }
}

} // namespace vialto::test
