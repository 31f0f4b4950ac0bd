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
constexpr float untouched = -7.0F;
constexpr std::size_t count = 3000;

using Floats = std::vector<float>;
using Counts = std::vector<std::int32_t>;

// All results of one pair of tracks: overall, segments, lengths and continuous in one row.
Floats analyse(std::int32_t selector, const Floats& left, const Floats& right,
               const Counts& counts = {1000, 501, 0}, float base_length = 5.0F) {
    Floats segment(counts.size());
    Floats length(counts.size());
    Floats continuous(left.size());
    Floats all(1);
    EXPECT_EQ(ride2chan_drv(2, 1, selector, left, right, {}, interval, all[0]), success);
    EXPECT_EQ(rideseg2chan_drv(2, 1, selector, left, right, {}, interval, counts, segment, length),
              success);
    EXPECT_EQ(ridecon2chan_drv(1, selector, left, right, interval, base_length, continuous),
              success);
    for (const Floats* part : {&segment, &length, &continuous}) {
        all.insert(all.end(), part->begin(), part->end());
    }
    return all;
}

// The same of one track.
Floats analyse(std::int32_t selector, const Floats& track) {
    Floats segment(3);
    Floats length(3);
    Floats continuous(track.size());
    Floats all(1);
    EXPECT_EQ(ride_drv(2, 1, selector, track, {}, interval, all[0]), success);
    EXPECT_EQ(
        rideseg_drv(2, 1, selector, track, {}, interval, Counts{1000, 501, 0}, segment, length),
        success);
    EXPECT_EQ(ridecon_drv(1, interval, 5.0F, selector, track, continuous), success);
    for (const Floats* part : {&segment, &length, &continuous}) {
        all.insert(all.end(), part->begin(), part->end());
    }
    return all;
}

constexpr std::size_t first_length = 4; // of three, behind the overall index and three segments
constexpr std::size_t first_continuous = 7;

class TwoTracks : public testing::Test {
protected:
    const Floats left = random_road(count, 0.025, 31);
    const Floats right = random_road(count, 0.025, 32);
};

TEST_F(TwoTracks, HriTakesTheMeanProfileAndMriTheMeanIndex) {
    Floats mean_profile(count);
    for (std::size_t i = 0; i < count; ++i) {
        mean_profile[i] = (left[i] + right[i]) * 0.5F;
    }
    EXPECT_EQ(analyse(idx_ridests_HRI, left, right), analyse(idx_ridests_IRI, mean_profile));

    const Floats of_left = analyse(idx_ridests_IRI, left);
    const Floats of_right = analyse(idx_ridests_IRI, right);
    Floats mean(of_left.size());
    for (std::size_t i = 0; i < mean.size(); ++i) {
        mean[i] = (of_left[i] + of_right[i]) * 0.5F; // the lengths are the same
    }
    EXPECT_EQ(analyse(idx_ridests_MRI, left, right), mean);
    EXPECT_EQ(analyse(idx_ridests_HRI, left, left), of_left);
    EXPECT_EQ(analyse(idx_ridests_MRI, left, left), of_left);
}

TEST_F(TwoTracks, RideNumberComesFromTheRootMeanSquareOfBothAndContinuouslyOfTheLeft) {
    const Floats rn = analyse(idx_ridests_2ChanRN, left, right);
    const Floats of_left = analyse(idx_ridests_RN, left);
    const Floats of_right = analyse(idx_ridests_RN, right);
    for (std::size_t i = 0; i < rn.size(); ++i) {
        const float a = of_left[i];
        const float b = i < first_continuous ? of_right[i] : a;
        const float exponent = -160.0F * std::sqrt(0.5F * (a * a + b * b));
        float expected = 5.0F * static_cast<float>(std::exp(static_cast<double>(exponent)));
        if (i >= first_length && i < first_continuous) {
            expected = a;
        } else if (i == first_continuous) {
            expected = 0.0F;
        }
        ASSERT_EQ(rn[i], expected) << i;
    }
}

TEST_F(TwoTracks, OfAFlatRoadAreAPerfectRideButForSegmentsAndTheFirstSample) {
    const Floats flat(count, 1.0F);
    Floats expected(1 + 1 + 1 + count, 5.0F);
    expected[1] = -1.0F;
    expected[2] = 2989.0F * interval;
    expected[3] = 0.0F;
    EXPECT_EQ(analyse(idx_ridests_2ChanRN, flat, flat, {0}), expected);
    // Without smoothing the samples behind the last valid one are zeros, too.
    std::fill(expected.end() - 10, expected.end(), 0.0F);
    EXPECT_EQ(analyse(idx_ridests_2ChanRN, flat, flat, {0}, 0.04F), expected);
}

TEST_F(TwoTracks, HoleRepeatsTheLengthBeforeItInTheRideNumberAlone) {
    for (const std::int32_t selector : {idx_ridests_HRI, idx_ridests_MRI, idx_ridests_2ChanRN}) {
        const Floats r = analyse(selector, left, right, {0, 800, 0, 500, 0});
        const float repeated = selector == idx_ridests_2ChanRN ? 798.0F * interval : 0.0F;
        EXPECT_EQ(
            Floats(r.begin() + 6, r.begin() + 11),
            (Floats{0.0F, 798.0F * interval, repeated, 499.0F * interval, 1693.0F * interval}));
        EXPECT_EQ(r[1], -1.0F);
        EXPECT_EQ(r[3], -1.0F);
    }
}

TEST_F(TwoTracks, AllLeftOutIsAHoleButARideNumberOfZero) {
    const Counts flags(count, 1);
    for (const std::int32_t selector : {idx_ridests_HRI, idx_ridests_MRI, idx_ridests_2ChanRN}) {
        float index = untouched;
        Floats segment(1);
        Floats length(1);
        EXPECT_EQ(ride2chan_drv(1, 1, selector, left, right, flags, interval, index), success);
        EXPECT_EQ(rideseg2chan_drv(1, 1, selector, left, right, flags, interval, Counts{0}, segment,
                                   length),
                  success);
        EXPECT_EQ(index, selector == idx_ridests_2ChanRN ? 0.0F : -1.0F);
        EXPECT_EQ(segment[0], -1.0F);
        EXPECT_EQ(length[0], 0.0F);
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
    for (const std::int32_t selector : {idx_ridests_HRI, idx_ridests_MRI, idx_ridests_2ChanRN}) {
        const bool is_rn = selector == idx_ridests_2ChanRN;
        Floats segment(3, untouched);
        Floats length(3, untouched);
        reset_event();
        EXPECT_EQ(rideseg2chan_drv(2, 1, selector, left, right, {}, interval, Counts{1000, 2002, 0},
                                   segment, length),
                  failure);
        EXPECT_EQ(summary_of_current_event(),
                  std::string("100 2 ") +
                      (is_rn ? "twochan_rn" : "segmented_pi/compute_iri/ride_stats") +
                      "/rideseg2chan_drv: End index of data points exceeds the input array size. "
                      "Double-check segment points.");
        EXPECT_EQ(length, (Floats{999.0F * interval, untouched, untouched}));
        // A few mm/m: the IRI of the mean profile, or the PTRN that is no Ride Number yet; of the
        // MRI only the left track has been through.
        EXPECT_NEAR(segment[0], selector == idx_ridests_MRI ? untouched : 0.01F, 0.0095F);
        EXPECT_EQ(segment[1], untouched);
    }
}

} // namespace
} // namespace vialto::test
