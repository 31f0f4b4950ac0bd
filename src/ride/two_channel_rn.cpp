#include "ride/two_channel_rn.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <vector>

#include "filters/filtcon.hpp"
#include "numeric/exponential.hpp"
#include "ride/continuous_statistic.hpp"
#include "ride/overall_statistic.hpp"
#include "ride/segment_statistic.hpp"

namespace vialto {

namespace {

constexpr std::string_view name = "twochan_rn";

// The filtered slopes of both tracks. One record serves both, as their valid ranges are the same.
struct FilteredTracks {
    tFiltCon settings;
    std::span<float> left;
    std::span<float> right;
};

struct TrackStatistics {
    float left;
    float right;
    std::int32_t actual; // samples that counted in the right track
};

float ride_number(float ptrn) {
    return highest_ride_number * exponential(ride_number_rate * ptrn);
}

float root_mean_square(float left, float right) {
    return std::sqrt(0.5F * (left * left + right * right));
}

TrackStatistics ptrn_of_stretch(const RideRequest& request, const FilteredTracks& tracks,
                                std::int32_t first, std::int32_t last) {
    const auto ptrn = [&](std::span<const float> track) {
        return postproc_pi(track, request.iExclusionFlags, request.ifExcludeLeaveout, first, last,
                           tracks.settings.xPowerWeighting);
    };
    const StretchStatistic right = ptrn(tracks.right);
    return {ptrn(tracks.left).index, right.index, right.actual};
}

// With all samples left out both tracks are holes, -1.0, and the Ride Number underflows to 0.0:
// deliberate.
void normal_2chan_rn(const RideRequest& request, const FilteredTracks& tracks,
                     const RideTrack& track) {
    const TrackStatistics ptrn = ptrn_of_stretch(request, tracks, tracks.settings.iBeginElemIdx,
                                                 tracks.settings.iEndElemIdx);
    track.xOutput.front() = ride_number(root_mean_square(ptrn.left, ptrn.right));
}

// A hole repeats the length of the segment before it, unlike in segmented_pi, and a segment whose
// PTRN is exactly zero becomes a hole rather than a 5.0: both deliberate.
ReturnCode segmented_2chan_rn(const RideRequest& request, const FilteredTracks& tracks,
                              const RideTrack& track) {
    SegmentWalk walk(request.iNumSegmentPoints, tracks.settings, tracks.left.size());
    TrackStatistics ptrn{};
    for (std::size_t k = 0; k < request.iNumSegmentPoints.size(); ++k) {
        const Segment segment = walk.next();
        if (segment.kind == SegmentKind::beyond_array) {
            return raise_failure(segment_beyond_array, name, vialto_code_request);
        }
        ptrn = segment.kind == SegmentKind::of_samples
                   ? ptrn_of_stretch(request, tracks, segment.first, segment.last)
                   : TrackStatistics{0.0F, 0.0F, ptrn.actual};
        track.xOutput[k] = ptrn.left > 0.0F || ptrn.right > 0.0F
                               ? root_mean_square(ptrn.left, ptrn.right)
                               : hole_value;
        track.xSegLength[k] = segment_length(ptrn.actual, request.xStepSize);
    }
    for (float& value : track.xOutput) {
        value = value > 0.0F ? ride_number(value) : hole_value;
    }
    return success;
}

// Both terms of the mean are the left track's: deliberate.
ReturnCode continuous_2chan_rn(const RideRequest& request, FilteredTracks& tracks,
                               std::span<float> xOutput) {
    const tFiltCon& settings = tracks.settings;
    if (moving_statistic(tracks.left, request.xStepSize, request.xBaseLength,
                         settings.xPowerWeighting, xOutput) != success) {
        return pass_failure("continuous_2chan_rn");
    }
    for (float& value : xOutput) {
        value = ride_number(root_mean_square(value, value));
    }
    // The first sample goes always, and of a statistic that is not smoothed what lies behind the
    // filtered slopes: deliberate.
    const bool smoothed = is_smoothed(request.xBaseLength, request.xStepSize);
    const std::ptrdiff_t valid = smoothed ? std::ssize(xOutput) : settings.iEndElemIdx + 1;
    std::fill_n(xOutput.begin(), std::min(xOutput.size(), std::size_t{1}), 0.0F);
    std::fill(xOutput.begin() + valid, xOutput.end(), 0.0F);
    return success;
}

} // namespace

ReturnCode twochan_rn(const RideRequest& request, const RideTrack& left,
                      std::span<const float> right) {
    // In the continuous report the right track has no influence, and its filters could fail only
    // where the left track's have failed before: what they refuse are settings and lengths.
    const bool filters_right = request.i_reptype != continuous_report;
    const std::size_t count = right.size();
    std::vector<float> slopes(filters_right ? 2 * count : count); // one block, as in compute_iri
    std::array<QuarterCarTrack, most_tracks> filtered{
        {{left.xDataArray, std::span(slopes).first(count)},
         {right, std::span(slopes).last(count)}}};
    FilteredTracks tracks{.settings = quarter_car_settings(idx_ridests_RN, request.if250mmFilter),
                          .left = filtered[0].xFiltered,
                          .right = filtered[1].xFiltered};
    if (filtcon_drv(std::span(filtered).first(filters_right ? 2 : 1), request.xStepSize,
                    tracks.settings) != success) {
        return pass_failure(name);
    }
    switch (request.i_reptype) {
    case normal_report:
        normal_2chan_rn(request, tracks, left);
        return success;
    case segmented_report:
        return segmented_2chan_rn(request, tracks, left);
    case continuous_report:
        return continuous_2chan_rn(request, tracks, left.xOutput) == success ? success
                                                                             : pass_failure(name);
    default:
        return raise_failure("undefined ride index report type", name, vialto_code_request);
    }
}

} // namespace vialto
