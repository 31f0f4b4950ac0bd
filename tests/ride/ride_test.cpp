#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "filters/filtcon.hpp"
#include "ride/ride_drv.hpp"
#include "ride/segment_statistic.hpp"
#include "ride/shroud.hpp"
#include "ride/two_channel.hpp"
#include "support/host.hpp"
#include "support/quarter_car_model.hpp"
#include "support/roads.hpp"

namespace vialto::test {
namespace {

using Floats = std::vector<float>;
using Counts = std::vector<std::int32_t>;

constexpr float interval = 0.025F; // m
constexpr float untouched = -7.0F;
constexpr std::int32_t count = 1000;
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

// What a host asks for, each export taking what it knows of.
struct Request {
    std::int32_t selector = idx_ridests_IRI;
    std::int32_t if250 = vialto_yes; // or the bridging filter
    std::int32_t exclude = vialto_no;
    float dx = interval;
    float base = 1.0F;
    Floats left = random_road(count, 0.025, 31);
    Floats right = random_road(count, 0.025, 32);
    Counts flags = Counts(count);
    Counts counts = {300, 501, 0};
    std::string null = {}; // the argument that is a null pointer
};

struct Answer {
    std::string told; // code and description of the event; a semicolon; what was written
    Floats values;    // of all outputs in turn
    std::string file; // the diagnostic file
};

std::string told(const std::string& event, const Floats& values) {
    std::ostringstream text;
    text << event << ";";
    for (const float value : values) {
        if (value != untouched) {
            text << " " << (std::isnan(value) ? nan : value);
        }
    }
    return text.str();
}

Answer ask(const std::string& name, const Request& request) {
    const auto& [kind, if250, exclude, dx, base, a, b, flags, points, null] = request;
    const TemporaryDirectory directory;
    EventRecord event;
    const auto n = static_cast<std::int32_t>(a.size());
    const auto k = static_cast<std::int32_t>(points.size());
    const bool overall = name == "ride" || name == "ride2chan";
    const bool segmented = name.starts_with("rideseg");
    Floats values(overall ? 1 : segmented ? 2 * points.size() : a.size(), untouched);
    const auto given = [&](const std::string& argument, auto* address) {
        return request.null == argument ? nullptr : address;
    };
    const float* const left = given(name.ends_with("2chan") ? "dataarray1" : "dataarray", a.data());
    const float* const right = given("dataarray2", b.data());
    const std::int32_t* const out_of_it = given("exclusion_flags", flags.data());
    const std::int32_t* const ends = given("iNumSegmentPoints", points.data());
    float* const out = given(overall ? "xRideIndex" : "xOutput", values.data());
    float* const length = given("xSegLength", values.data() + k);
    const std::int32_t code =
        name == "ride"      ? ride_dlldrv(exclude, if250, kind, n, left, out_of_it, dx, out, event)
        : name == "rideseg" ? rideseg_dlldrv(if250, kind, n, left, dx, k, ends, out, length, event)
        : name == "ridecon" ? ridecon_dlldrv(if250, dx, base, kind, n, left, out, event)
        : name == "ride2chan"
            ? ride2chan_dlldrv(exclude, if250, kind, n, left, right, out_of_it, dx, out, event)
        : name == "rideseg2chan"
            ? rideseg2chan_dlldrv(if250, kind, n, left, right, dx, k, ends, out, length, event)
        : name == "ridecon2chan"
            ? ridecon2chan_dlldrv(if250, kind, n, left, right, dx, base, out, event)
            : wimindex_dlldrv(if250, dx, base, n, left, out, event);
    EXPECT_EQ(code, event.untouched() ? 1 : 3);
    EXPECT_TRUE(code == 1 || event.summary().substr(3).starts_with(" 2 " + name + "_dlldrv: "));
    const std::string failed =
        code == 1 ? "" : std::to_string(event.error_code()) + " " + event.description();
    return {told(failed, values), values, directory.text_of(name + "_dlldrv.txt")};
}

TEST(RideExports, TellWhatFailsAndWhatStandsInTheOutputs) {
    const std::string no_switch = "101 tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-;";
    const std::string no_number = "101 the calculated IRI is not a number;";
    const std::string beyond = "100 End index of data points exceeds the input array size. "
                               "Double-check segment points.;";
    const std::string too_long = "101 moving average base length is greater the sampling distance;";
    const std::string two_only =
        "100 only HRI, MRI, and 2-Chan-RN allowed in the 2-channel analysis;";
    const std::string overall = "100 WIM error index should not be normal ride stats analysis;";
    const std::string segments = "100 WIM error index should not be segemeted ride stats analysis;";
    const std::string too_large =
        "100 Current JQV is not suitable to handle large data set. Sorry for the inconvenience;";
    // Short roads have two filtered samples at most; the others are the moving average's.
    const Floats flat(12, 1.0F);
    const Counts holes{0, 3, 0, 2, 0};
    const std::tuple<std::string, Request, std::string> cases[] = {
        {"ride", {.selector = 4}, "101 i_rideindexsel is not within range;"},
        {"ride", {.selector = 3}, "101 two RN is no longer supported;"},
        {"ride", {.selector = 9, .if250 = 2}, overall},
        {"ride", {.if250 = 0}, no_switch + " 0"},
        {"ride", {.left = Floats(10)}, no_number + " nan"},
        {"ride", {.left = flat}, "; 0"},
        // The flags behind the filtered samples are not read.
        {"ride", {.exclude = 1, .left = flat, .flags = {5, -1}}, "; -1"},
        {"rideseg", {.selector = 9, .if250 = 2}, segments},
        {"rideseg", {.left = flat, .counts = {2, 12, 0}}, beyond + " 0 0.025"},
        {"rideseg", {.left = flat, .counts = {}}, ";"},
        {"ridecon", {.base = 25.0F}, too_long},
        {"ride2chan", {.selector = 1}, two_only},
        {"ride2chan", {.selector = 6, .if250 = 0}, no_switch},
        {"ride2chan", {.selector = 5, .left = Floats(count, nan)}, no_number},
        {"ride2chan", {.selector = 5, .right = Floats(count, nan)}, no_number + " nan"},
        {"ride2chan", {.selector = 6, .left = Floats(10), .right = Floats(10)}, "; nan"},
        {"ride2chan", {.selector = 4, .exclude = 1, .flags = Counts(count, 5)}, "; -1"},
        {"ride2chan", {.selector = 6, .exclude = 1, .flags = Counts(count, 5)}, "; 0"},
        {"rideseg2chan",
         {.selector = 5, .right = Floats(count, nan)},
         no_number + " 7.475 12.5 4.75"},
        // Of the MRI the left track alone has been through.
        {"rideseg2chan", {.selector = 5, .counts = {300, 702, 0}}, beyond + " 7.475"},
        {"rideseg2chan",
         {.selector = 4, .left = flat, .right = flat, .counts = holes},
         "; -1 0 -1 0 0 0 0.025 0 0.025 0"},
        {"rideseg2chan",
         {.selector = 6, .left = flat, .right = flat, .counts = holes},
         "; -1 -1 -1 -1 -1 0 0.025 0.025 0.025 0"},
        {"ridecon2chan", {.selector = 5, .right = Floats(count, nan)}, no_number},
        {"ridecon2chan", {.selector = 6, .base = 0.1F, .left = flat}, "; 0 5 5 5 5 5 5 5 5 5 5 5"},
        {"ridecon2chan", {.selector = 6, .base = 0.04F, .left = flat}, "; 0 5 0 0 0 0 0 0 0 0 0 0"},
        {"ridecon2chan", {.selector = 6, .base = 0.04F, .left = {}}, ";"},
        // The length is looked at before the filters refuse the interval.
        {"wimindex", {.if250 = 2, .dx = 5.0F, .left = Floats(50001)}, too_large},
        {"wimindex", {.left = {1, 2, 3, 4, 3, 2, 1, 2, 3}}, "; 0 0 0 0 0 0 0 0 0"},
    };
    for (const auto& [name, request, expected] : cases) {
        EXPECT_EQ(ask(name, request).told, expected) << name;
    }
    // Ahead of a failure the segments have a PTRN, which is no Ride Number yet.
    EXPECT_TRUE(ask("rideseg2chan", {.selector = 6, .counts = {300, 702, 0}})
                    .told.starts_with(beyond + " 0.00"));
}

TEST(RideExports, RefuseNullPointersAndIntervalsByName) {
    const std::pair<std::string, std::vector<std::string>> exports[] = {
        {"ride", {"dataarray", "exclusion_flags", "xRideIndex"}},
        {"rideseg", {"dataarray", "iNumSegmentPoints", "xOutput", "xSegLength"}},
        {"ridecon", {"dataarray", "xOutput"}},
        {"ride2chan", {"dataarray1", "dataarray2", "exclusion_flags", "xRideIndex"}},
        {"rideseg2chan",
         {"dataarray1", "dataarray2", "iNumSegmentPoints", "xOutput", "xSegLength"}},
        {"ridecon2chan", {"dataarray1", "dataarray2", "xOutput"}},
        {"wimindex", {"dataarray", "xOutput"}},
    };
    for (const auto& [name, arguments] : exports) {
        EXPECT_EQ(ask(name, {.dx = 0}).told, "100 xStepSize is not a positive finite number;");
        for (const std::string& argument : arguments) {
            EXPECT_EQ(ask(name, {.exclude = 1, .null = argument}).told,
                      "100 " + argument + " is a null pointer;");
        }
    }
}

TEST(RideDrivers, NameTheWayOfAFailureFromTheInside) {
    const auto path = [](ReturnCode) { return current_event().routine.trimmed(); };
    Floats x(20);
    EXPECT_EQ(path(ridecon2chan_drv(1, 6, x, x, interval, 25.0F, x)),
              "mvgavg/filtcon_drv/continuous_2chan_rn/twochan_rn/ridecon2chan_drv");
    EXPECT_EQ(path(ride_drv(2, 1, 1, {}, {}, interval, x[0])), "compute_iri/ride_stats/ride_drv");
}

TEST(RideExports, DiagnosticFilesShowFiftyRowsOfWhateverThereIs) {
    std::string one = " the first 50 points -\n no. dataarray  exclusion_flags\n";
    std::string two = " the first 50 points -\n no. dataarray1 dataarray2 exclusion_flags\n";
    for (int row = 1; row <= 50; ++row) {
        one += "  " + std::to_string(row) + (row <= 12 ? " 0.5 0\n" : " 0 0\n");
        two += "  " + std::to_string(row) + (row <= 12 ? " 0.5 0.25 0\n" : " 0 0 0\n");
    }
    const std::string switches = " ifExcludeLeaveout   : 2\n if250mmFilter : 1\n";
    const std::string sizes = " iSizeDataArray: 12\n xStepSize     : 0.025\n";
    const std::string one_track = switches + " iRideIndex    : 2\n" + sizes;
    const std::string two_tracks = switches + " iRideIndex    : 6\n" + sizes;
    const std::string counts =
        " iNumSegments  : 2\n iNumSegmentPoints(iNumSegments)  :\n  10\n  0\n";
    const std::pair<std::string, std::string> cases[] = {
        {"ride", one_track + " done with the ride_drv call\n xRideIndex     : 0\n"},
        {"rideseg", one_track + counts + one + " Done with the rideseg_drv cal\n"},
        {"ride2chan",
         two_tracks + two + " done with the ride2chan_drv call\n xRideIndex     : 5\n"},
        {"rideseg2chan", two_tracks + counts + two +
                             " SegmentNum  Ride_Indexes\n  1 -1\n  2 -1\n"
                             " Done with the rideseg2chan_dlldrv cal\n"},
        {"ridecon",
         " RideStats Continuous - debug mode\n if250mmFilter =  1\n xStepSize (m) =  0.025"
         "\n xBaseLength (m) =  0.04\n iRideIndexType =  2\n iSizeDataArray =  12\n"
         " done with the ridecon_drv call\n"},
        {"ridecon2chan", " if250mmFilter =  1\n iRideIndex =  6\n iSizeDataArray =  12\n"
                         " xStepSize (m) =  0.025\n xBaseLength (m) =  0.04\n"
                         " Done with the ridecon2chan_drv cal\n"},
        {"wimindex",
         " WIM Error Index - debug mode\n iBridgingFilter =  1\n xStepSize (m) =  0.025\n"
         " Shrouding distance (m) =  0.04\n xBaseLength (m) =  1.524\n"
         " iRideIndexType =  9\n iSizeDataArray =  12\n"
         " done with the ridecon_drv call for the WIM index analysis\n"},
    };
    Request request{.base = 0.04F, .left = Floats(12, 0.5F), .right = Floats(12, 0.25F)};
    request.counts = {10, 0};
    for (const auto& [name, text] : cases) {
        request.selector = name.ends_with("2chan") ? 6 : 2;
        EXPECT_EQ(ask(name, request).file, text);
    }
}

TEST(SegmentWalk, SharesBoundariesStepsBackBehindHolesAndEndsBeyondTheArray) {
    // Samples a to b (from 0) have the mean slope (a + b) / 2 + 1; ten of the twelve are valid.
    const Floats slope{1, -2, 3, -4, 5, 6, 7, 8, 9, 10, 0, 0};
    const Counts flags{1, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0};
    const std::tuple<std::int32_t, Counts, std::string> cases[] = {
        {vialto_no, {INT32_MIN}, "; 5.5; 4.5"},
        {vialto_yes, {1, 4, 0}, "; -1 2.5 7.5; 0 0.5 2.5"},
        {vialto_no, {4, 0, 9}, "; 2.5 -1 6.5; 1.5 0 3.5"},
        {vialto_no, {0, 3, 9}, "; -1 1.5 6; 0 0.5 4"},
        {vialto_no, {INT32_MIN, INT32_MIN, INT32_MAX, 9}, "; -1 -1 -1 5.5; 0 0 0 4.5"},
        // An earlier segment counts the zeros behind the last valid sample, and leaves a hole.
        {vialto_no, {12, 9}, "; 4.58333 -1; 5.5 0"},
        {vialto_no, {4, 10, 0}, "beyond; 2.5; 1.5"},
    };
    for (const auto& [exclude, counts, expected] : cases) {
        Floats index(counts.size(), untouched);
        Floats length(counts.size(), untouched);
        const RideRequest request{.ifExcludeLeaveout = exclude,
                                  .iExclusionFlags = flags,
                                  .xStepSize = 0.5F,
                                  .iNumSegmentPoints = counts};
        const tFiltCon filter{0, 0, 0, 0, 0, 0, 0, 0, 1.0F, 0, 9};
        const ReturnCode code = segmented_pi(request, filter, slope, {{}, index, length});
        EXPECT_EQ(told(code == success ? "" : "beyond", index) + told("", length), expected);
    }
}

Floats filtered(const Floats& profile, tFiltCon settings) {
    Floats output(profile.size());
    EXPECT_EQ(filtcon_drv(profile, interval, settings, output), success);
    return output;
}

TEST(RideIndex, OfOneTrackIsTheStatisticOfTheLiteralQuarterCar) {
    const Floats road = Request{}.left;
    for (const std::int32_t selector : {idx_ridests_IRI, idx_ridests_RN}) {
        const bool is_iri = selector == idx_ridests_IRI;
        auto [power, all] =
            literal_filter(is_iri ? iri_car : rn_car, road, interval, 10, is_iri ? 1.0F : 2.0F);
        EXPECT_NEAR(ask("rideseg", {.selector = selector, .counts = {7}}).values[0], all, 1e-8);
        const Request flagged{.selector = selector, .exclude = 0, .flags = Counts(count, 1)};
        EXPECT_NEAR(ask("ride", flagged).values[0], all, 1e-8);
        for (float& value : power) {
            value = is_iri ? std::fabs(value) : value * value;
        }
        for (const float base : {0.049F, 0.05F, 7.62F, -1e30F, nan}) {
            const tFiltCon mean{idx_filttyp_mvgavg, 2, 1, 1, 0, 0, base, 0, 0, 0, 0};
            Floats expected = base >= 0.05F ? filtered(power, mean) : power;
            for (float& value : expected) {
                value = is_iri ? value : std::sqrt(value > 0.0F ? value : 0.0F);
            }
            EXPECT_EQ(ask("ridecon", {.selector = selector, .base = base}).values, expected);
        }
    }
}

TEST(RideIndex, OfTwoTracksFollowsFromThatOfOne) {
    const auto mean = [](Floats a, const Floats& b) {
        for (std::size_t i = 0; i < a.size(); ++i) {
            a[i] = (a[i] + b[i]) * 0.5F;
        }
        return a;
    };
    const Request both;
    for (const std::string name : {"ride", "rideseg", "ridecon"}) {
        const auto one = [&](std::int32_t selector, const Floats& track) {
            return ask(name, {.selector = selector, .left = track}).values;
        };
        EXPECT_EQ(ask(name + "2chan", {.selector = idx_ridests_MRI}).values,
                  mean(one(idx_ridests_IRI, both.left), one(idx_ridests_IRI, both.right)));
        EXPECT_EQ(ask(name + "2chan", {.selector = idx_ridests_HRI}).values,
                  one(idx_ridests_IRI, mean(both.left, both.right)));
        // Along the road the Ride Number is the left track's alone.
        Floats expected = one(idx_ridests_RN, both.left);
        const Floats other = name == "ridecon" ? expected : one(idx_ridests_RN, both.right);
        for (std::size_t i = 0; i < (name == "rideseg" ? 3 : expected.size()); ++i) {
            const float squares = expected[i] * expected[i] + other[i] * other[i];
            const float exponent = -160.0F * std::sqrt(0.5F * squares);
            expected[i] = 5.0F * static_cast<float>(std::exp(static_cast<double>(exponent)));
        }
        expected[0] = name == "ridecon" ? 0.0F : expected[0];
        EXPECT_EQ(ask(name + "2chan", {.selector = idx_ridests_2ChanRN}).values, expected);
    }
}

TEST(WimIndex, IsTheShroudOfTheBandPassedSlope) {
    // Band-pass, slope, the cutoffs; the bridge filter's elevation and base length.
    const tFiltCon band{idx_filttyp_bwfilt, 1, 2, 0, 0, 16.45F, 1.07F, 0, 0, 0, 0};
    const tFiltCon bridge{idx_filttyp_bridge, 0, 1, 0, 0, 0, 0.25F, 0, 0, 0, 0};
    const auto index_of = [&](const Floats& elevation) {
        Floats slope = filtered(elevation, band);
        for (float& value : slope) {
            value = std::sqrt(value * value);
        }
        Floats index(slope.size());
        shroud(slope, interval, index, 15.24F, 1.524F);
        return index;
    };
    Floats road = Request{}.left;
    EXPECT_EQ(ask("ridecon", {.selector = 9, .if250 = 0}).values, index_of(road));
    road = filtered(road, bridge);
    road.resize(count - 9); // a window of 10 samples fits as often
    Floats expected = index_of(road);
    expected.resize(count, 0.0F);
    EXPECT_EQ(ask("wimindex", {}).values, expected);
    EXPECT_EQ(ask("wimindex", {.if250 = 2, .left = Floats(50000)}).values, Floats(50000));
}

} // namespace
} // namespace vialto::test
