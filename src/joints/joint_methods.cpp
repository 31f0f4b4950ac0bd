#include "joints/joint_methods.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>

#include "comparison/norm_cal.hpp"
#include "filters/filtcon.hpp"
#include "joints/joint_loc_screen.hpp"
#include "numeric/rounding.hpp"
#include "spectra/rolling_straightedge.hpp"

namespace vialto {

namespace {

constexpr float step_threshold = 0.002032F;          // m
constexpr float curledge_threshold = 0.003F;         // m
constexpr float antismooth_threshold = -4.0F;        // root mean squares
constexpr double closest_steps = 0.9143999814987183; // m; 3 feet in 32-bit
constexpr double closest_spikes = 0.5;               // m
constexpr float straightedge_length = 3.0F;          // m
constexpr float curledge_long_wavelength = 50.0F;    // m
constexpr float short_wavelength = 0.25F;            // m
constexpr double rejected_location = -1.0;

// The features of one pass while they are gathered.
class Features {
public:
    explicit Features(const JointTrack& track) : track_(track) {}

    // Enters a detection behind the features there are, and tells whether it lies nearer to the
    // last of them than `closest`, m.
    [[nodiscard]] bool enter(double location, double closest) {
        track_.iTypes[count_] = idx_jnttyp_joint;
        track_.xLocations[count_] = location;
        ++count_;
        return count_ > 1 && location - track_.xLocations[count_ - 2] < closest;
    }

    // Takes the last detection back.
    void reject() {
        --count_;
        track_.iTypes[count_] = idx_jnttyp_none;
        track_.xLocations[count_] = rejected_location;
    }

    // Lets the last detection take the place of the feature before it.
    void replace_previous() {
        --count_;
        track_.xLocations[count_ - 1] = track_.xLocations[count_];
    }

    [[nodiscard]] std::size_t count() const { return count_; }

private:
    const JointTrack& track_;
    std::size_t count_ = 0;
};

// Searches `trace` from index `margin` (counted from 0) up to the same distance from its end for
// values beyond the threshold, Beyond being greater or less. position(index) is where a value at an
// index, counted from 0, puts the feature, in samples counted from 1. Returns the count.
template <class Beyond, class Position>
std::size_t detect_spikes(const JointTrack& track, std::span<const float> trace,
                          std::int64_t margin, float threshold, float xStepSize,
                          const Beyond& beyond, const Position& position) {
    Features features(track);
    const std::int64_t end = std::ssize(trace) - margin;
    const auto next_beyond = [&](std::int64_t i) {
        const auto is_beyond = [&](float value) { return beyond(value, threshold); };
        const float* const first = trace.data();
        return i < end ? std::find_if(first + i, first + end, is_beyond) - first : end;
    };
    for (std::int64_t i = next_beyond(margin); i < end; i = next_beyond(i + 1)) {
        const float value = trace[static_cast<std::size_t>(i)];
        const double location = static_cast<double>(position(i)) * static_cast<double>(xStepSize);
        if (features.enter(location, closest_spikes)) {
            // The number of the feature serves as index into the trace: deliberate.
            if (beyond(value, trace[features.count() - 1])) {
                features.replace_previous();
            } else {
                features.reject();
            }
        }
    }
    return features.count();
}

void screen(const DetectionPass& pass, std::size_t count, TrackDetection& detection) {
    constexpr bool ifKeepCracks = true;
    detection.count = static_cast<std::int32_t>(count);
    joint_loc_screen(ifKeepCracks, pass.settings, detection.count, detection.track.iTypes,
                     detection.track.xLocations);
}

// The straightedge's deflection of the filtered profile, without its sign.
ReturnCode trace_curled_edges(const JointTrack& track, float xStepSize, std::vector<float>& trace) {
    tFiltCon filter{};
    filter.iMainFilterType = idx_filttyp_mvgavg;
    filter.iSubFilterType = idx_subfilttyp_bandpass;
    filter.iOutType = idx_filtouttyp_elevation;
    filter.xLongWavelength = curledge_long_wavelength;
    filter.xShortWavelength = short_wavelength;
    std::vector<float> filtered(track.xProfile.size());
    if (filtcon_drv(track.xProfile, xStepSize, filter, filtered) != success) {
        return failure;
    }
    trace.resize(filtered.size());
    float unused_summary = 0.0F;
    std::int32_t unused_first = 0;
    std::int32_t unused_last = 0;
    if (rse_drv(xStepSize, straightedge_length, filtered, trace, unused_summary, unused_first,
                unused_last) != success) {
        return failure;
    }
    for (float& deflection : trace) {
        deflection = std::fabs(deflection);
    }
    return success;
}

// The filtered profile with zero mean and unit root mean square between the trims.
ReturnCode trace_spikes(const JointTrack& track, float xStepSize, std::int32_t iTrim,
                        std::vector<float>& trace) {
    tFiltCon filter{};
    filter.iMainFilterType = idx_filttyp_antismooth;
    filter.iSubFilterType = idx_subfilttyp_lowpass;
    filter.iOutType = idx_filtouttyp_elevation;
    filter.xShortWavelength = short_wavelength;
    std::vector<float> filtered(track.xProfile.size());
    if (filtcon_drv(track.xProfile, xStepSize, filter, filtered) != success) {
        return failure;
    }
    float unused_rms = 0.0F;
    if (norm_cal(iTrim, filtered, unused_rms) != success) {
        return failure;
    }
    trace = std::move(filtered);
    return success;
}

} // namespace

ReturnCode joint_id_stepdetect(const DetectionPass& pass, TrackDetection& detection) {
    const float threshold = step_threshold * pass.ThresholdMulti;
    const std::span<const float> p = detection.track.xProfile;
    Features features(detection.track);
    for (std::size_t i = 0; i + 1 < p.size(); ++i) {
        // The place half-way between the two samples, the first counted from 1.
        const double place = static_cast<double>(i + 1) + 0.5;
        if (std::fabs(p[i + 1] - p[i]) > threshold &&
            features.enter(place * static_cast<double>(pass.xStepSize), closest_steps)) {
            features.reject();
        }
    }
    screen(pass, features.count(), detection);
    return success;
}

ReturnCode joint_id_curledge(const DetectionPass& pass, TrackDetection& detection) {
    constexpr std::string_view name = "joint_id_curledge";
    const JointTrack& track = detection.track;
    if (detection.trace.empty() &&
        trace_curled_edges(track, pass.xStepSize, detection.trace) != success) {
        return pass_failure(name);
    }
    const std::int64_t iHalf = truncate((straightedge_length / pass.xStepSize) * 0.5F);
    const std::int64_t iBack = truncate(short_wavelength / pass.xStepSize);
    const std::size_t count =
        detect_spikes(track, detection.trace, iHalf, curledge_threshold * pass.ThresholdMulti,
                      pass.xStepSize, std::greater<float>{}, [&](std::int64_t i) {
                          const std::int64_t position = i + 1 - iBack;
                          return position < 0 ? 1 : position; // 0 stays: the start of the profile
                      });
    if (count == 0) {
        return raise_failure("No joints found using the curled-edge method", name,
                             vialto_code_request);
    }
    screen(pass, count, detection);
    return success;
}

ReturnCode joint_id_antismooth(const DetectionPass& pass, TrackDetection& detection) {
    constexpr std::string_view name = "joint_id_antismooth";
    const JointTrack& track = detection.track;
    const std::int32_t iTrim = truncate(short_wavelength / pass.xStepSize);
    if (detection.trace.empty() &&
        trace_spikes(track, pass.xStepSize, iTrim, detection.trace) != success) {
        return pass_failure(name);
    }
    const auto points = static_cast<std::int64_t>(track.xProfile.size());
    const std::size_t count = detect_spikes(
        track, detection.trace, iTrim, antismooth_threshold * pass.ThresholdMulti, pass.xStepSize,
        std::less<float>{}, [&](std::int64_t i) { return std::min(i + 1 + iTrim / 2, points); });
    if (count == 0) {
        return raise_failure("No joints found using the anti-smooth method", name,
                             vialto_code_request);
    }
    screen(pass, count, detection);
    return success;
}

} // namespace vialto
