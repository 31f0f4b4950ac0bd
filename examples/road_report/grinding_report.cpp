// What a diamond grinder would have to do, and what that would bring.
#include <cstdio>
#include <vector>

#include "report.hpp"

namespace {

// Localized roughness: the IRI over a moving base of 25 feet must not exceed 160 in/mi.
constexpr float slide_base_length = 7.62F;  // m
constexpr float ride_threshold = 0.002525F; // m/m

constexpr tGrinderSetup grinder{.WheelBase = 5.5F,
                                .HeadPosition = 0.5F,
                                .TandemSpread = 0.9F,
                                .ShortWavelength = 0.3F,
                                .MaxGrindingDepth_mm = 8.0F};

std::vector<std::int32_t> must_grind(const Road& road, const Track& track) {
    tMustGrindCfg settings{};
    settings.iRideIndexType = idx_ridests_IRI;
    settings.if250mmFilter = if250mm_filter(road);
    settings.xRideThreshold = ride_threshold;
    settings.xSlideBaseLength = slide_base_length;
    settings.ib_grindopt[0] = settings.ib_grindopt[1] = settings.ib_grindopt[2] = vialto_yes;
    settings.x_grindlength_min = 0.3F;
    settings.x_grindgap_min = 1.0F;
    std::vector<std::int32_t> flags(track.elevation.size());
    vialto::call(mustgrind_dlldrv, road.samples(), road.interval, &settings, &grinder,
                 track.elevation.data(), flags.data());
    return flags;
}

// One pass, level with the wheels, over each stretch of flagged samples.
std::vector<tGrindSpot> spots_of(const std::vector<std::int32_t>& flags) {
    std::vector<tGrindSpot> spots;
    bool inside = false;
    for (std::size_t i = 0; i < flags.size(); ++i) {
        const bool flagged = flags[i] != idx_grindflag_none;
        if (flagged && !inside) {
            tGrindSpot spot{};
            spot.iNumPasses = 1;
            spot.iDirection[0] = idx_grinddir_higher;
            spot.iStart = static_cast<std::int32_t>(i);
            spots.push_back(spot);
        }
        if (flagged) {
            spots.back().iEnd = static_cast<std::int32_t>(i);
        }
        inside = flagged;
    }
    return spots;
}

Track grind(const Road& road, Track track, const std::vector<tGrindSpot>& spots,
            std::vector<std::int32_t>& flags) {
    vialto::call(grindsimu_dlldrv, road.interval, static_cast<std::int32_t>(spots.size()),
                 road.samples(), &grinder, spots.data(), track.elevation.data(), flags.data());
    return track;
}

bool cut_too_deep(const tGrindSpot& spot, const std::vector<std::int32_t>& flags) {
    for (std::int32_t i = spot.iStart; i <= spot.iEnd; ++i) {
        if (flags[static_cast<std::size_t>(i)] == idx_grindflag_deeper) {
            return true;
        }
    }
    return false;
}

} // namespace

void report_must_grind(const Options& options, const Road& road) {
    if (!options.must_grind) {
        return;
    }
    for (const Track& track : road.tracks) {
        std::printf("\nMust grind, %s (IRI over %.2f m above %.3f m/km)\n", track.name.c_str(),
                    static_cast<double>(slide_base_length),
                    1000.0 * static_cast<double>(ride_threshold));
        std::vector<std::int32_t> flags = must_grind(road, track);
        const std::vector<tGrindSpot> spots = spots_of(flags);
        const Track ground = grind(road, track, spots, flags);
        std::printf("     start m  length m\n");
        for (const tGrindSpot& spot : spots) {
            std::printf("  %10.2f  %8.2f%s\n", static_cast<double>(road.interval) * spot.iStart,
                        static_cast<double>(road.interval) * (spot.iEnd - spot.iStart + 1),
                        cut_too_deep(spot, flags) ? "  deeper than 8 mm" : "");
        }
        std::printf("  IRI before %.2f m/km, after %.2f m/km\n",
                    1000.0 * overall_index(road, track, idx_ridests_IRI),
                    1000.0 * overall_index(road, ground, idx_ridests_IRI));
    }
}
