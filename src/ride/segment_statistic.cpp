#include "ride/segment_statistic.hpp"

#include <algorithm>
#include <cstddef>

#include "ride/overall_statistic.hpp"

namespace vialto {

SegmentWalk::SegmentWalk(std::span<const std::int32_t> iNumSegmentPoints, const tFiltCon& filter,
                         std::size_t array_length)
    : counts_(iNumSegmentPoints), position_(filter.iBeginElemIdx), last_valid_(filter.iEndElemIdx),
      array_length_(static_cast<std::int64_t>(array_length)) {}

Segment SegmentWalk::next() {
    const bool is_last = counts_.size() == 1;
    const std::int64_t count = is_last ? last_valid_ - position_ + 1 : counts_.front();
    counts_ = counts_.subspan(1);
    const std::int64_t first = std::max(position_, std::int64_t{0});
    const std::int64_t last = position_ + count - 1;
    position_ = last;
    if (last < first) {
        return {SegmentKind::hole};
    }
    if (last >= array_length_) {
        return {SegmentKind::beyond_array};
    }
    return {SegmentKind::of_samples, static_cast<std::int32_t>(first),
            static_cast<std::int32_t>(last)};
}

float segment_length(std::int32_t actual, float xStepSize) {
    return actual > 0 ? static_cast<float>(actual - 1) * xStepSize : 0.0F;
}

ReturnCode segmented_pi(const RideRequest& request, const tFiltCon& settings,
                        std::span<const float> filtered, const RideTrack& track) {
    SegmentWalk walk(request.iNumSegmentPoints, settings, filtered.size());
    for (std::size_t k = 0; k < request.iNumSegmentPoints.size(); ++k) {
        const Segment segment = walk.next();
        if (segment.kind == SegmentKind::beyond_array) {
            return raise_failure(segment_beyond_array, "segmented_pi", vialto_code_request);
        }
        StretchStatistic statistic{hole_value, 0};
        if (segment.kind == SegmentKind::of_samples) {
            statistic = postproc_pi(filtered, request.iExclusionFlags, request.ifExcludeLeaveout,
                                    segment.first, segment.last, settings.xPowerWeighting);
        }
        track.xOutput[k] = statistic.index;
        track.xSegLength[k] = segment_length(statistic.actual, request.xStepSize);
    }
    return success;
}

} // namespace vialto
