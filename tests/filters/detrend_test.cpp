#include <gtest/gtest.h>

#include "filters/filtcon.hpp"

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
        tFiltCon settings{};
        settings.iMainFilterType = idx_filttyp_detrend;
        settings.iOutType = c.out_type;
        std::vector<float> y(c.profile.size(), -7.5F);
        EXPECT_EQ(filtcon_drv(c.profile, 0.5F, settings, y), success);
        EXPECT_EQ(y, c.filtered);
        EXPECT_EQ(settings.iBeginElemIdx, 0);
        EXPECT_EQ(settings.iEndElemIdx, static_cast<std::int32_t>(c.profile.size()) - 1);
    }
}

} // namespace vialto::test
