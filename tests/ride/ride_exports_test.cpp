#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "ride/ride_drv.hpp"
#include "ride/two_channel.hpp"
#include "support/current_event.hpp"
#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

constexpr float interval = 0.025F; // m
constexpr float untouched = -7.0F;
constexpr std::int32_t count = 1000;

using Floats = std::vector<float>;

class RideExports : public testing::Test {
protected:
    const Floats left = random_road(count, 0.025, 31);
    Floats right = random_road(count, 0.025, 32);
    const std::int32_t points[2] = {10, 0};
    Floats output = Floats(count, untouched);
    Floats length = Floats(2, untouched);
    float index = untouched;
    EventRecord event;
    TemporaryDirectory directory;

    std::int32_t seg(std::int32_t if250, std::int32_t selector, const std::int32_t* counts) {
        return rideseg_dlldrv(if250, selector, count, left.data(), interval, 2, counts,
                              output.data(), length.data(), event);
    }
    std::int32_t con(std::int32_t if250, std::int32_t selector, float base, float dx = interval) {
        return ridecon_dlldrv(if250, dx, base, selector, count, left.data(), output.data(), event);
    }
    std::int32_t overall2(std::int32_t if250, std::int32_t selector) {
        return ride2chan_dlldrv(2, if250, selector, count, left.data(), right.data(), nullptr,
                                interval, &index, event);
    }
    std::int32_t seg2(std::int32_t if250, std::int32_t selector) {
        return rideseg2chan_dlldrv(if250, selector, count, left.data(), right.data(), interval, 2,
                                   points, output.data(), length.data(), event);
    }
    std::int32_t con2(std::int32_t if250, std::int32_t selector, float base) {
        return ridecon2chan_dlldrv(if250, selector, count, left.data(), right.data(), interval,
                                   base, output.data(), event);
    }
    std::int32_t wim(std::int32_t bridging, float dx, std::int32_t size) {
        const Floats road(static_cast<std::size_t>(size));
        Floats room(road.size(), untouched);
        const std::int32_t code =
            wimindex_dlldrv(bridging, dx, 2.0F, size, road.data(), room.data(), event);
        EXPECT_EQ(room, Floats(road.size(), untouched));
        return code;
    }
};

TEST_F(RideExports, FailuresNameTheExportAloneAndLeaveTheOutputsUntouched) {
    const std::string beyond =
        "End index of data points exceeds the input array size. Double-check segment points.";
    const std::string range = "i_rideindexsel is not within range";
    const std::string no_switch = "tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-";
    const std::string too_long = "moving average base length is greater the sampling distance";
    const std::string two_only = "only HRI, MRI, and 2-Chan-RN allowed in the 2-channel analysis";
    const std::int32_t past_end[] = {count + 1, 0};
    constexpr float infinity = std::numeric_limits<float>::infinity();
    struct Case {
        std::string event;
        std::function<std::int32_t()> call;
    };
    const Case cases[] = {
        {"101 2 rideseg_dlldrv: two RN is no longer supported", [&] { return seg(1, 3, points); }},
        {"101 2 rideseg_dlldrv: " + range, [&] { return seg(1, 6, points); }},
        {"101 2 rideseg_dlldrv: " + no_switch, [&] { return seg(0, 2, points); }},
        {"100 2 rideseg_dlldrv: " + beyond, [&] { return seg(1, 1, past_end); }},
        {"100 2 rideseg_dlldrv: WIM error index should not be segemeted ride stats analysis",
         [&] { return seg(2, 9, points); }},
        {"100 2 rideseg_dlldrv: iNumSegmentPoints is a null pointer",
         [&] { return seg(1, 1, nullptr); }},
        {"101 2 ridecon_dlldrv: " + range, [&] { return con(1, 4, 1.0F); }},
        {"101 2 ridecon_dlldrv: two RN is no longer supported", [&] { return con(1, 3, 1.0F); }},
        {"101 2 ridecon_dlldrv: " + no_switch, [&] { return con(3, 1, 1.0F); }},
        {"101 2 ridecon_dlldrv: " + too_long, [&] { return con(1, 1, 25.0F); }},
        {"101 2 ridecon_dlldrv: " + too_long, [&] { return con(1, 2, infinity); }},
        {"100 2 ridecon_dlldrv: xStepSize is not a positive finite number",
         [&] { return con(1, 1, 1.0F, 0.0F); }},
        {"100 2 ride2chan_dlldrv: " + two_only, [&] { return overall2(1, 1); }},
        {"101 2 ride2chan_dlldrv: " + no_switch, [&] { return overall2(0, 6); }},
        {"100 2 rideseg2chan_dlldrv: " + two_only, [&] { return seg2(1, 9); }},
        {"101 2 rideseg2chan_dlldrv: " + no_switch, [&] { return seg2(0, 4); }},
        {"100 2 ridecon2chan_dlldrv: " + two_only, [&] { return con2(1, 2, 1.0F); }},
        {"101 2 ridecon2chan_dlldrv: " + too_long, [&] { return con2(1, 6, 25.0F); }},
        {"101 2 ridecon2chan_dlldrv: " + too_long, [&] { return con2(1, 5, 25.0F); }},
        // The length is looked at before the filters refuse the interval.
        {"100 2 wimindex_dlldrv: Current JQV is not suitable to handle large data set. Sorry for "
         "the inconvenience",
         [&] { return wim(2, 5.0F, 50001); }},
        {"101 2 wimindex_dlldrv: Lowpass cutoff is below the threshold value(~ 2 * Step / 0.86). "
         "Try again with a larger value.",
         [&] { return wim(2, 0.5F, 99); }},
        {"101 2 wimindex_dlldrv: ibase .gt. mxbase", [&] { return wim(1, 0.0002F, 99); }},
        {"100 2 ride_dlldrv: WIM error index should not be normal ride stats analysis",
         [&] {
             return ride_dlldrv(2, 2, 9, count, left.data(), nullptr, interval, &index, event);
         }},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.call(), 3);
        EXPECT_EQ(event.summary(), c.event);
        EXPECT_EQ(index, untouched);
        EXPECT_EQ(output, Floats(count, untouched));
        EXPECT_EQ(length, Floats(2, untouched));
    }
}

TEST_F(RideExports, HriThatFailsLeavesWhatItsFilterHadPutIntoTheIndex) {
    EXPECT_EQ(overall2(0, idx_ridests_MRI), 3);
    EXPECT_EQ(index, untouched);
    EXPECT_EQ(overall2(0, idx_ridests_HRI), 3);
    EXPECT_EQ(index, 0.0F);
    right[40] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(overall2(1, idx_ridests_HRI), 3);
    EXPECT_EQ(event.summary(), "101 2 ride2chan_dlldrv: the calculated IRI is not a number");
    EXPECT_TRUE(std::isnan(index));
}

TEST_F(RideExports, RightTrackThatFailsLeavesWhatStoodBehindTheLeftOne) {
    right[40] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(overall2(1, idx_ridests_MRI), 3);
    EXPECT_EQ(event.summary(), "101 2 ride2chan_dlldrv: the calculated IRI is not a number");
    EXPECT_TRUE(std::isnan(index));
    EXPECT_EQ(seg2(1, idx_ridests_MRI), 3);
    EXPECT_EQ(output[0], untouched);
    EXPECT_EQ(length, (Floats{9.0F * interval, 980.0F * interval}));
    reset_event();
    EXPECT_EQ(ridecon2chan_drv(1, 6, left, right, interval, 25.0F, output), failure);
    EXPECT_EQ(current_event().routine.trimmed(),
              "mvgavg/filtcon_drv/continuous_2chan_rn/twochan_rn/ridecon2chan_drv");
    EXPECT_EQ(ridecon_drv(1, interval, 25.0F, 1, left, output), failure);
    EXPECT_EQ(current_event().routine.trimmed(),
              "mvgavg/filtcon_drv/postproc_conpi/compute_iri/ride_stats/ridecon_drv");
}

TEST_F(RideExports, DiagnosticFilesShowFiftyRowsOfWhateverThereIs) {
    const Floats a(12, 0.5F);
    const Floats b(12, 0.25F);
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
    ASSERT_EQ(rideseg_dlldrv(1, 1, 12, a.data(), interval, 2, points, output.data(), length.data(),
                             event),
              1);
    EXPECT_EQ(directory.text_of("rideseg_dlldrv.txt"),
              settings(1) + segments + one + " Done with the rideseg_drv cal\n");
    ASSERT_EQ(ride2chan_dlldrv(2, 1, 6, 12, a.data(), b.data(), nullptr, interval, &index, event),
              1);
    EXPECT_EQ(directory.text_of("ride2chan_dlldrv.txt"),
              settings(6) + two + " done with the ride2chan_drv call\n xRideIndex     : 5\n");
    ASSERT_EQ(rideseg2chan_dlldrv(1, 6, 12, a.data(), b.data(), interval, 2, points, output.data(),
                                  length.data(), event),
              1);
    EXPECT_EQ(directory.text_of("rideseg2chan_dlldrv.txt"),
              settings(6) + segments + two + " SegmentNum  Ride_Indexes\n  1 -1\n  2 -1\n" +
                  " Done with the rideseg2chan_dlldrv cal\n");
    ASSERT_EQ(con(1, 2, 7.5F), 1);
    EXPECT_EQ(directory.text_of("ridecon_dlldrv.txt"),
              " RideStats Continuous - debug mode\n if250mmFilter =  1\n xStepSize (m) =  0.025\n"
              " xBaseLength (m) =  7.5\n iRideIndexType =  2\n iSizeDataArray =  1000\n"
              " done with the ridecon_drv call\n");
    ASSERT_EQ(con2(2, 6, 0.5F), 1);
    EXPECT_EQ(directory.text_of("ridecon2chan_dlldrv.txt"),
              " if250mmFilter =  2\n iRideIndex =  6\n iSizeDataArray =  1000\n"
              " xStepSize (m) =  0.025\n xBaseLength (m) =  0.5\n"
              " Done with the ridecon2chan_drv cal\n");
    ASSERT_EQ(wimindex_dlldrv(2, interval, 6.5F, 12, a.data(), output.data(), event), 1);
    EXPECT_EQ(directory.text_of("wimindex_dlldrv.txt"),
              " WIM Error Index - debug mode\n iBridgingFilter =  2\n xStepSize (m) =  0.025\n"
              " Shrouding distance (m) =  6.5\n xBaseLength (m) =  1.524\n iRideIndexType =  9\n"
              " iSizeDataArray =  12\n"
              " done with the ridecon_drv call for the WIM index analysis\n");
    EXPECT_TRUE(event.untouched());
}

} // namespace
} // namespace vialto::test
