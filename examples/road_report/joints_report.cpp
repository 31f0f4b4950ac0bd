// Joints, cracks and faulting of a concrete pavement.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>

#include "report.hpp"

namespace {

constexpr float joint_window = 100.0F; // mm to either side of a joint that belong to no slab

// The features of one track; `fault` is not a number where one lies too near an end of the road.
struct Features {
    std::vector<std::int32_t> type; // idx_jnttyp_...
    std::vector<double> location;   // m
    std::vector<float> fault;       // mm

    explicit Features(const Road& road)
        : type(road.tracks.front().elevation.size()), location(type.size()) {}
};

// Cuts the arrays off behind the last feature.
void drop_unused(Features& features) {
    const auto last = std::find(features.type.begin(), features.type.end(), idx_jnttyp_none);
    features.location.resize(static_cast<std::size_t>(last - features.type.begin()));
    features.type.resize(features.location.size());
}

void measure_faults(const Road& road, const Track& track, Features& features) {
    std::vector<float> millimetres = track.elevation;
    for (float& elevation : millimetres) {
        elevation *= 1000.0F;
    }
    features.fault.assign(features.location.size(), std::numeric_limits<float>::quiet_NaN());
    vialto::call(joint_fault_dlldrv, road.samples(),
                 static_cast<std::int32_t>(features.location.size()), road.interval, joint_window,
                 millimetres.data(), features.location.data(), features.fault.data());
}

void print_features(const Track& track, const Features& features) {
    const auto cracks = std::count(features.type.begin(), features.type.end(), idx_jnttyp_crack);
    std::printf("  %s: %d joints, %d cracks\n", track.name.c_str(),
                static_cast<int>(features.type.size()) - static_cast<int>(cracks),
                static_cast<int>(cracks));
    std::printf("         at m   feature   fault mm\n");
    for (std::size_t k = 0; k < features.type.size(); ++k) {
        std::printf("    %9.3f   %-7s", features.location[k],
                    features.type[k] == idx_jnttyp_crack ? "crack" : "joint");
        if (std::isnan(features.fault[k])) {
            std::printf("   %8s\n", "near end");
        } else {
            std::printf("   %8.2f\n", static_cast<double>(features.fault[k]));
        }
    }
}

// How the faults are distributed, from below -4 mm to above 4 mm.
void print_distribution(const Features& features) {
    constexpr std::array<const char*, 6> classes{"below -4 mm", "-4 to -2 mm", "-2 to 0 mm",
                                                 "0 to 2 mm",   "2 to 4 mm",   "above 4 mm"};
    std::vector<std::int32_t> mask;
    for (const float fault : features.fault) {
        mask.push_back(std::isnan(fault) ? 1 : 0);
    }
    if (std::find(mask.begin(), mask.end(), 0) == mask.end()) {
        return;
    }
    std::array<float, classes.size()> percentages{};
    float above = 0.0F;
    vialto::call(histgrm_dlldrv, vialto_yes, static_cast<std::int32_t>(classes.size()),
                 static_cast<std::int32_t>(mask.size()), -4.0F, 4.0F, 2.0F, 0.0F,
                 features.fault.data(), mask.data(), percentages.data(), &above);
    for (std::size_t k = 0; k < classes.size(); ++k) {
        std::printf("    %-11s %7.1f %%\n", classes[k], static_cast<double>(percentages[k]));
    }
}

} // namespace

void report_joints(const Options& options, const Road& road) {
    if (options.joint_method == 0) {
        return;
    }
    // A road of one track stands on both sides.
    const Track& left_track = road.tracks.front();
    const Track& right_track = road.tracks.back();
    Features left(road);
    Features right(road);
    const tJointIDCfg settings{options.joint_method, vialto_no, options.joint_spacing};
    vialto::call(joint_id_dlldrv, &settings, road.interval, road.samples(),
                 left_track.elevation.data(), right_track.elevation.data(), left.type.data(),
                 right.type.data(), left.location.data(), right.location.data());

    std::printf("\nJoints, slabs of %.4g m; a fault is positive where the slab behind is higher\n",
                static_cast<double>(options.joint_spacing));
    for (const Track& track : road.tracks) {
        Features& features = &track == &left_track ? left : right;
        drop_unused(features);
        measure_faults(road, track, features);
        print_features(track, features);
        print_distribution(features);
    }
}
