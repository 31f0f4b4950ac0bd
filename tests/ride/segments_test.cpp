#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "ride/segment_statistic.hpp"
#include "support/current_event.hpp"

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

TEST(SegmentWalk, SharesBoundariesStepsBackBehindHolesAndEndsBeyondTheArray) {
    const std::string beyond = "100 2 segmented_pi: End index of data points exceeds the input "
                               "array size. Double-check segment points.";
    struct Case {
        Counts counts;
        Floats index;
        Floats length;
        std::string event{};
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
        {{4, 10, 0}, {2.5F, untouched, untouched}, {1.5F, untouched, untouched}, beyond},
        {{4, highest, 0}, {2.5F, untouched, untouched}, {1.5F, untouched, untouched}, beyond},
    };
    for (const Case& c : cases) {
        Floats index(c.counts.size(), untouched);
        Floats length(c.counts.size(), untouched);
        reset_event();
        EXPECT_EQ(walk(c.counts, index, length), c.event.empty() ? success : failure);
        EXPECT_EQ(summary_of_current_event(), c.event);
        EXPECT_EQ(index, c.index) << testing::PrintToString(c.counts);
        EXPECT_EQ(length, c.length) << testing::PrintToString(c.counts);
    }
}

} // namespace
} // namespace vialto::test
