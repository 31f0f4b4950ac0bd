#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "filters/anti_smoothing.hpp"
#include "filters/bridge.hpp"
#include "filters/butterworth.hpp"
#include "filters/detrend.hpp"
#include "filters/filtcon.hpp"
#include "filters/moving_average.hpp"
#include "filters/quarter_car.hpp"
#include "support/current_event.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

constexpr float interval = 0.025F; // m
constexpr std::int32_t untouched_index = -9;
const std::vector<float> untouched(600, -7.5F);

// Settings with which every filter runs.
tFiltCon settings_of(std::int32_t main_type, std::int32_t sub_type = idx_subfilttyp_bandpass) {
    tFiltCon settings{};
    settings.iMainFilterType = main_type;
    settings.iSubFilterType = sub_type;
    settings.iOutType = idx_filtouttyp_slope;
    settings.if250mmFilter = vialto_yes;
    settings.xLongWavelength = 5.0F;
    settings.xShortWavelength = 0.5F;
    settings.xSimuVelocity = 70.0F;
    settings.iBeginElemIdx = untouched_index;
    settings.iEndElemIdx = untouched_index;
    return settings;
}

// What a filter leaves behind.
struct Result {
    ReturnCode code = 0;
    std::vector<float> y = untouched;
    float statistic = 9.0F;
    tFiltCon settings{};

    [[nodiscard]] bool wrote_nothing() const {
        return y == untouched && settings.iBeginElemIdx == untouched_index &&
               settings.iEndElemIdx == untouched_index;
    }
};

Result dispatched(const tFiltCon& settings) {
    reset_event();
    Result result;
    result.settings = settings;
    result.code = filtcon_drv(random_road(untouched.size(), interval, 61), interval,
                              result.settings, result.y, result.statistic);
    return result;
}

} // namespace

TEST(FilterDispatch, EverySelectorRunsItsOwnFilter) {
    using Profile = std::span<const float>;
    using Filter = std::function<ReturnCode(Profile, float, tFiltCon&, std::span<float>, float&)>;
    const auto without_statistic =
        [](ReturnCode (*filter)(Profile, float, tFiltCon&, std::span<float>)) -> Filter {
        return [filter](Profile p, float dx, tFiltCon& settings, std::span<float> y, float&) {
            return filter(p, dx, settings, y);
        };
    };
    struct Case {
        std::int32_t main_type;
        Filter filter;
    };
    for (const Case& c : {Case{idx_filttyp_mvgavg, without_statistic(mvgavg)},
                          Case{idx_filttyp_IRI, qcarfilt_drv}, Case{idx_filttyp_RN, qcarfilt_drv},
                          Case{idx_filttyp_bwfilt, without_statistic(bwfilt_drv)},
                          Case{idx_filttyp_antismooth, without_statistic(antismooth)},
                          Case{idx_filttyp_detrend, without_statistic(detrend)},
                          Case{idx_filttyp_bridge, without_statistic(bridge_filter_drv)}}) {
        Result direct;
        direct.settings = settings_of(c.main_type);
        direct.statistic = 0.0F;
        EXPECT_EQ(c.filter(random_road(untouched.size(), interval, 61), interval, direct.settings,
                           direct.y, direct.statistic),
                  success);
        const Result result = dispatched(settings_of(c.main_type));
        EXPECT_EQ(result.code, success) << c.main_type;
        EXPECT_EQ(result.y, direct.y) << c.main_type;
        EXPECT_EQ(result.statistic, direct.statistic) << c.main_type;
        EXPECT_EQ(result.settings.iBeginElemIdx, direct.settings.iBeginElemIdx) << c.main_type;
        EXPECT_EQ(result.settings.iEndElemIdx, direct.settings.iEndElemIdx) << c.main_type;
        EXPECT_FALSE(result.wrote_nothing());
    }
}

TEST(FilterDispatch, SelectorZeroCopiesAsMuchAsTheOutputHolds) {
    const std::vector<float> road{1.0F, 2.0F, 3.0F};
    for (const std::size_t room : {2U, 3U, 4U}) {
        tFiltCon settings = settings_of(idx_filttyp_none);
        std::vector<float> y(room, -7.5F);
        float statistic = 9.0F;
        EXPECT_EQ(filtcon_drv(road, interval, settings, y, statistic), success);
        EXPECT_EQ(statistic, 0.0F);
        EXPECT_EQ(settings.iBeginElemIdx, 0);
        EXPECT_EQ(settings.iEndElemIdx, 2);
        for (std::size_t i = 0; i < room; ++i) {
            EXPECT_EQ(y[i], i < road.size() ? road[i] : -7.5F);
        }
    }
}

TEST(FilterDispatch, OtherSelectorsFail) {
    for (const std::int32_t main_type : {-1, 8, std::numeric_limits<std::int32_t>::min(),
                                         std::numeric_limits<std::int32_t>::max()}) {
        const Result result = dispatched(settings_of(main_type));
        EXPECT_EQ(result.code, failure);
        EXPECT_EQ(summary_of_current_event(), "101 2 filtcon_drv: Illegal Main filter type");
        EXPECT_TRUE(result.wrote_nothing());
        EXPECT_EQ(result.statistic, 0.0F);
    }
}

TEST(FilterDispatch, ButterworthSubTypes) {
    const char* const out_of_range = "101 2 bwfilt_drv/filtcon_drv: iBWFilterType is not within "
                                     "range";
    struct Case {
        std::int32_t sub_type;
        bool runs;
        const char* event;
    };
    for (const Case& c :
         {Case{idx_subfilttyp_none, false, ""}, Case{idx_subfilttyp_bandpass, true, ""},
          Case{idx_subfilttyp_lowpass, true, ""}, Case{idx_subfilttyp_highpass, true, ""},
          Case{idx_subfilttyp_centredband, true, ""}, Case{5, false, out_of_range},
          Case{-1, false, out_of_range}}) {
        const Result result = dispatched(settings_of(idx_filttyp_bwfilt, c.sub_type));
        EXPECT_EQ(result.code, *c.event == '\0' ? success : failure);
        EXPECT_EQ(summary_of_current_event(), c.event);
        EXPECT_EQ(result.wrote_nothing(), !c.runs) << c.sub_type;
        EXPECT_EQ(result.statistic, 0.0F);
    }
}

// No step, length or selector may make a filter reach outside its arrays or hang.
TEST(FilterDispatch, EveryFilterSurvivesEveryLengthAndStep) {
    constexpr float inf = std::numeric_limits<float>::infinity();
    for (std::int32_t main_type = 0; main_type <= idx_filttyp_bridge; ++main_type) {
        for (std::int32_t sub_type = 0; sub_type <= idx_subfilttyp_centredband; ++sub_type) {
            for (const std::size_t count : {0U, 1U, 2U, 3U, 34U}) {
                for (const float length : {-inf, -1e9F, -1.0F, -1e-9F, 0.0F, 1e-9F, 0.5F, 1.0F,
                                           1.5F, 2.5F, 3.0F, 33.0F, 1e9F, inf, std::nanf("")}) {
                    for (const float step : {1e-30F, 1.0F, 1e30F}) {
                        tFiltCon settings = settings_of(main_type, sub_type);
                        settings.xLongWavelength = length;
                        settings.xShortWavelength = length;
                        std::vector<float> y(count);
                        (void)filtcon_drv(random_road(count, 1.0, 62), step, settings, y);
                    }
                }
            }
        }
    }
}

} // namespace vialto::test
