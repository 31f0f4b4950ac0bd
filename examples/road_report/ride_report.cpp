// Roughness of the whole road.
#include <cstdio>

#include "report.hpp"

namespace {

constexpr double inches_per_mile = 63360.0;

float overall_index(const Road& road, const Track& track, std::int32_t selector) {
    float index = 0.0F;
    tEvent event;
    require_success(ride_dlldrv(vialto_no, if250mm_filter(road), selector, road.samples(),
                                track.elevation.data(), nullptr, road.interval, &index, &event),
                    event);
    return index;
}

} // namespace

void report_ride(const Road& road) {
    std::printf("\nInternational Roughness Index\n");
    std::printf("                       m/km     in/mi\n");
    for (const Track& track : road.tracks) {
        const double iri = static_cast<double>(overall_index(road, track, idx_ridests_IRI));
        std::printf("  %-16s %8.2f  %8.1f\n", track.name.c_str(), 1000.0 * iri,
                    inches_per_mile * iri);
    }
}
