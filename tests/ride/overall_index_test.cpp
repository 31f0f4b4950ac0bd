#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

#include "ride/overall_statistic.hpp"
#include "ride/ride_drv.hpp"
#include "support/host.hpp"
#include "support/quarter_car_model.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

constexpr float interval = 0.025F; // m
constexpr float untouched = -7.0F;

struct Call {
    std::int32_t ifExcludeLeaveout = vialto_no;
    std::int32_t if250mmFilter = vialto_yes;
    std::int32_t iRideIndex = idx_ridests_IRI;
    std::vector<float> profile{};
    std::vector<std::int32_t> flags{};
    float xStepSize = interval;
};

struct Answer {
    std::int32_t code;
    float index;
    EventRecord event;
};

Answer ride(const Call& call) {
    Answer answer{0, untouched, {}};
    answer.code = ride_dlldrv(call.ifExcludeLeaveout, call.if250mmFilter, call.iRideIndex,
                              static_cast<std::int32_t>(call.profile.size()), call.profile.data(),
                              call.flags.data(), call.xStepSize, &answer.index, answer.event);
    return answer;
}

class OverallIndex : public testing::Test {
    TemporaryDirectory directory_;
};

TEST_F(OverallIndex, FlatRoadHasNone) {
    for (const std::int32_t selector : {idx_ridests_IRI, idx_ridests_RN}) {
        const Answer answer = ride({.iRideIndex = selector, .profile = std::vector(4000, 1.5F)});
        EXPECT_EQ(answer.code, 1);
        EXPECT_EQ(answer.index, 0.0F);
        EXPECT_TRUE(answer.event.untouched());
    }
}

TEST_F(OverallIndex, IsTheMeanSlopeForIriAndItsRootMeanSquareForRn) {
    const auto profile = random_road(6000, 0.025, 11);
    for (const bool is_iri : {true, false}) {
        const auto model = filtered_slope(is_iri ? iri_car : rn_car, profile, 0.025, 10);
        double sum = 0.0;
        for (const double slope : model) {
            sum += is_iri ? std::fabs(slope) : slope * slope;
        }
        const double mean = sum / static_cast<double>(model.size());
        const Answer answer =
            ride({.iRideIndex = is_iri ? idx_ridests_IRI : idx_ridests_RN, .profile = profile});
        EXPECT_NEAR(answer.index, is_iri ? mean : std::sqrt(mean), 1e-8);
    }
}

TEST_F(OverallIndex, SteadySinusoidHasTwoOverPiOfItsPeakSlope) {
    // 10 km of whole wavelengths, so that the decaying start hardly counts.
    const auto profile = sinusoid(400000, 0.025, 10.0, 0.01);
    const double peak =
        2.0 * std::numbers::pi * 0.01 / 10.0 * steady_gain(iri_car, 10.0, 0.025, 10);
    const double expected = peak * 2.0 / std::numbers::pi;
    EXPECT_NEAR(ride({.profile = profile}).index, expected, 0.005 * expected);
    const double rn_peak =
        2.0 * std::numbers::pi * 0.01 / 10.0 * steady_gain(rn_car, 10.0, 0.025, 10);
    const double rn_expected = rn_peak / std::sqrt(2.0);
    EXPECT_NEAR(ride({.iRideIndex = idx_ridests_RN, .profile = profile}).index, rn_expected,
                0.005 * rn_expected);
}

TEST_F(OverallIndex, ExcludedSamplesLeaveTheSumAndTheDivisor) {
    const auto profile = random_road(2000, 0.025, 4);
    const auto model = filtered_slope(iri_car, profile, 0.025, 10);
    std::vector<std::int32_t> flags(2000, 0);
    double sum = 0.0;
    double count = 0.0;
    for (std::size_t i = 0; i < flags.size(); ++i) {
        flags[i] =
            i % 3 == 1 || (i > 700 && i < 900) ? 5 - static_cast<std::int32_t>(i % 10) * 2 : 0;
        if (i < model.size() && flags[i] == 0) {
            sum += std::fabs(model[i]);
            count += 1.0;
        }
    }
    EXPECT_NEAR(ride({.ifExcludeLeaveout = vialto_yes, .profile = profile, .flags = flags}).index,
                sum / count, 1e-8);
    // Any value but 1 ignores the flags.
    for (const std::int32_t ignore : {0, 2, 3, -1}) {
        EXPECT_EQ(ride({.ifExcludeLeaveout = ignore, .profile = profile, .flags = flags}).index,
                  ride({.profile = profile}).index);
    }
}

TEST_F(OverallIndex, NoSampleLeftIsAHoleAndASuccess) {
    const auto profile = random_road(2000, 0.025, 4);
    std::vector<std::int32_t> flags(2000, 1);
    // The flags of the tail without a filtered slope are not read: leaving it in changes nothing.
    std::fill(flags.end() - 10, flags.end(), 0);
    const Answer answer =
        ride({.ifExcludeLeaveout = vialto_yes, .profile = profile, .flags = flags});
    EXPECT_EQ(answer.code, 1);
    EXPECT_EQ(answer.index, -1.0F);
    flags[1989] = 0;
    EXPECT_GT(ride({.ifExcludeLeaveout = vialto_yes, .profile = profile, .flags = flags}).index,
              0.0F);
}

TEST_F(OverallIndex, FailuresReachTheHostUnderTheExportsName) {
    struct Case {
        Call call;
        float index_left;
        std::string event;
    };
    const auto road = random_road(500, 0.025, 4);
    auto hole = road;
    hole[250] = std::numeric_limits<float>::quiet_NaN();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    const std::string range = "101 2 ride_dlldrv: i_rideindexsel is not within range";
    const std::string not_a_number = "101 2 ride_dlldrv: the calculated IRI is not a number";
    const std::string no_step = "100 2 ride_dlldrv: xStepSize is not a positive finite number";
    const Case cases[] = {
        {{.iRideIndex = 0, .profile = road}, untouched, range},
        {{.iRideIndex = 4, .profile = road}, untouched, range},
        {{.iRideIndex = 7, .profile = road}, untouched, range},
        {{.iRideIndex = -1, .profile = road}, untouched, range},
        {{.iRideIndex = 3, .profile = road},
         untouched,
         "101 2 ride_dlldrv: two RN is no longer supported"},
        {{.if250mmFilter = 0, .profile = road},
         0.0F,
         "101 2 ride_dlldrv: tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-"},
        {{.profile = std::vector(10, 0.0F)}, nan, not_a_number},
        {{.profile = std::vector(1, 0.0F)}, nan, not_a_number},
        {{.iRideIndex = 2, .profile = {}}, nan, not_a_number},
        {{.profile = hole}, nan, not_a_number},
        {{.profile = road, .xStepSize = 0.0F}, untouched, no_step},
        {{.profile = road, .xStepSize = -0.025F}, untouched, no_step},
        {{.profile = road, .xStepSize = nan}, untouched, no_step},
    };
    for (const Case& c : cases) {
        const Answer answer = ride(c.call);
        EXPECT_EQ(answer.code, 3);
        EXPECT_EQ(answer.event.summary(), c.event);
        if (std::isnan(c.index_left)) {
            EXPECT_TRUE(std::isnan(answer.index));
        } else {
            EXPECT_EQ(answer.index, c.index_left);
        }
    }
}

TEST_F(OverallIndex, ChainInsideTheLibraryReadsFromTheInside) {
    float index = 0.0F;
    reset_event();
    EXPECT_EQ(ride_drv(2, 1, idx_ridests_IRI, {}, {}, interval, index), failure);
    EXPECT_EQ(current_event().routine.trimmed(), "compute_iri/ride_stats/ride_drv");
    EXPECT_EQ(ride_drv(2, 1, idx_ridests_HRI, {}, {}, interval, index), failure);
    EXPECT_EQ(current_event().routine.trimmed(), "ride_stats/ride_drv");
    const float flat[20] = {};
    EXPECT_EQ(ride_drv(2, 7, idx_ridests_IRI, flat, {}, interval, index), failure);
    EXPECT_EQ(current_event().routine.trimmed(),
              "qcarfilt_drv/filtcon_drv/compute_iri/ride_stats/ride_drv");
}

TEST_F(OverallIndex, NullPointersAreRefusedWhereDataIsNeeded) {
    const float profile[20] = {};
    float index = untouched;
    EventRecord event;
    EXPECT_EQ(ride_dlldrv(2, 1, 1, 20, nullptr, nullptr, interval, &index, event), 3);
    EXPECT_EQ(event.summary(), "100 2 ride_dlldrv: dataarray is a null pointer");
    EXPECT_EQ(ride_dlldrv(1, 1, 1, 20, profile, nullptr, interval, &index, event), 3);
    EXPECT_EQ(event.summary(), "100 2 ride_dlldrv: exclusion_flags is a null pointer");
    EXPECT_EQ(ride_dlldrv(2, 1, 1, 20, profile, nullptr, interval, nullptr, event), 3);
    EXPECT_EQ(event.summary(), "100 2 ride_dlldrv: xRideIndex is a null pointer");
    EXPECT_EQ(index, untouched);
    // A negative size counts as 0, for which no data is needed.
    EXPECT_EQ(ride_dlldrv(1, 1, 1, -20, nullptr, nullptr, interval, &index, nullptr), 3);
    EXPECT_TRUE(std::isnan(index));
    EXPECT_EQ(ride_dlldrv(2, 1, 1, 20, profile, nullptr, interval, &index, nullptr), 1);
}

TEST(RideDiagnosticFile, HoldsInputsAndResult) {
    const TemporaryDirectory directory;
    const std::vector<float> profile(100, 0.0F);
    ASSERT_EQ(ride({.profile = profile}).code, 1);
    EXPECT_EQ(directory.text_of("ride_dlldrv.txt"), " ifExcludeLeaveout   : 2\n"
                                                    " if250mmFilter : 1\n"
                                                    " iRideIndex    : 1\n"
                                                    " iSizeDataArray: 100\n"
                                                    " xStepSize     : 0.025\n"
                                                    " done with the ride_drv call\n"
                                                    " xRideIndex     : 0\n");
    ASSERT_EQ(ride({.iRideIndex = 8, .profile = profile}).code, 3);
    EXPECT_NE(directory.text_of("ride_dlldrv.txt").find(" sub/func name : ride_dlldrv\n"),
              std::string::npos);
}

TEST(StretchStatistic, EmptyStretchIsANaNWithoutExclusionsAndAHoleWithThem) {
    const float slope[] = {1.0F, -2.0F};
    const std::int32_t flags[] = {0, 0};
    EXPECT_TRUE(std::isnan(postproc_pi(slope, flags, vialto_no, 0, -1, 1.0F).index));
    EXPECT_EQ(postproc_pi(slope, flags, vialto_yes, 1, 0, 2.0F).index, hole_value);
    EXPECT_EQ(postproc_pi(slope, flags, vialto_yes, 0, 1, 1.0F).index, 1.5F);
    EXPECT_EQ(postproc_pi(slope, flags, vialto_no, 1, 1, 2.0F).index, 2.0F);
}

} // namespace
} // namespace vialto::test
