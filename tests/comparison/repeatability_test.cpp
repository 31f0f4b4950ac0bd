#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "comparison/repeatability.hpp"
#include "support/current_event.hpp"
#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

using Road = std::vector<float>;
// Precision and bias in mm, and their classes.
using Rating = std::tuple<float, float, std::int32_t, std::int32_t>;

Rating rated(std::int32_t runs, const Road& data, const Road& reference) {
    reset_event();
    Repeatability r{-1.0F, -1.0F, -1, -1};
    (void)pcbia(runs, static_cast<std::int32_t>(reference.size()), data, reference, r);
    return {r.xPrecision, r.xBias, r.iPrecisionClass, r.iBiasClass};
}

} // namespace

TEST(Repeatability, ClassLimitsAreIncluded) {
    for (const auto& [limit, at, bias_at, above, bias_above] : {std::tuple{0.00038F, 1, 1, 2, 1},
                                                                {0.00076F, 2, 1, 3, 1},
                                                                {0.00125F, 3, 1, 3, 2},
                                                                {0.0025F, 3, 2, 0, 3},
                                                                {0.00625F, 0, 3, 0, 0}}) {
        // The runs deviate by their size, and the reference lies as much below their mean.
        const float d = std::nextafter(limit, 1.0F);
        EXPECT_EQ(rated(3, {limit, 0, -limit}, {-limit}),
                  (Rating{1000 * limit, 1000 * limit, at, bias_at}));
        EXPECT_EQ(rated(3, {d, 0, -d}, {-d}), (Rating{1000 * d, 1000 * d, above, bias_above}));
    }
    const Rating unrated = rated(3, {NAN, 0, 0}, {0});
    EXPECT_TRUE(std::get<2>(unrated) == 0 && std::get<3>(unrated) == 0);
}

TEST(Repeatability, PointsAreAveragedAndTwoRunsAreTooFew) {
    // Deviations between the runs 1 and 3, means 2 and -4, references 4 and 4.
    const Road runs{1.0F, -1.0F, 2.0F, -4.0F, 3.0F, -7.0F};
    EXPECT_EQ(rated(3, runs, {4.0F, 4.0F}), (Rating{2000.0F, 5000.0F, 0, 0}));
    EXPECT_EQ(summary_of_current_event(), "");
    EXPECT_EQ(rated(2, runs, Road(3)), (Rating{0.0F, 0.0F, 0, 0}));
    EXPECT_EQ(summary_of_current_event(), "101 2 pcbia: iNumRuns < 3, stats can be calculated");
}

TEST(Repeatability, TenRunsAreRated) {
    const TemporaryDirectory directory;
    const Road reference = random_road(1057, 0.025, 3);
    Road runs;
    for (int run = 0; run < 10; ++run) {
        for (const float y : reference) {
            runs.push_back(y + (run % 2 == 0 ? 0.001F : -0.003F));
        }
    }
    float precision = -1.0F, bias = -1.0F;
    std::int32_t classes[] = {-1, -1};
    EXPECT_EQ(
        pcbia_dlldrv(&runs[0], &reference[0], &precision, &bias, &classes[0], &classes[1], nullptr),
        vialto_success);
    EXPECT_NEAR(precision, 2.0 * std::sqrt(10.0 / 9.0), 1e-3);
    EXPECT_NEAR(bias, 1.0, 1e-3);
    EXPECT_TRUE(classes[0] == 3 && classes[1] == 1);
    EXPECT_NE(directory.text_of("pcbia_dlldrv.txt").find("done with the pcbia call\n"),
              std::string::npos);
}

} // namespace vialto::test
