#include "support/literal_joint_id.hpp"

#include <algorithm>
#include <cmath>

#include "comparison/norm_cal.hpp"
#include "filters/filtcon.hpp"
#include "joints/joint_loc_screen.hpp"
#include "spectra/rolling_straightedge.hpp"

namespace vialto::test {
namespace {

using Profile = std::vector<float>;

// What a method searches for values above its threshold, and where such a value puts a feature.
struct Search {
    Profile trace;
    float threshold;
    std::size_t margin;   // samples left out at either end
    double shift;         // samples from the value to the feature
    double closest = 0.5; // m from the feature before it
};

Search search_of(std::int32_t method, const Profile& p, float step) {
    Profile trace(p.size());
    if (method == 1) {
        std::transform(p.begin() + 1, p.end(), p.begin(), trace.begin(), std::minus<float>{});
        return {trace, 0.002032F, 0, 0.5, 0.9143999814987183};
    }
    const bool spikes = method == 3;
    tFiltCon filter{spikes ? 5 : 1, spikes ? 2 : 1, 1, 0, 0, 50.0F, 0.25F, 0, 0, 0, 0};
    (void)filtcon_drv(p, step, filter, trace);
    const auto quarter = static_cast<std::int32_t>(0.25F / step);
    float unused = 0.0F;
    if (spikes) {
        (void)norm_cal(quarter, trace, unused);
        return {trace, 4.0F, static_cast<std::size_t>(quarter), std::trunc(0.5 * quarter)};
    }
    std::int32_t ends[2]{};
    (void)rse_drv(step, 3.0F, Profile(trace), trace, unused, ends[0], ends[1]);
    return {trace, 0.003F, static_cast<std::size_t>((3.0F / step) * 0.5F), -1.0 * quarter};
}

// The number of features of one track; 0 where methods 3 and 4 find none and fail.
std::int32_t features(const tJointIDCfg& settings, const Profile& p, float step, float multi,
                      JointTrackResult& track) {
    auto& [types, locations] = track;
    const bool steps = settings.i_jntid_method == 1;
    const bool spikes = settings.i_jntid_method == 3; // they point downward
    const Search search = search_of(settings.i_jntid_method, p, step);
    const auto value = [&](std::size_t i) {
        return spikes ? -search.trace[i] : std::fabs(search.trace[i]);
    };
    std::size_t count = 0;
    for (std::size_t i = search.margin; i + search.margin < p.size(); ++i) {
        if (const float v = value(i); v > search.threshold * multi) {
            const double place =
                std::min(static_cast<double>(i + 1) + search.shift, static_cast<double>(p.size()));
            locations[count] = (place < 0.0 ? 1.0 : place) * static_cast<double>(step);
            types[count] = 1;
            if (count == 0 || !(locations[count] - locations[count - 1] < search.closest)) {
                ++count;
            } else if (!steps && v > value(count)) {
                locations[count - 1] = locations[count];
            } else {
                types[count] = 0;
                locations[count] = -1.0;
            }
        }
    }
    auto kept = static_cast<std::int32_t>(count);
    if (steps || kept > 0) {
        joint_loc_screen(true, settings, kept, types, locations);
    }
    return kept;
}

} // namespace

bool literal_joint_id(const tJointIDCfg& settings, float step, const Profile& left_profile,
                      const Profile& right_profile, JointTrackResult& left,
                      JointTrackResult& right) {
    const float length = static_cast<float>(left_profile.size()) * step;
    const float expected = std::trunc(length / settings.xDomJointSpacing);
    float multi = 1.0F;
    std::int32_t left_count = 0;
    std::int32_t right_count = 0;
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
