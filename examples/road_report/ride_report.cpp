// Roughness and ride of the whole road, and of each 100 m.
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "report.hpp"
#include "segments.hpp"

double overall_index(const Road& road, const Track& track, std::int32_t selector) {
    float index = 0.0F;
    vialto::call(ride_dlldrv, vialto_no, if250mm_filter(road), selector, road.samples(),
                 track.elevation.data(), nullptr, road.interval, &index);
    return static_cast<double>(index);
}

namespace {

constexpr double inches_per_mile = 63360.0;

double index_of_both(const Road& road, std::int32_t selector) {
    float index = 0.0F;
    vialto::call(ride2chan_dlldrv, vialto_no, if250mm_filter(road), selector, road.samples(),
                 road.tracks[0].elevation.data(), road.tracks[1].elevation.data(), nullptr,
                 road.interval, &index);
    return static_cast<double>(index);
}

// The Ride Number of one track from the statistic of its filter.
double ride_number(const Road& road, const Track& track) {
    return 5.0 * std::exp(-160.0 * overall_index(road, track, idx_ridests_RN));
}

void print_indices(const std::string& name, double roughness) {
    std::printf("  %-16s %8.2f  %8.1f", name.c_str(), 1000.0 * roughness,
                inches_per_mile * roughness);
}

void print_segments(const Road& road) {
    std::vector<Segments> columns;
    std::printf("\nRide of each 100 m\n      from m      to m");
    for (const Track& track : road.tracks) {
        columns.push_back(roughness_segments(road, track));
        std::printf("  %8s", track.name.c_str());
    }
    if (road.tracks.size() == 2) {
        columns.push_back(segments_of_both(road, idx_ridests_MRI));
        columns.push_back(segments_of_both(road, idx_ridests_2ChanRN));
        std::printf("       MRI        RN");
    }
    std::printf("\n");
    for (std::size_t k = 0; k < columns[0].index.size(); ++k) {
        std::printf("  %10.2f%10.2f", columns[0].start(k), columns[0].end(k));
        for (const Segments& column : columns) {
            std::printf("  %8.2f", static_cast<double>(column.index[k]));
        }
        std::printf("\n");
    }
}

} // namespace

void report_ride(const Road& road) {
    std::printf("\nInternational Roughness Index and Ride Number\n");
    std::printf("                       m/km     in/mi        RN\n");
    for (const Track& track : road.tracks) {
        print_indices(track.name, overall_index(road, track, idx_ridests_IRI));
        std::printf("  %8.2f\n", ride_number(road, track));
    }
    if (road.tracks.size() == 2) {
        print_indices("half car, HRI", index_of_both(road, idx_ridests_HRI));
        std::printf("\n");
        print_indices("mean, MRI", index_of_both(road, idx_ridests_MRI));
        std::printf("\n  %-16s %28.2f\n", "both tracks, RN",
                    index_of_both(road, idx_ridests_2ChanRN));
    }
    print_segments(road);
}
