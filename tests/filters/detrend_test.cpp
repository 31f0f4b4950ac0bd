#include <gtest/gtest.h>

#include "filters/filter_run.hpp"
#include "filters/slope.hpp"
#include "support/roads.hpp"

namespace vialto::test {

TEST(Detrend, TurnsTheProfileAboutItsMiddleByTheSlopeOfItsLine) {
    struct Case {
        std::vector<float> profile;
        std::int32_t out_type;
        std::vector<float> filtered;
    };
    // The interval is 0.5 m, the line counts its samples from 1, and the middle of four is 2.
    for (const Case& c : {
             Case{{12.0F, 14.0F, 16.0F, 18.0F}, 1, {14.0F, 14.0F, 14.0F, 14.0F}},
             Case{{0.0F, 0.0F, 3.0F}, 1, {0.75F, -0.75F, 0.75F}},
             Case{{0.0F, 0.0F, 3.0F}, 2, {0.0F, -3.0F, 3.0F}},
             Case{{0.0F, 3.0F, 0.0F}, 3, {0.0F, 3.0F, 0.0F}},
             Case{{5.0F}, 1, {5.0F}},
             Case{{5.0F}, 2, {0.0F}},
             Case{{}, 2, {}},
         }) {
        const FilterRun run(c.profile, 0.5F,
                            filter_settings(idx_filttyp_detrend, 0, 0.0F, 0.0F, c.out_type));
        EXPECT_TRUE(run.filtered_all());
        EXPECT_EQ(run.y, c.filtered);
    }
}

TEST(Detrend, KeepsTheBitsOfTheLineTakenAwayIn32Bit) {
    const auto road = random_road(999, 0.25, 81);
    const FilterRun run(road, 0.25F, filter_settings(idx_filttyp_detrend, 0, 0.0F, 0.0F));
    const float slope = lrslop(road);
    for (std::size_t i = 0; i < road.size(); ++i) {
        EXPECT_EQ(run.y[i], road[i] + (499.5F - static_cast<float>(i + 1)) * slope) << i;
    }
}

} // namespace vialto::test
