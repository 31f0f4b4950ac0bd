#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "filters/filtcon.hpp"
#include "ride/segment_statistic.hpp"
#include "ride/shroud.hpp"
#include "support/cases.hpp"
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

constexpr std::int32_t IRI = idx_ridests_IRI;
constexpr std::int32_t RN = idx_ridests_RN;
constexpr std::int32_t HRI = idx_ridests_HRI;
constexpr std::int32_t MRI = idx_ridests_MRI;
constexpr std::int32_t two_channel_RN = idx_ridests_2ChanRN;
constexpr std::int32_t WIM = idx_ridests_WIM;

// What a host asks for, each export taking what it knows of, and its answer.
struct Call {
    std::int32_t selector = IRI;
    std::int32_t if250 = vialto_yes; // or the bridging filter
    std::int32_t exclude = vialto_no;
    float dx = interval;
    float base = 1.0F; // m
    Floats left = random_road(count, 0.025, 31);
    Floats right = random_road(count, 0.025, 32);
    Counts flags = Counts(count);
    Counts counts = {300, 501, 0};
    std::string null = {}; // the argument that is a null pointer
    Floats index = {};
    Floats length = {}; // of segments
    std::string name = {};

    auto* given(const std::string& argument, auto& list) {
        return null == argument ? nullptr : list.data();
    }

    // Each gives the event of a failure, or nothing.
    std::string ride() {
        index = {untouched};
        return run("ride_dlldrv", ride_dlldrv, exclude, if250, selector, size_of(left),
                   given("dataarray", left), given("exclusion_flags", flags), dx,
                   given("xRideIndex", index));
    }
    std::string rideseg() {
        index = length = Floats(counts.size(), untouched);
        return run("rideseg_dlldrv", rideseg_dlldrv, if250, selector, size_of(left),
                   given("dataarray", left), dx, size_of(counts),
                   given("iNumSegmentPoints", counts), given("xOutput", index),
                   given("xSegLength", length));
    }
    std::string ridecon() {
        index = Floats(left.size(), untouched);
        return run("ridecon_dlldrv", ridecon_dlldrv, if250, dx, base, selector, size_of(left),
                   given("dataarray", left), given("xOutput", index));
    }
    std::string ride2chan() {
        index = {untouched};
        return run("ride2chan_dlldrv", ride2chan_dlldrv, exclude, if250, selector, size_of(left),
                   given("dataarray1", left), given("dataarray2", right),
                   given("exclusion_flags", flags), dx, given("xRideIndex", index));
    }
    std::string rideseg2chan() {
        index = length = Floats(counts.size(), untouched);
        return run("rideseg2chan_dlldrv", rideseg2chan_dlldrv, if250, selector, size_of(left),
                   given("dataarray1", left), given("dataarray2", right), dx, size_of(counts),
                   given("iNumSegmentPoints", counts), given("xOutput", index),
                   given("xSegLength", length));
    }
    std::string ridecon2chan() {
        index = Floats(left.size(), untouched);
        return run("ridecon2chan_dlldrv", ridecon2chan_dlldrv, if250, selector, size_of(left),
                   given("dataarray1", left), given("dataarray2", right), dx, base,
                   given("xOutput", index));
    }
    std::string wimindex() {
        index = Floats(left.size(), untouched);
        return run("wimindex_dlldrv", wimindex_dlldrv, if250, dx, base, size_of(left),
                   given("dataarray", left), given("xOutput", index));
    }

    std::string run(const char* export_name, auto function, auto... arguments) {
        const TemporaryDirectory directory;
        EventRecord event;
        const std::int32_t code = function(arguments..., event);
        name = export_name;
        return event.outcome(code);
    }
};

using Export = std::string (Call::*)();

// No outputs where they are left untouched. An event is "code description".
void gives(const Claim& claim, Export function, Call call, const Floats& index,
           const Floats& length = {}, const std::string& event = "") {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    const std::string outcome = (call.*function)();
    const std::string place = " 2 " + call.name + ":";
    EXPECT_EQ(outcome, event.empty() ? "" : event.substr(0, 3) + place + event.substr(3));
    const auto left = [](const Floats& output) { return Floats(output.size(), untouched); };
    EXPECT_TRUE(same(call.index, index.empty() ? left(call.index) : index)) << "index";
    EXPECT_TRUE(same(call.length, length.empty() ? left(call.length) : length)) << "length";
}

void refuses(const Claim& claim, Export function, const Call& call, const std::string& event) {
    gives(claim, function, call, {}, {}, event);
}

const std::string no_switch = "101 tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-";
const std::string no_number = "101 the calculated IRI is not a number";
const std::string beyond = "100 End index of data points exceeds the input array size. "
                           "Double-check segment points.";

TEST(RideExports, RefuseWhatTheyDoNotAnalyse) {
    refuses("half car on one track", &Call::ride, {.selector = HRI},
            "101 i_rideindexsel is not within range");
    refuses("two RN", &Call::ride, {.selector = idx_ridests_TwoRN},
            "101 two RN is no longer supported");
    refuses("WIM overall", &Call::ride, {.selector = WIM, .if250 = 2},
            "100 WIM error index should not be normal ride stats analysis");
    refuses("WIM of segments", &Call::rideseg, {.selector = WIM, .if250 = 2},
            "100 WIM error index should not be segemeted ride stats analysis");
    refuses("one track's index of two", &Call::ride2chan, {.selector = IRI},
            "100 only HRI, MRI, and 2-Chan-RN allowed in the 2-channel analysis");
    refuses("longer than the road", &Call::ridecon, {.base = 25.0F},
            "101 moving average base length is greater the sampling distance");
    // The length is looked at before the filters refuse the interval.
    refuses("50,001 samples", &Call::wimindex, {.if250 = 2, .dx = 5.0F, .left = Floats(50001)},
            "100 Current JQV is not suitable to handle large data set. Sorry for the "
            "inconvenience");
}

TEST(RideExports, LeaveInTheOutputsWhatTheyHadReachedWhenTheyFail) {
    const Floats no_road(count, nan);
    gives("no switch", &Call::ride, {.if250 = 0}, {0}, {}, no_switch);
    refuses("no switch of two", &Call::ride2chan, {.selector = two_channel_RN, .if250 = 0},
            no_switch);
    gives("ten samples", &Call::ride, {.left = Floats(10)}, {nan}, {}, no_number);
    refuses("no number on the left", &Call::ride2chan, {.selector = MRI, .left = no_road},
            no_number);
    gives("none on the right", &Call::ride2chan, {.selector = MRI, .right = no_road}, {nan}, {},
          no_number);
    gives("none on the right, in segments", &Call::rideseg2chan,
          {.selector = MRI, .right = no_road}, {}, {299 * interval, 500 * interval, 190 * interval},
          no_number);
    refuses("none on the right, along the road", &Call::ridecon2chan,
            {.selector = MRI, .right = no_road}, no_number);
    gives("a segment beyond the road", &Call::rideseg,
          {.left = Floats(12, 1.0F), .counts = {2, 12, 0}}, {0, untouched, untouched},
          {interval, untouched, untouched}, beyond);
    gives("a segment of the left track beyond", &Call::rideseg2chan,
          {.selector = MRI, .counts = {300, 702, 0}}, {}, {299 * interval, untouched, untouched},
          beyond);
    Call of_two{.selector = two_channel_RN, .counts = {300, 702, 0}};
    EXPECT_EQ(of_two.rideseg2chan(), "100 2 rideseg2chan_dlldrv:" + beyond.substr(3));
    EXPECT_GT(of_two.index[0], 0.0F); // a PTRN, which is no Ride Number yet
    EXPECT_LT(of_two.index[0], 0.01F);
}

// Short roads have two filtered samples at most; the others are the moving average's.
TEST(RideExports, ServeRoadsOfAFewSamples) {
    const Floats flat(12, 1.0F);
    const Counts holes{0, 3, 0, 2, 0};
    const Floats lengths{0, interval, 0, interval, 0};
    gives("the flags behind the filtered samples are not read", &Call::ride,
          {.exclude = 1, .left = flat, .flags = {5, -1}}, {-1});
    gives("no filtered samples", &Call::ride2chan,
          {.selector = two_channel_RN, .left = Floats(10), .right = Floats(10)}, {nan});
    gives("half car with all excluded", &Call::ride2chan,
          {.selector = HRI, .exclude = 1, .flags = Counts(count, 5)}, {-1});
    gives("Ride Number with all excluded", &Call::ride2chan,
          {.selector = two_channel_RN, .exclude = 1, .flags = Counts(count, 5)}, {0});
    gives("holes of the half car", &Call::rideseg2chan,
          {.selector = HRI, .left = flat, .right = flat, .counts = holes}, {-1, 0, -1, 0, 0},
          lengths);
    gives("a PTRN of zero is a hole, which has the length of the one before it",
          &Call::rideseg2chan,
          {.selector = two_channel_RN, .left = flat, .right = flat, .counts = holes},
          Floats(5, -1.0F), {0, interval, interval, interval, 0});
    gives("averaged over four samples", &Call::ridecon2chan,
          {.selector = two_channel_RN, .base = 0.1F, .left = flat},
          {0, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5});
    gives("not averaged below two samples", &Call::ridecon2chan,
          {.selector = two_channel_RN, .base = 0.04F, .left = flat},
          {0, 5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    gives("nine samples", &Call::wimindex, {.left = {1, 2, 3, 4, 3, 2, 1, 2, 3}}, Floats(9));
}

TEST(RideExports, RefuseNullPointersAndIntervalsByName) {
    const std::pair<Export, std::vector<const char*>> exports[] = {
        {&Call::ride, {"dataarray", "exclusion_flags", "xRideIndex"}},
        {&Call::rideseg, {"dataarray", "iNumSegmentPoints", "xOutput", "xSegLength"}},
        {&Call::ridecon, {"dataarray", "xOutput"}},
        {&Call::ride2chan, {"dataarray1", "dataarray2", "exclusion_flags", "xRideIndex"}},
        {&Call::rideseg2chan,
         {"dataarray1", "dataarray2", "iNumSegmentPoints", "xOutput", "xSegLength"}},
        {&Call::ridecon2chan, {"dataarray1", "dataarray2", "xOutput"}},
        {&Call::wimindex, {"dataarray", "xOutput"}},
    };
    for (const auto& [function, arguments] : exports) {
        refuses("xStepSize", function, {.dx = 0}, "100 xStepSize is not a positive finite number");
        for (const std::string argument : arguments) {
            refuses(argument.c_str(), function, {.exclude = 1, .null = argument},
                    "100 " + argument + " is a null pointer");
        }
    }
}

// Samples a to b (from 0) have the mean slope (a + b) / 2 + 1; ten of the twelve are valid.
TEST(SegmentWalk, SharesBoundariesStepsBackBehindHolesAndEndsBeyondTheArray) {
    const Floats slope{1, -2, 3, -4, 5, 6, 7, 8, 9, 10, 0, 0};
    const Counts flags{1, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0};
    const auto walks = [&](const Claim& claim, std::int32_t exclude, const Counts& counts,
                           ReturnCode code, const Floats& indexes, const Floats& lengths) {
        const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
        Floats index(counts.size(), untouched);
        Floats length(counts.size(), untouched);
        const RideRequest request{.ifExcludeLeaveout = exclude,
                                  .iExclusionFlags = flags,
                                  .xStepSize = 0.5F,
                                  .iNumSegmentPoints = counts};
        const tFiltCon filter{0, 0, 0, 0, 0, 0, 0, 0, 1.0F, 0, 9};
        EXPECT_EQ(segmented_pi(request, filter, slope, {{}, index, length}), code);
        EXPECT_TRUE(same(index, indexes));
        EXPECT_TRUE(same(length, lengths));
    };
    walks("excluded samples are left out of sum, divisor and length", vialto_yes, {1, 4, 0},
          success, {-1, 2.5F, 7.5F}, {0, 0.5F, 2.5F});
    walks("a hole between two", vialto_no, {4, 0, 9}, success, {2.5F, -1, 6.5F}, {1.5F, 0, 3.5F});
    walks("a hole ahead", vialto_no, {0, 3, 9}, success, {-1, 1.5F, 6}, {0, 0.5F, 4});
    walks("counts far beyond", vialto_no, {INT32_MIN, INT32_MIN, INT32_MAX, 9}, success,
          {-1, -1, -1, 5.5F}, {0, 0, 0, 4.5F});
    walks("an earlier one counts the zeros behind the last valid sample, leaving a hole", vialto_no,
          {12, 9}, success, {55.0F / 12.0F, -1}, {5.5F, 0});
    walks("beyond the array", vialto_no, {4, 10, 0}, failure, {2.5F, untouched, untouched},
          {1.5F, untouched, untouched});
}

Floats filtered(const Floats& profile, tFiltCon settings) {
    Floats output(profile.size());
    EXPECT_EQ(filtcon_drv(profile, interval, settings, output), success);
    return output;
}

TEST(RideIndex, OfOneTrackIsTheStatisticOfTheLiteralQuarterCar) {
    const Floats road = Call{}.left;
    for (const bool is_iri : {true, false}) {
        const std::int32_t selector = is_iri ? IRI : RN;
        SCOPED_TRACE(is_iri ? "IRI" : "RN");
        auto [power, all] =
            literal_filter(is_iri ? iri_car : rn_car, road, interval, 10, is_iri ? 1.0F : 2.0F);
        Call segment{.selector = selector, .counts = {7}}; // the last one has all the rest
        EXPECT_EQ(segment.rideseg(), "");
        EXPECT_NEAR(segment.index[0], all, 1e-8);
        Call flagged{.selector = selector, .exclude = 0, .flags = Counts(count, 1)};
        EXPECT_EQ(flagged.ride(), "");
        EXPECT_NEAR(flagged.index[0], all, 1e-8) << "flags that are not asked for count";
        for (float& value : power) {
            value = is_iri ? std::fabs(value) : value * value;
        }
        for (const float base : {0.049F, 0.05F, 7.62F, -1e30F, nan}) {
            SCOPED_TRACE(base);
            const tFiltCon mean{idx_filttyp_mvgavg, 2, 1, 1, 0, 0, base, 0, 0, 0, 0};
            Floats expected = base >= 0.05F ? filtered(power, mean) : power;
            for (float& value : expected) {
                value = is_iri ? value : std::sqrt(value > 0.0F ? value : 0.0F);
            }
            Call along{.selector = selector, .base = base};
            EXPECT_EQ(along.ridecon(), "");
            EXPECT_TRUE(same(along.index, expected));
        }
    }
}

Floats index_of(Export function, Call call) {
    EXPECT_EQ((call.*function)(), "");
    return call.index;
}

Floats mean_of(Floats a, const Floats& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        a[i] = (a[i] + b[i]) * 0.5F;
    }
    return a;
}

TEST(RideIndex, OfTwoTracksFollowsFromThatOfOne) {
    const auto [left, right] = std::pair(Call{}.left, Call{}.right);
    for (const auto& [name, one, two] : {std::tuple{"overall", &Call::ride, &Call::ride2chan},
                                         {"segments", &Call::rideseg, &Call::rideseg2chan},
                                         {"along", &Call::ridecon, &Call::ridecon2chan}}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(same(index_of(two, {.selector = MRI}),
                         mean_of(index_of(one, {.left = left}), index_of(one, {.left = right}))));
        EXPECT_TRUE(
            same(index_of(two, {.selector = HRI}), index_of(one, {.left = mean_of(left, right)})));
        // Along the road the Ride Number is the left track's alone.
        const bool is_along = one == &Call::ridecon;
        Floats expected = index_of(one, {.selector = RN, .left = left});
        const Floats other = is_along ? expected : index_of(one, {.selector = RN, .left = right});
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const float squares = expected[i] * expected[i] + other[i] * other[i];
            const float exponent = -160.0F * std::sqrt(0.5F * squares);
            expected[i] = 5.0F * static_cast<float>(std::exp(static_cast<double>(exponent)));
        }
        expected[0] = is_along ? 0.0F : expected[0];
        EXPECT_TRUE(same(index_of(two, {.selector = two_channel_RN}), expected));
    }
}

TEST(WimIndex, IsTheShroudOfTheBandPassedSlope) {
    // Band-pass, slope, the cutoffs; the bridge filter's elevation and base length.
    const tFiltCon band{idx_filttyp_bwfilt, 1, 2, 0, 0, 16.45F, 1.07F, 0, 0, 0, 0};
    const tFiltCon bridge{idx_filttyp_bridge, 0, 1, 0, 0, 0, 0.25F, 0, 0, 0, 0};
    const auto shrouded = [&](const Floats& elevation) {
        Floats slope = filtered(elevation, band);
        for (float& value : slope) {
            value = std::sqrt(value * value);
        }
        Floats index(slope.size());
        shroud(slope, interval, index, 15.24F, 1.524F);
        return index;
    };
    Floats road = Call{}.left;
    EXPECT_TRUE(same(index_of(&Call::ridecon, {.selector = WIM, .if250 = 0}), shrouded(road)));
    road = filtered(road, bridge);
    road.resize(count - 9); // a window of 10 samples fits as often
    Floats expected = shrouded(road);
    expected.resize(count, 0.0F);
    EXPECT_TRUE(same(index_of(&Call::wimindex, {}), expected));
    const Floats flat(50000);
    EXPECT_TRUE(same(index_of(&Call::wimindex, {.if250 = 2, .left = flat}), flat));
}

} // namespace
} // namespace vialto::test
