#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "ride/ride_drv.hpp"
#include "ride/two_channel.hpp"
#include "support/current_event.hpp"
#include "support/host.hpp"
#include "support/quarter_car_model.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

using Floats = std::vector<float>;
using Counts = std::vector<std::int32_t>;

constexpr float interval = 0.025F; // m
constexpr float untouched = -7.0F;
constexpr std::int32_t count = 1000;
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

Floats road_with_a_hole() {
    Floats road = random_road(count, 0.025, 31);
    road[40] = nan;
    return road;
}

// What a host asks for, each export taking what it knows of; empty arrays are null pointers.
struct Call {
    std::int32_t selector = idx_ridests_IRI;
    std::int32_t if250 = vialto_yes; // or the bridging filter
    std::int32_t exclude = vialto_no;
    std::int32_t size = count;
    float dx = interval;
    float base = 1.0F;
    Floats left = random_road(count, 0.025, 31);
    Floats right = random_road(count, 0.025, 32);
    Counts flags = {};
    Counts counts = {10, 0};
    bool no_index = false;
};

class RideExports : public testing::Test {
protected:
    float index = untouched;
    Floats output;
    Floats length;
    EventRecord event;
    TemporaryDirectory directory;

    std::int32_t run(const std::string& name, const Call& call) {
        const auto& [kind, if250, exclude, n, dx, base, left, right, flags, counts, no_index] =
            call;
        const float* const a = left.data();
        const float* const b = right.data();
        float* const result = no_index ? nullptr : &index;
        index = untouched;
        output.assign(left.size() + 2, untouched);
        length.assign(2, untouched);
        float* const out = output.data();
        if (name == "ride") {
            return ride_dlldrv(exclude, if250, kind, n, a, flags.data(), dx, result, event);
        }
        if (name == "rideseg") {
            return rideseg_dlldrv(if250, kind, n, a, dx, 2, counts.data(), out, length.data(),
                                  event);
        }
        if (name == "ridecon") {
            return ridecon_dlldrv(if250, dx, base, kind, n, a, out, event);
        }
        if (name == "ride2chan") {
            return ride2chan_dlldrv(exclude, if250, kind, n, a, b, flags.data(), dx, result, event);
        }
        if (name == "rideseg2chan") {
            return rideseg2chan_dlldrv(if250, kind, n, a, b, dx, 2, counts.data(), out,
                                       length.data(), event);
        }
        if (name == "ridecon2chan") {
            return ridecon2chan_dlldrv(if250, kind, n, a, b, dx, base, out, event);
        }
        return wimindex_dlldrv(if250, dx, base, n, a, out, event);
    }
};

TEST_F(RideExports, FailuresNameTheExportAloneAndLeaveTheOutputsUntouched) {
    const std::string beyond =
        "End index of data points exceeds the input array size. Double-check segment points.";
    const std::string range = "i_rideindexsel is not within range";
    const std::string no_two = "two RN is no longer supported";
    const std::string no_switch = "tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-";
    const std::string no_number = "the calculated IRI is not a number";
    const std::string no_step = "xStepSize is not a positive finite number";
    const std::string no_flags = "exclusion_flags is a null pointer";
    const std::string too_long = "moving average base length is greater the sampling distance";
    const std::string two_only = "only HRI, MRI, and 2-Chan-RN allowed in the 2-channel analysis";
    const std::string not_overall = "WIM error index should not be normal ride stats analysis";
    const std::string not_segments = "WIM error index should not be segemeted ride stats analysis";
    const std::string too_large =
        "Current JQV is not suitable to handle large data set. Sorry for the inconvenience";
    const std::string cutoff = "Lowpass cutoff is below the threshold value(~ 2 * Step / 0.86). "
                               "Try again with a larger value.";
    const Floats hole = road_with_a_hole();
    const Floats long_road(50001);
    struct Case {
        std::string name;
        Call call;
        int code;
        std::string text;
        float index_left = untouched;
    };
    const Case cases[] = {
        {"ride", {.selector = 0}, 101, range},
        {"ride", {.selector = 4}, 101, range},
        {"ride", {.selector = 3}, 101, no_two},
        {"ride", {.selector = 9, .if250 = 2}, 100, not_overall},
        {"ride", {.if250 = 0}, 101, no_switch, 0.0F},
        {"ride", {.size = 10}, 101, no_number, nan},
        {"ride", {.selector = 2, .size = 0}, 101, no_number, nan},
        {"ride", {.exclude = 1, .size = -20, .left = {}}, 101, no_number, nan},
        {"ride", {.left = hole}, 101, no_number, nan},
        {"ride", {.dx = 0.0F}, 100, no_step},
        {"ride", {.dx = nan}, 100, no_step},
        {"ride", {.left = {}}, 100, "dataarray is a null pointer"},
        {"ride", {.exclude = 1}, 100, no_flags},
        {"ride", {.no_index = true}, 100, "xRideIndex is a null pointer"},
        {"rideseg", {.selector = 6}, 101, range},
        {"rideseg", {.counts = {count + 1, 0}}, 100, beyond},
        {"rideseg", {.selector = 9, .if250 = 2}, 100, not_segments},
        {"rideseg", {.counts = {}}, 100, "iNumSegmentPoints is a null pointer"},
        {"ridecon", {.selector = 4}, 101, range},
        {"ridecon", {.base = 25.0F}, 101, too_long},
        {"ridecon", {.selector = 2, .base = HUGE_VALF}, 101, too_long},
        {"ridecon", {.dx = 0.0F}, 100, no_step},
        {"ride2chan", {.selector = 1}, 100, two_only},
        {"ride2chan", {.selector = 6, .exclude = 1}, 100, no_flags},
        {"ride2chan", {.selector = 6, .if250 = 0}, 101, no_switch},
        // What stood in the index behind the filter of the mean profile or behind the left track.
        {"ride2chan", {.selector = 5, .if250 = 0}, 101, no_switch},
        {"ride2chan", {.selector = 4, .if250 = 0}, 101, no_switch, 0.0F},
        {"ride2chan", {.selector = 4, .right = hole}, 101, no_number, nan},
        {"ride2chan", {.selector = 5, .right = hole}, 101, no_number, nan},
        {"rideseg2chan", {.selector = 9}, 100, two_only},
        {"rideseg2chan", {.selector = 4, .if250 = 0}, 101, no_switch},
        {"ridecon2chan", {.selector = 2}, 100, two_only},
        {"ridecon2chan", {.selector = 6, .base = 25.0F}, 101, too_long},
        {"ridecon2chan", {.selector = 5, .base = 25.0F}, 101, too_long},
        // The length is looked at before the filters refuse the interval.
        {"wimindex", {.if250 = 2, .size = 50001, .dx = 5.0F, .left = long_road}, 100, too_large},
        {"wimindex", {.if250 = 2, .dx = 0.5F}, 101, cutoff},
        {"wimindex", {.if250 = 2, .size = 0, .dx = 2.0F}, 101, cutoff},
        {"wimindex", {.if250 = 1, .dx = 0.0002F}, 101, "ibase .gt. mxbase"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(run(c.name, c.call), 3);
        EXPECT_EQ(event.summary(), std::to_string(c.code) + " 2 " + c.name + "_dlldrv: " + c.text);
        EXPECT_TRUE(index == c.index_left || (std::isnan(index) && std::isnan(c.index_left)));
        EXPECT_EQ(output, Floats(output.size(), untouched));
        EXPECT_EQ(length, Floats(2, untouched));
    }
}

TEST_F(RideExports, RightTrackThatFailsLeavesTheLengthsOfTheLeftOne) {
    EXPECT_EQ(run("rideseg2chan", {.selector = idx_ridests_MRI, .right = road_with_a_hole()}), 3);
    EXPECT_EQ(output[0], untouched);
    EXPECT_EQ(length, (Floats{9.0F * interval, 980.0F * interval}));
}

TEST_F(RideExports, InsideTheLibraryThePathOfAFailureReadsFromTheInside) {
    const Floats flat(20);
    Floats out(20);
    const std::function<ReturnCode()> calls[] = {
        [&] { return ride_drv(2, 1, idx_ridests_IRI, {}, {}, interval, index); },
        [&] { return ride_drv(2, 1, idx_ridests_HRI, {}, {}, interval, index); },
        [&] { return ride_drv(2, 7, idx_ridests_IRI, flat, {}, interval, index); },
        [&] { return ridecon_drv(1, interval, 25.0F, 1, flat, out); },
        [&] { return ridecon2chan_drv(1, 6, flat, flat, interval, 25.0F, out); },
    };
    std::vector<std::string> paths;
    for (const auto& call : calls) {
        reset_event();
        EXPECT_EQ(call(), failure);
        paths.emplace_back(current_event().routine.trimmed());
    }
    EXPECT_EQ(paths, (std::vector<std::string>{
                         "compute_iri/ride_stats/ride_drv", "ride_stats/ride_drv",
                         "qcarfilt_drv/filtcon_drv/compute_iri/ride_stats/ride_drv",
                         "mvgavg/filtcon_drv/postproc_conpi/compute_iri/ride_stats/ridecon_drv",
                         "mvgavg/filtcon_drv/continuous_2chan_rn/twochan_rn/ridecon2chan_drv"}));
}

TEST_F(RideExports, DiagnosticFilesShowFiftyRowsOfWhateverThereIs) {
    std::string one = " the first 50 points -\n no. dataarray  exclusion_flags\n";
    std::string two = " the first 50 points -\n no. dataarray1 dataarray2 exclusion_flags\n";
    for (int row = 1; row <= 50; ++row) {
        one += "  " + std::to_string(row) + (row <= 12 ? " 0.5 0\n" : " 0 0\n");
        two += "  " + std::to_string(row) + (row <= 12 ? " 0.5 0.25 0\n" : " 0 0 0\n");
    }
    const auto settings = [](int selector) {
        return " ifExcludeLeaveout   : 2\n if250mmFilter : 1\n iRideIndex    : " +
               std::to_string(selector) + "\n iSizeDataArray: 12\n xStepSize     : 0.025\n";
    };
    const std::string segments =
        " iNumSegments  : 2\n iNumSegmentPoints(iNumSegments)  :\n  10\n  0\n";
    struct Case {
        std::string name;
        std::int32_t selector;
        std::string text;
    };
    const Case cases[] = {
        {"ride", 1, settings(1) + " done with the ride_drv call\n xRideIndex     : 0\n"},
        {"rideseg", 2, settings(2) + segments + one + " Done with the rideseg_drv cal\n"},
        {"ride2chan", 6,
         settings(6) + two + " done with the ride2chan_drv call\n xRideIndex     : 5\n"},
        {"rideseg2chan", 6,
         settings(6) + segments + two + " SegmentNum  Ride_Indexes\n  1 -1\n  2 -1\n" +
             " Done with the rideseg2chan_dlldrv cal\n"},
        {"ridecon", 2,
         " RideStats Continuous - debug mode\n if250mmFilter =  1\n xStepSize (m) =  0.025\n"
         " xBaseLength (m) =  0.04\n iRideIndexType =  2\n iSizeDataArray =  12\n"
         " done with the ridecon_drv call\n"},
        {"ridecon2chan", 6,
         " if250mmFilter =  1\n iRideIndex =  6\n iSizeDataArray =  12\n"
         " xStepSize (m) =  0.025\n xBaseLength (m) =  0.04\n"
         " Done with the ridecon2chan_drv cal\n"},
        {"wimindex", 9,
         " WIM Error Index - debug mode\n iBridgingFilter =  1\n xStepSize (m) =  0.025\n"
         " Shrouding distance (m) =  0.04\n xBaseLength (m) =  1.524\n iRideIndexType =  9\n"
         " iSizeDataArray =  12\n done with the ridecon_drv call for the WIM index analysis\n"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(run(c.name, {.selector = c.selector,
                               .size = 12,
                               .base = 0.04F,
                               .left = Floats(12, 0.5F),
                               .right = Floats(12, 0.25F)}),
                  1);
        EXPECT_EQ(directory.text_of(c.name + "_dlldrv.txt"), c.text);
        EXPECT_TRUE(event.untouched());
    }
}

using OverallIndex = RideExports;

TEST_F(OverallIndex, IsTheMeanSlopeForIriAndItsRootMeanSquareForRnOfTheSamplesLeftIn) {
    const Floats profile = random_road(count, 0.025, 4);
    Counts flags(count, 0);
    for (std::size_t i = 0; i < flags.size(); ++i) {
        flags[i] = i % 3 == 1 || (i > 700 && i < 900) ? 5 - static_cast<int>(i % 10) * 2 : 0;
    }
    for (const bool is_iri : {true, false}) {
        const auto model = filtered_slope(is_iri ? iri_car : rn_car, profile, 0.025, 10);
        // Any value but 1 ignores the flags.
        for (const std::int32_t exclude : {1, 0, 2, 3, -1}) {
            double sum = 0.0;
            double kept = 0.0;
            for (std::size_t i = 0; i < model.size(); ++i) {
                const double weight = exclude == 1 && flags[i] != 0 ? 0.0 : 1.0;
                sum += weight * (is_iri ? std::fabs(model[i]) : model[i] * model[i]);
                kept += weight;
            }
            EXPECT_EQ(run("ride", {.selector = is_iri ? idx_ridests_IRI : idx_ridests_RN,
                                   .exclude = exclude,
                                   .left = profile,
                                   .flags = flags}),
                      1);
            EXPECT_NEAR(index, is_iri ? sum / kept : std::sqrt(sum / kept), 1e-8);
        }
    }
}

TEST_F(OverallIndex, NoSampleLeftIsAHoleAndASuccess) {
    Counts flags(count, 1);
    // The flags of the tail without a filtered slope are not read: leaving it in changes nothing.
    std::fill(flags.end() - 10, flags.end(), 0);
    EXPECT_EQ(run("ride", {.exclude = 1, .flags = flags}), 1);
    EXPECT_EQ(index, -1.0F);
    flags[989] = 0;
    EXPECT_EQ(run("ride", {.exclude = 1, .flags = flags}), 1);
    EXPECT_GT(index, 0.0F);
}

} // namespace
} // namespace vialto::test
