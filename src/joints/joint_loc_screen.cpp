#include "joints/joint_loc_screen.hpp"

#include <cstddef>

namespace vialto {

void joint_loc_screen(bool ifKeepCracks, const tJointIDCfg& settings, std::int32_t& count,
                      std::span<std::int32_t> types, std::span<double> locations) {
    constexpr double share_of_spacing = 0.95;
    if (types.empty()) {
        return;
    }
    const double limit = share_of_spacing * static_cast<double>(settings.xDomJointSpacing);
    types[0] = idx_jnttyp_joint;
    double last = locations[0];
    // What stays moves up in place, never past the place that is read next.
    std::size_t kept = 1;
    for (std::size_t k = 1; k < static_cast<std::size_t>(count); ++k) {
        const double location = locations[k];
        const bool is_joint = location - last > limit;
        if (is_joint) {
            last = location;
        }
        if (is_joint || ifKeepCracks) {
            types[kept] = is_joint ? idx_jnttyp_joint : idx_jnttyp_crack;
            locations[kept] = location;
            ++kept;
        }
    }
    count = static_cast<std::int32_t>(kept);
}

} // namespace vialto
