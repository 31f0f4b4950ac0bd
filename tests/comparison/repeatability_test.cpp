#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "comparison/repeatability.hpp"
#include "support/current_event.hpp"
#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

using Road = std::vector<float>;

TEST(Repeatability, ClassLimitsAreIncluded) {
    struct Case {
        float limit;
        std::pair<std::int32_t, std::int32_t> at, above; // class of precision, class of bias
    };
    const Case cases[] = {
        {0.00038F, {1, 1}, {2, 1}}, {0.00076F, {2, 1}, {3, 1}}, {0.00125F, {3, 1}, {3, 2}},
        {0.0025F, {3, 2}, {0, 3}},  {0.00625F, {0, 3}, {0, 0}},
    };
    for (const Case& c : cases) {
        for (const float d : {c.limit, std::nextafter(c.limit, 1.0F)}) {
            // Runs of d, 0 and -d deviate by d, and the reference lies d below their mean.
            Repeatability result;
            ASSERT_EQ(pcbia(3, 1, Road{d, 0.0F, -d}, Road{-d}, result), success);
            EXPECT_EQ(result.xPrecision, 1000.0F * d);
            EXPECT_EQ(result.xBias, 1000.0F * d);
            EXPECT_EQ(std::pair(result.iPrecisionClass, result.iBiasClass),
                      d == c.limit ? c.at : c.above);
        }
    }
}

TEST(Repeatability, PointsAreAveragedAndTwoRunsAreTooFew) {
    // Deviations between the runs 1 and 3, means 2 and -4, references 4 and 4.
    const Road runs{1.0F, -1.0F, 2.0F, -4.0F, 3.0F, -7.0F};
    Repeatability result;
    ASSERT_EQ(pcbia(3, 2, runs, Road{4.0F, 4.0F}, result), success);
    EXPECT_EQ(std::pair(result.xPrecision, result.xBias), std::pair(2000.0F, 5000.0F));

    reset_event();
    result = {1.0F, 1.0F, 1, 1};
    EXPECT_EQ(pcbia(2, 3, runs, Road(3), result), failure);
    EXPECT_EQ(summary_of_current_event(), "101 2 pcbia: iNumRuns < 3, stats can be calculated");
    EXPECT_EQ(std::pair(result.xPrecision, result.xBias), std::pair(0.0F, 0.0F));
    EXPECT_EQ(std::pair(result.iPrecisionClass, result.iBiasClass), std::pair(0, 0));
}

TEST(Repeatability, TenRunsAreRated) {
    const TemporaryDirectory directory;
    const Road road = random_road(1057, 0.025, 3);
    for (const float shift : {-0.001F, std::nanf("")}) {
        Road runs;
        for (int run = 0; run < 10; ++run) {
            for (const float y : road) {
                runs.push_back(y + shift + (run % 2 == 0 ? 0.002F : -0.002F));
            }
        }
        EventRecord event;
        float precision = -1.0F;
        float bias = -1.0F;
        std::pair<std::int32_t, std::int32_t> classes{-1, -1};
        ASSERT_EQ(pcbia_dlldrv(runs.data(), road.data(), &precision, &bias, &classes.first,
                               &classes.second, event),
                  vialto_success);
        EXPECT_TRUE(event.untouched());
        if (std::isnan(shift)) {
            EXPECT_TRUE(std::isnan(precision) && std::isnan(bias));
            EXPECT_EQ(classes, std::pair(0, 0));
        } else {
            EXPECT_NEAR(precision, 2.0 * std::sqrt(10.0 / 9.0), 1e-3);
            EXPECT_NEAR(bias, 1.0, 1e-3);
            EXPECT_EQ(classes, std::pair(3, 1));
        }
    }
    EXPECT_NE(directory.text_of("pcbia_dlldrv.txt").find("done with the pcbia call"),
              std::string::npos);
}

} // namespace vialto::test
