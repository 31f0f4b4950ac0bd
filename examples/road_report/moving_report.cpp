// The ride along the road: the moving roughness of each track, as a table.
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "report.hpp"
#include "table.hpp"

namespace {

constexpr float base_length = 7.62F; // m; 25 feet

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

} // namespace

void report_moving_roughness(const Options& options, const Road& road) {
    if (options.continuous.empty()) {
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
    write_table(options.continuous, "distance_m", "_m_per_km", curves);
    std::printf("  table             %s\n", options.continuous.c_str());
}
