#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "comparison/repeatability.hpp"
#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

TEST(Repeatability, ClassLimitsAreIncluded) {
    // Runs of d, 0 and -d deviate by exactly d, and the reference lies exactly b below their mean.
    struct Case {
        float limit;
        std::int32_t precision_class, precision_class_above;
        std::int32_t bias_class, bias_class_above;
    };
    const Case cases[] = {
        {0.00038F, 1, 2, 1, 1}, {0.00076F, 2, 3, 1, 1}, {0.00125F, 3, 3, 1, 2},
        {0.0025F, 3, 0, 2, 3},  {0.00625F, 0, 0, 3, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.limit);
        for (const float d : {c.limit, std::nextafter(c.limit, 1.0F)}) {
            const std::vector<float> runs{d, 0.0F, -d};
            const std::vector<float> reference{-d};
            Repeatability result;
            ASSERT_EQ(pcbia(3, 1, runs, reference, result), success);
            EXPECT_EQ(result.xPrecision, 1000.0F * d);
            EXPECT_EQ(result.xBias, 1000.0F * d);
            EXPECT_EQ(result.iPrecisionClass,
                      d == c.limit ? c.precision_class : c.precision_class_above);
            EXPECT_EQ(result.iBiasClass, d == c.limit ? c.bias_class : c.bias_class_above);
        }
    }
}

TEST(Repeatability, PointsAreAveraged) {
    // Deviations between the runs 1 and 3, means 2 and -4, references 4 and 4.
    const std::vector<float> runs{1.0F, -1.0F, 2.0F, -4.0F, 3.0F, -7.0F};
    Repeatability result;
    ASSERT_EQ(pcbia(3, 2, runs, std::vector<float>{4.0F, 4.0F}, result), success);
    EXPECT_EQ(result.xPrecision, 2000.0F);
    EXPECT_EQ(result.xBias, 5000.0F);
}

TEST(Repeatability, TwoRunsAreTooFew) {
    reset_event();
    Repeatability result{1.0F, 1.0F, 1, 1};
    EXPECT_EQ(pcbia(2, 1, std::vector<float>{1.0F, 2.0F}, std::vector<float>{1.0F}, result),
              failure);
    EXPECT_EQ(current_event().description.trimmed(), "iNumRuns < 3, stats can be calculated");
    EXPECT_EQ(result.xPrecision, 0.0F);
    EXPECT_EQ(result.xBias, 0.0F);
    EXPECT_EQ(result.iPrecisionClass, 0);
    EXPECT_EQ(result.iBiasClass, 0);
}

TEST(Repeatability, RunsOverOneStretchAreRated) {
    const TemporaryDirectory directory;
    const std::vector<float> road = random_road(1057, 0.025, 3);
    struct Case {
        const char* name;
        float scatter, shift;  // m; runs alternate about the shifted reference
        float precision, bias; // mm
        std::int32_t precision_class, bias_class;
    };
    const float deviation = std::sqrt(10.0F / 9.0F);
    const Case cases[] = {
        {"identical", 0.0F, 0.0F, 0.0F, 0.0F, 1, 1},
        {"1 mm high", 0.0F, 0.001F, 0.0F, 1.0F, 1, 1},
        {"scattered", 0.002F, 0.0F, 2.0F * deviation, 0.0F, 3, 1},
        {"scattered and low", 0.01F, -0.01F, 10.0F * deviation, 10.0F, 0, 0},
        {"not a number", 0.0F, std::nanf(""), std::nanf(""), std::nanf(""), 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<float> runs;
        for (int run = 0; run < 10; ++run) {
            for (const float y : road) {
                runs.push_back(y + c.shift + (run % 2 == 0 ? c.scatter : -c.scatter));
            }
        }
        EventRecord event;
        float precision = -1.0F;
        float bias = -1.0F;
        std::int32_t precision_class = -1;
        std::int32_t bias_class = -1;
        ASSERT_EQ(pcbia_dlldrv(runs.data(), road.data(), &precision, &bias, &precision_class,
                               &bias_class, event),
                  vialto_success);
        EXPECT_TRUE(event.untouched());
        EXPECT_TRUE(std::isnan(c.bias) ? std::isnan(precision) && std::isnan(bias)
                                       : std::fabs(precision - c.precision) < 1e-3F &&
                                             std::fabs(bias - c.bias) < 1e-3F)
            << precision << " " << bias;
        EXPECT_EQ(precision_class, c.precision_class);
        EXPECT_EQ(bias_class, c.bias_class);
    }
    EXPECT_NE(directory.text_of("pcbia_dlldrv.txt").find("done with the pcbia call"),
              std::string::npos);
}

} // namespace vialto::test
