// The ride along the road: the moving roughness of each track, as a table and as a picture with the
// segments and a threshold.
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "plot.hpp"
#include "report.hpp"
#include "segments.hpp"

namespace {

constexpr float base_length = 7.62F;          // m; 25 feet
constexpr float acceptable_roughness = 2.68F; // m/km; 170 inches a mile

Curve moving_roughness(const Road& road, const Track& track) {
    Curve curve{track.name, std::vector<float>(track.elevation.size()),
                std::vector<float>(track.elevation.size())};
    vialto::call(ridecon_dlldrv, if250mm_filter(road), road.interval, base_length, idx_ridests_IRI,
                 road.samples(), track.elevation.data(), curve.y.data());
    for (std::size_t i = 0; i < curve.x.size(); ++i) {
        curve.x[i] = static_cast<float>(i) * road.interval;
        curve.y[i] *= 1000.0F; // m/m to m/km
    }
    return curve;
}

Curve steps(const Road& road, const Track& track) {
    const Segments segments = roughness_segments(road, track);
    Curve curve{track.name + ", each 100 m", {}, {}};
    for (std::size_t k = 0; k < segments.index.size(); ++k) {
        curve.x.insert(curve.x.end(), {static_cast<float>(segments.start(k)),
                                       static_cast<float>(segments.end(k))});
        curve.y.insert(curve.y.end(), 2, segments.index[k]);
    }
    return curve;
}

} // namespace

void report_moving_roughness(const Options& options, const Road& road) {
    if (options.continuous.empty() && options.plot.empty()) {
        return;
    }
    std::vector<Curve> curves;
    for (const Track& track : road.tracks) {
        curves.push_back(moving_roughness(road, track));
    }
    std::printf("\nMoving roughness over %.2f m\n", static_cast<double>(base_length));
    for (const Curve& curve : curves) {
        const auto worst = std::max_element(curve.y.begin(), curve.y.end());
        std::printf(
            "  %-16s  at most %.2f m/km, at %.1f m\n", curve.name.c_str(),
            static_cast<double>(*worst),
            static_cast<double>(curve.x[static_cast<std::size_t>(worst - curve.y.begin())]));
    }
    if (!options.continuous.empty()) {
        write_table(options.continuous, "distance_m", "_m_per_km", curves);
        std::printf("  table             %s\n", options.continuous.c_str());
    }
    if (!options.plot.empty()) {
        for (const Track& track : road.tracks) {
            curves.push_back(steps(road, track));
        }
        curves.push_back({"170 in/mi",
                          {0.0F, static_cast<float>(road.length())},
                          {acceptable_roughness, acceptable_roughness}});
        write_plot(options.plot, "Moving roughness", {"distance, m"}, {"roughness, m/km"}, curves);
        std::printf("  picture           %s\n", options.plot.c_str());
    }
}
