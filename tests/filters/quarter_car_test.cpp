#include "filters/quarter_car.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <complex>
#include <limits>
#include <numbers>
#include <span>
#include <tuple>
#include <vector>

#include "filters/filter_run.hpp"
#include "support/cases.hpp"
#include "support/quarter_car_model.hpp"
#include "support/roads.hpp"

namespace vialto::test {
namespace {

// The cars at the speeds that a Filter asks for: that of the index is its own.
constexpr QuarterCar rn_car_at_70{19.0F, 5120.0F, 390.0F, 17.0F, 0.036F, 70.0F};
constexpr std::tuple<std::int32_t, QuarterCar, float> cars[] = {
    {iri, iri_car, 1.0F}, {idx_filttyp_RN, rn_car_at_70, 2.0F}};

// The integral of the first slope takes it without the interval. The roads of 300 samples may end
// within the initialization length.
TEST(QuarterCar, SameBitsAsTheRecursionWrittenDownLiterally) {
    const std::tuple<std::size_t, float, int, std::int32_t> cases[] = {
        {3000, 0.025F, 10, vialto_yes},
        {300, 0.05F, 5, vialto_yes},
        {3000, 0.6F, 1, vialto_yes},
        {3000, 0.025F, 1, vialto_no}};
    for (const auto& [count, step, base, if250mmFilter] : cases) {
        const auto profile = random_road(count, 0.125, 7);
        for (const auto& [type, car, exponent] : cars) {
            auto [y, statistic] = literal_filter(car, profile, step, base, exponent);
            Filter filter{type, 0, 0.0F, 0.0F, idx_filtouttyp_slope, if250mmFilter, step};
            SCOPED_TRACE(testing::Message() << count << " samples, " << filter);
            const FilterRun run(profile, filter);
            EXPECT_TRUE(same(run.y, y));
            EXPECT_EQ(run.statistic, statistic);
            for (std::size_t i = 1; i < count; ++i) {
                y[i] = y[i - 1] + step * y[i];
            }
            y[0] = 0.0F;
            filter.out_type = idx_filtouttyp_elevation;
            EXPECT_TRUE(same(FilterRun(profile, filter).y, y));
        }
    }
}

// One lane may hold what spreads: an infinity, a NaN, or a height that overflows. Behind the whole
// roads go two to four stretches of them that start at different samples.
TEST(QuarterCar, TwoTracksHaveTheBitsThatEachHasAlone) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const float odd : {0.0F, nan, infinity, 3e38F}) {
        for (const std::size_t lane : {0U, 1U}) {
            SCOPED_TRACE(testing::Message() << odd << " in lane " << lane);
            const std::int32_t type = lane == 0 ? iri : idx_filttyp_RN;
            std::array<Road, 2> roads{random_road(700, 0.125, 8), random_road(700, 0.125, 9)};
            roads[lane][333] = odd;
            std::array<Road, 2> y{Road(700), Road(700)};
            QuarterCarTrack tracks[]{{roads[0], y[0]}, {roads[1], y[1]}};
            tFiltCon record{type, 0, 2, vialto_yes, 0.0F, 0.0F, 0.0F, 70.0F, 0.0F, 0, 0};
            EXPECT_EQ(filtcon_drv(tracks, 0.125F, record), success);
            vialto::QuarterCar car{};
            EXPECT_EQ(set_up_quarter_car(0.125F, 0.25F, 1.0F,
                                         lane == 0 ? iri_parameters() : rn_parameters(70.0F), car),
                      success);
            for (const std::size_t k : {0U, 1U}) {
                const FilterRun alone(roads[k], {type, 0, 0.0F, 0.0F, 2});
                EXPECT_TRUE(same(y[k], alone.y));
                EXPECT_TRUE(same<float>({tracks[k].xQcarStat}, {alone.statistic}));
            }
            for (const std::size_t count : {2U, 3U, 4U}) {
                std::vector<QuarterCarRun> runs(count);
                std::vector<Road> stretch(count, Road(300));
                for (std::size_t k = 0; k < count; ++k) {
                    const std::size_t first = 40 + 60 * k;
                    const Road& road = roads[k % 2];
                    runs[k] = {road, start_state(car, road), std::span(stretch[k]).first(first)};
                    run_quarter_car(car, {&runs[k], 1});
                    runs[k] = {runs[k].profile.subspan(first), runs[k].state, stretch[k]};
                }
                run_quarter_car(car, runs);
                for (std::size_t k = 0; k < count; ++k) {
                    const auto from = y[k % 2].begin() + 40 + 60 * static_cast<std::ptrdiff_t>(k);
                    EXPECT_TRUE(same(stretch[k], Road(from, from + 300))) << count << " runs";
                }
            }
        }
    }
}

// Masses, springs and damper in the frequency domain, of which the sinusoid has one radian a metre.
TEST(QuarterCar, SinusoidComesOutWithTheAnalyticGain) {
    const auto profile = sinusoid(24000, 0.025, 2.0 * std::numbers::pi, 1.0);
    for (const auto& [type, car, exponent] : cars) {
        const std::complex<float> s(0.0F, car.speed / 3.6F);
        const auto link = car.k2 + car.c * s;
        const auto sprung = link / (s * s + link);
        const auto unsprung = car.k1 / (car.mu * s * s + car.k1 + link * (1.0F - sprung));
        const auto y = FilterRun(profile, {type, 0, 0.0F, 0.0F, 2, vialto_yes, 0.025F}).y;
        const float amplitude = *std::max_element(y.begin() + 12000, y.end());
        EXPECT_NEAR(amplitude / std::abs(unsprung * (1.0F - sprung)), 1.0F, 0.003F) << type;
    }
}

} // namespace
} // namespace vialto::test
