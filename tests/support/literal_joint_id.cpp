#include "support/literal_joint_id.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "comparison/norm_cal.hpp"
#include "filters/filtcon.hpp"
#include "spectra/rolling_straightedge.hpp"

namespace vialto::test {

namespace {

// Element i of an array, counted from 1.
template <class Array>
auto& at(Array& array, int i) {
    return array[static_cast<std::size_t>(i - 1)];
}

std::vector<float> filtered(const std::vector<float>& profile, float step, tFiltCon filter) {
    std::vector<float> result(profile.size());
    (void)filtcon_drv(profile, step, filter, result);
    return result;
}

// Enters a detection at `place`, in samples counted from 1. If it lies nearer to the last feature
// than `closest`, it takes that one's place if `wins(the feature's number)`, or is rejected.
template <class Wins>
void enter(double place, float step, double closest, int& count, JointTrackResult& track,
           const Wins& wins) {
    count = count + 1;
    at(track.locations, count) = place * static_cast<double>(step);
    at(track.types, count) = 1;
    if (count > 1 && at(track.locations, count) - at(track.locations, count - 1) < closest) {
        if (wins(count)) {
            at(track.locations, count - 1) = at(track.locations, count);
        } else {
            at(track.types, count) = 0;
            at(track.locations, count) = -1.0;
        }
        count = count - 1;
    }
}

int step_detection(const std::vector<float>& p, float step, float multi, JointTrackResult& track) {
    int count = 0;
    for (int i = 1; i <= static_cast<int>(p.size()) - 1; ++i) {
        if (std::fabs(at(p, i + 1) - at(p, i)) > 0.002032F * multi) {
            enter(i + 0.5, step, 0.9143999814987183, count, track, [](int) { return false; });
        }
    }
    return count;
}

int curled_edges(const std::vector<float>& p, float step, float multi, JointTrackResult& track) {
    const int n = static_cast<int>(p.size());
    tFiltCon filter{};
    filter.iMainFilterType = 1;
    filter.iSubFilterType = 1;
    filter.iOutType = 1;
    filter.xLongWavelength = 50.0F;
    filter.xShortWavelength = 0.25F;
    std::vector<float> trace(p.size());
    float summary = 0.0F;
    std::int32_t first = 0;
    std::int32_t last = 0;
    (void)rse_drv(step, 3.0F, filtered(p, step, filter), trace, summary, first, last);
    const int half = static_cast<int>((3.0F / step) * 0.5F);
    const int back = static_cast<int>(0.25F / step);
    int count = 0;
    for (int i = half + 1; i <= n - half; ++i) {
        const float v = std::fabs(at(trace, i));
        if (v > 0.003F * multi) {
            const int pos = i - back < 0 ? 1 : i - back;
            enter(pos, step, 0.5, count, track,
                  [&](int number) { return v > std::fabs(at(trace, number)); });
        }
    }
    return count;
}

int anti_smoothing(const std::vector<float>& p, float step, float multi, JointTrackResult& track) {
    const int n = static_cast<int>(p.size());
    tFiltCon filter{};
    filter.iMainFilterType = 5;
    filter.iSubFilterType = 2;
    filter.iOutType = 1;
    filter.xShortWavelength = 0.25F;
    const int trim = static_cast<int>(0.25F / step);
    std::vector<float> trace = filtered(p, step, filter);
    float rms = 0.0F;
    (void)norm_cal(trim, trace, rms);
    int count = 0;
    for (int i = trim + 1; i <= n - trim; ++i) {
        const float v = at(trace, i);
        if (v < -4.0F * multi) {
            const int pos = std::min(i + trim / 2, n);
            enter(pos, step, 0.5, count, track, [&](int number) { return at(trace, number) > v; });
        }
    }
    return count;
}

void screen(const tJointIDCfg& settings, int& count, JointTrackResult& track) {
    const double limit = 0.95 * static_cast<double>(settings.xDomJointSpacing);
    at(track.types, 1) = 1;
    double last = at(track.locations, 1);
    for (int k = 2; k <= count; ++k) {
        const bool is_joint = at(track.locations, k) - last > limit;
        at(track.types, k) = is_joint ? 1 : 2;
        last = is_joint ? at(track.locations, k) : last;
    }
    count = std::max(count, 1);
}

// The features of one track; 0 where the method finds none and fails.
int method(const tJointIDCfg& settings, const std::vector<float>& p, float step, float multi,
           JointTrackResult& track) {
    int count = settings.i_jntid_method == 1   ? step_detection(p, step, multi, track)
                : settings.i_jntid_method == 3 ? anti_smoothing(p, step, multi, track)
                                               : curled_edges(p, step, multi, track);
    if (count > 0 || settings.i_jntid_method == 1) {
        screen(settings, count, track);
    }
    return count;
}

} // namespace

bool literal_joint_id(const tJointIDCfg& settings, float step,
                      const std::vector<float>& left_profile,
                      const std::vector<float>& right_profile, JointTrackResult& left,
                      JointTrackResult& right) {
    const float length = static_cast<float>(left_profile.size()) * step;
    const float expected = std::trunc(length / settings.xDomJointSpacing);
    float multi = 1.0F;
    int left_count = 0;
    int right_count = 0;
    for (int pass = 1; pass <= 20; ++pass) {
        left_count = method(settings, left_profile, step, multi, left);
        if (left_count == 0) {
            return false;
        }
        right_count = method(settings, right_profile, step, multi, right);
        if (right_count == 0) {
            return false;
        }
        if (static_cast<float>(right_count) / expected > 0.9F) {
            break;
        }
        multi = multi - 0.05263158F;
    }
    std::fill(left.types.begin() + left_count, left.types.end(), 0);
    std::fill(right.types.begin() + right_count, right.types.end(), 0);
    return true;
}

} // namespace vialto::test
