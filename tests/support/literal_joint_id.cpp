#include "support/literal_joint_id.hpp"

#include <algorithm>
#include <cmath>
#include <functional>

#include "comparison/norm_cal.hpp"
#include "filters/filtcon.hpp"
#include "joints/joint_loc_screen.hpp"
#include "spectra/rolling_straightedge.hpp"

namespace vialto::test {
namespace {

using Profile = std::vector<float>;

// Element i of an array, counted from 1.
template <class Array>
auto& at(Array& array, int i) {
    return array[static_cast<std::size_t>(i - 1)];
}

// Where a method looks for values above its threshold, and where such a value puts a feature.
struct Search {
    Profile trace;
    float threshold;
    int margin;           // samples left out at either end
    double shift;         // samples from the value to the feature
    double closest = 0.5; // m from the feature before it
};

Search search_of(int method, const Profile& p, float step) {
    Profile trace(p.size());
    if (method == 1) {
        for (int i = 1; i < static_cast<int>(p.size()); ++i) {
            at(trace, i) = std::fabs(at(p, i + 1) - at(p, i));
        }
        return {trace, 0.002032F, 0, 0.5, 0.9143999814987183};
    }
    tFiltCon filter{};
    filter.iMainFilterType = method == 3 ? 5 : 1;
    filter.iSubFilterType = method == 3 ? 2 : 1;
    filter.iOutType = 1;
    filter.xLongWavelength = 50.0F;
    filter.xShortWavelength = 0.25F;
    Profile filtered(p.size());
    (void)filtcon_drv(p, step, filter, filtered);
    const int quarter = static_cast<int>(0.25F / step);
    float unused = 0.0F;
    if (method == 3) {
        (void)norm_cal(quarter, filtered, unused);
        // Upside down, so that its spikes lie above a threshold, too.
        std::transform(filtered.begin(), filtered.end(), trace.begin(), std::negate<float>{});
        return {trace, 4.0F, quarter, static_cast<double>(quarter / 2)};
    }
    std::int32_t first = 0;
    std::int32_t last = 0;
    (void)rse_drv(step, 3.0F, filtered, trace, unused, first, last);
    for (float& deflection : trace) {
        deflection = std::fabs(deflection);
    }
    return {trace, 0.003F, static_cast<int>((3.0F / step) * 0.5F), static_cast<double>(-quarter)};
}

// The number of features of one track; 0 where methods 3 and 4 find none and fail.
int features(const tJointIDCfg& settings, const Profile& p, float step, float multi,
             JointTrackResult& track) {
    auto& [types, locations] = track;
    const int method = settings.i_jntid_method;
    const Search search = search_of(method, p, step);
    const int n = static_cast<int>(p.size());
    int count = 0;
    for (int i = search.margin + 1; i <= n - search.margin; ++i) {
        const float v = at(search.trace, i);
        if (v > search.threshold * multi) {
            count = count + 1;
            const double pos = std::min<double>(i + search.shift, n);
            at(locations, count) = (pos < 0.0 ? 1.0 : pos) * static_cast<double>(step);
            at(types, count) = 1;
            if (count > 1 && at(locations, count) - at(locations, count - 1) < search.closest) {
                if (method != 1 && v > at(search.trace, count)) {
                    at(locations, count - 1) = at(locations, count);
                } else {
                    at(types, count) = 0;
                    at(locations, count) = -1.0;
                }
                count = count - 1;
            }
        }
    }
    if (count == 0 && method != 1) {
        return 0;
    }
    auto kept = static_cast<std::int32_t>(count);
    joint_loc_screen(true, settings, kept, types, locations);
    return static_cast<int>(kept);
}

} // namespace

bool literal_joint_id(const tJointIDCfg& settings, float step, const Profile& left_profile,
                      const Profile& right_profile, JointTrackResult& left,
                      JointTrackResult& right) {
    const float length = static_cast<float>(left_profile.size()) * step;
    const float expected = std::trunc(length / settings.xDomJointSpacing);
    float multi = 1.0F;
    int left_count = 0;
    int right_count = 0;
    for (int pass = 0; pass < 20 && !(static_cast<float>(right_count) / expected > 0.9F); ++pass) {
        left_count = features(settings, left_profile, step, multi, left);
        right_count = left_count == 0 ? 0 : features(settings, right_profile, step, multi, right);
        if (right_count == 0) {
            return false;
        }
        multi = multi - 0.05263158F;
    }
    std::fill(left.types.begin() + left_count, left.types.end(), 0);
    std::fill(right.types.begin() + right_count, right.types.end(), 0);
    return true;
}

} // namespace vialto::test
