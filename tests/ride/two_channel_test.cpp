#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "ride/ride_drv.hpp"
#include "ride/two_channel.hpp"
#include "support/current_event.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

constexpr float interval = 0.025F; // m
constexpr std::size_t count = 3000;
constexpr std::int32_t two_track_indexes[] = {idx_ridests_HRI, idx_ridests_MRI,
                                              idx_ridests_2ChanRN};

using Floats = std::vector<float>;
using Counts = std::vector<std::int32_t>;

// All results in one row: overall, segments, lengths and continuous; of the left track alone for an
// index of one track.
Floats analyse(std::int32_t selector, const Floats& left, const Floats& right,
               const Counts& counts = {1000, 501, 0}, float base_length = 5.0F,
               const Counts& flags = {}) {
    const std::int32_t exclude = flags.empty() ? vialto_no : vialto_yes;
    Floats segment(counts.size());
    Floats length(counts.size());
    Floats continuous(left.size());
    Floats all(1);
    ReturnCode codes[3];
    if (selector == idx_ridests_IRI || selector == idx_ridests_RN) {
        codes[0] = ride_drv(exclude, 1, selector, left, flags, interval, all[0]);
        codes[1] =
            rideseg_drv(exclude, 1, selector, left, flags, interval, counts, segment, length);
        codes[2] = ridecon_drv(1, interval, base_length, selector, left, continuous);
    } else {
        codes[0] = ride2chan_drv(exclude, 1, selector, left, right, flags, interval, all[0]);
        codes[1] = rideseg2chan_drv(exclude, 1, selector, left, right, flags, interval, counts,
                                    segment, length);
        codes[2] = ridecon2chan_drv(1, selector, left, right, interval, base_length, continuous);
    }
    EXPECT_EQ(std::count(codes, codes + 3, success), 3);
    for (const Floats* part : {&segment, &length, &continuous}) {
        all.insert(all.end(), part->begin(), part->end());
    }
    return all;
}

class TwoTracks : public testing::Test {
protected:
    const Floats left = random_road(count, 0.025, 31);
    const Floats right = random_road(count, 0.025, 32);
};

TEST_F(TwoTracks, OneSegmentOfEitherHasItsOverallIndexAndLengthsCountTheSamplesLeftIn) {
    for (const std::int32_t selector : {idx_ridests_IRI, idx_ridests_RN}) {
        const Floats r = analyse(selector, left, {}, {0});
        EXPECT_EQ(r[1], r[0]);
        EXPECT_EQ(r[2], 2989.0F * interval);
    }
    Counts flags(count, 0);
    std::fill(flags.begin(), flags.begin() + 1000, 8);
    std::fill(flags.begin() + 1200, flags.begin() + 1250, 1);
    const Floats r = analyse(idx_ridests_IRI, left, {}, {1000, 501, 0}, 5.0F, flags);
    EXPECT_EQ(r[1], -1.0F);
    // 501 samples without the shared boundary sample and the 50; all from 1499 to 2989.
    EXPECT_EQ(Floats(r.begin() + 4, r.begin() + 7),
              (Floats{0.0F, 449.0F * interval, 1490.0F * interval}));
}

TEST_F(TwoTracks, HriTakesTheMeanProfileAndMriTheMeanIndex) {
    const auto mean = [](Floats a, const Floats& b) {
        for (std::size_t i = 0; i < a.size(); ++i) {
            a[i] = (a[i] + b[i]) * 0.5F;
        }
        return a;
    };
    EXPECT_EQ(analyse(idx_ridests_HRI, left, right),
              analyse(idx_ridests_IRI, mean(left, right), {}));
    // The lengths are the same.
    EXPECT_EQ(analyse(idx_ridests_MRI, left, right),
              mean(analyse(idx_ridests_IRI, left, {}), analyse(idx_ridests_IRI, right, {})));
}

TEST_F(TwoTracks, RideNumberComesFromTheRootMeanSquareOfBothAndContinuouslyOfTheLeft) {
    constexpr std::size_t first_length = 4; // of three, behind the overall index and the segments
    constexpr std::size_t first_continuous = 7;
    const Floats of_left = analyse(idx_ridests_RN, left, {});
    const Floats of_right = analyse(idx_ridests_RN, right, {});
    Floats expected = of_left;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const float a = of_left[i];
        const float b = i < first_continuous ? of_right[i] : a;
        const float exponent = -160.0F * std::sqrt(0.5F * (a * a + b * b));
        if (i < first_length || i >= first_continuous) {
            expected[i] = 5.0F * static_cast<float>(std::exp(static_cast<double>(exponent)));
        }
    }
    expected[first_continuous] = 0.0F;
    EXPECT_EQ(analyse(idx_ridests_2ChanRN, left, right), expected);
}

TEST_F(TwoTracks, OfAFlatRoadAreAPerfectRideButForSegmentsAndTheFirstSample) {
    const Floats flat(count, 1.0F);
    Floats expected{5.0F, -1.0F, 2989.0F * interval, 0.0F};
    expected.resize(3 + count, 5.0F);
    EXPECT_EQ(analyse(idx_ridests_2ChanRN, flat, flat, {0}), expected);
    // Without smoothing the samples behind the last valid one are zeros, too.
    std::fill(expected.end() - 10, expected.end(), 0.0F);
    EXPECT_EQ(analyse(idx_ridests_2ChanRN, flat, flat, {0}, 0.04F), expected);
}

TEST_F(TwoTracks, HolesRepeatTheLengthBeforeThemAndAreNothingOverallInTheRideNumberAlone) {
    const Counts all_out(count, 1);
    for (const std::int32_t selector : two_track_indexes) {
        const bool is_rn = selector == idx_ridests_2ChanRN;
        const Floats r = analyse(selector, left, right, {0, 800, 0, 500, 0});
        EXPECT_EQ(r[1], -1.0F);
        EXPECT_EQ(r[3], -1.0F);
        EXPECT_EQ(Floats(r.begin() + 6, r.begin() + 11),
                  (Floats{0.0F, 798.0F * interval, is_rn ? 798.0F * interval : 0.0F,
                          499.0F * interval, 1693.0F * interval}));
        const Floats none = analyse(selector, left, right, {0}, 5.0F, all_out);
        EXPECT_EQ(Floats(none.begin(), none.begin() + 3),
                  (Floats{is_rn ? 0.0F : -1.0F, -1.0F, 0.0F}));
    }
}

TEST_F(TwoTracks, RideNumberDoesNotAskForANaN) {
    for (const std::size_t samples : {0U, 1U, 10U}) { // up to the length of the moving average
        const Floats nothing(samples, 0.0F);
        const Floats rn = analyse(idx_ridests_2ChanRN, nothing, nothing, {0}, 0.0F);
        EXPECT_TRUE(std::isnan(rn[0]));
        EXPECT_EQ(rn[1], -1.0F);
        EXPECT_EQ(Floats(rn.begin() + 3, rn.end()), nothing);
    }
}

TEST_F(TwoTracks, SegmentBeyondTheArrayLeavesTheEarlierOnesWritten) {
    for (const std::int32_t selector : two_track_indexes) {
        const bool is_rn = selector == idx_ridests_2ChanRN;
        Floats segment(3, -7.0F);
        Floats length(3, -7.0F);
        reset_event();
        EXPECT_EQ(rideseg2chan_drv(2, 1, selector, left, right, {}, interval, Counts{1000, 2002, 0},
                                   segment, length),
                  failure);
        EXPECT_EQ(summary_of_current_event(),
                  std::string("100 2 ") +
                      (is_rn ? "twochan_rn" : "segmented_pi/compute_iri/ride_stats") +
                      "/rideseg2chan_drv: End index of data points exceeds the input array size. "
                      "Double-check segment points.");
        EXPECT_EQ(length, (Floats{999.0F * interval, -7.0F, -7.0F}));
        // A few mm/m: the IRI of the mean profile, or the PTRN that is no Ride Number yet; of the
        // MRI only the left track has been through.
        EXPECT_NEAR(segment[0], selector == idx_ridests_MRI ? -7.0F : 0.01F, 0.0095F);
        EXPECT_EQ(segment[1], -7.0F);
    }
}

} // namespace
} // namespace vialto::test
