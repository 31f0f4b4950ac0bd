#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "ride/ride_drv.hpp"
#include "ride/segment_statistic.hpp"
#include "support/current_event.hpp"
#include "support/roads.hpp"

namespace vialto::test {
namespace {

constexpr float untouched = -7.0F;
constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

using Floats = std::vector<float>;
using Counts = std::vector<std::int32_t>;

// Twelve samples half a metre apart, of which ten are valid. Sample i (from 0) has the slope i + 1,
// so that the index of samples a to b is (a + b) / 2 + 1.
ReturnCode walk(const Counts& counts, Floats& index, Floats& length) {
    const Floats slope{1, -2, 3, -4, 5, 6, 7, 8, 9, 10, 0, 0};
    tFiltCon filter{};
    filter.iEndElemIdx = 9;
    filter.xPowerWeighting = 1.0F;
    RideRequest request{};
    request.xStepSize = 0.5F;
    request.iNumSegmentPoints = counts;
    float scratch = 0.0F;
    return segmented_pi(request, filter, slope, {scratch, index, length});
}

TEST(SegmentWalk, SharesBoundariesAndStepsBackBehindHoles) {
    struct Case {
        Counts counts;
        Floats index;
        Floats length;
    };
    const Case cases[] = {
        // The last segment has what remains, whatever its count.
        {{77}, {5.5F}, {4.5F}},
        {{lowest}, {5.5F}, {4.5F}},
        // The boundary sample belongs to both.
        {{4, 0}, {2.5F, 7.0F}, {1.5F, 3.0F}},
        {{1, 1, 0}, {1.0F, 1.0F, 5.5F}, {0.0F, 0.0F, 4.5F}},
        // A hole moves the next segment back by one, a negative count by as many more.
        {{4, 0, 9}, {2.5F, -1.0F, 6.5F}, {1.5F, 0.0F, 3.5F}},
        {{4, -1, 9}, {2.5F, -1.0F, 6.0F}, {1.5F, 0.0F, 4.0F}},
        // What lies before the first sample holds no samples.
        {{0, 3, 9}, {-1.0F, 1.5F, 6.0F}, {0.0F, 0.5F, 4.0F}},
        {{-5, 2, 9}, {-1.0F, -1.0F, 5.5F}, {0.0F, 0.0F, 4.5F}},
        {{lowest, lowest, highest, 9}, {-1, -1, -1, 5.5F}, {0, 0, 0, 4.5F}},
        // An earlier segment counts the zeros behind the last valid sample, and leaves a hole.
        {{11, 9}, {5.0F, -1.0F}, {5.0F, 0.0F}},
        {{}, {}, {}},
    };
    for (const Case& c : cases) {
        Floats index(c.counts.size(), untouched);
        Floats length(c.counts.size(), untouched);
        EXPECT_EQ(walk(c.counts, index, length), success);
        EXPECT_EQ(index, c.index) << testing::PrintToString(c.counts);
        EXPECT_EQ(length, c.length) << testing::PrintToString(c.counts);
    }
}

TEST(SegmentWalk, EndsWithTheSegmentThatRunsBeyondTheArray) {
    for (const std::int32_t beyond : {10, highest}) {
        Floats index(3, untouched);
        Floats length(3, untouched);
        reset_event();
        EXPECT_EQ(walk({4, beyond, 0}, index, length), failure);
        EXPECT_EQ(summary_of_current_event(),
                  "100 2 segmented_pi: End index of data points exceeds the input array size. "
                  "Double-check segment points.");
        EXPECT_EQ(index, (Floats{2.5F, untouched, untouched}));
        EXPECT_EQ(length, (Floats{1.5F, untouched, untouched}));
    }
}

TEST(SegmentIndex, OfOneSegmentIsTheOverallIndex) {
    const Floats road = random_road(3000, 0.025, 21);
    for (const std::int32_t selector : {idx_ridests_IRI, idx_ridests_RN}) {
        float overall = 0.0F;
        Floats index(1);
        Floats length(1);
        ASSERT_EQ(ride_drv(2, 1, selector, road, {}, 0.025F, overall), success);
        ASSERT_EQ(rideseg_drv(2, 1, selector, road, {}, 0.025F, Counts{0}, index, length), success);
        EXPECT_EQ(index[0], overall);
        EXPECT_EQ(length[0], 2989.0F * 0.025F);
    }
}

TEST(SegmentIndex, LengthCountsOnlyTheSamplesThatWereNotLeftOut) {
    Counts flags(3000, 0);
    std::fill(flags.begin(), flags.begin() + 1000, 8);
    std::fill(flags.begin() + 1200, flags.begin() + 1250, 1);
    Floats index(3);
    Floats length(3);
    ASSERT_EQ(rideseg_drv(vialto_yes, 1, 1, random_road(3000, 0.025, 21), flags, 0.025F,
                          Counts{1000, 501, 0}, index, length),
              success);
    EXPECT_EQ(index[0], -1.0F);
    // 501 samples without the shared boundary sample and the 50; all from 1499 to 2989.
    EXPECT_EQ(length, (Floats{0.0F, 449.0F * 0.025F, 1490.0F * 0.025F}));
}

} // namespace
} // namespace vialto::test
