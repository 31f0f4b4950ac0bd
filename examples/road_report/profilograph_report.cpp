// The road as a profilograph sees it: the profile index of its lots, and what must be corrected.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

#include "report.hpp"

namespace {

constexpr double inches_per_mile_at_mm_per_km = 0.06336;
constexpr float lot_length = 100.0F;      // m
constexpr float band_tenth_inch = 2.54F;  // mm
constexpr float must_correct = 7.62F;     // mm; 0.3 inch
constexpr float narrowest_scallop = 0.6F; // m
constexpr float rounding_step = 1.27F;    // mm; 0.05 inch

// Twelve wheels, in two groups at the ends of a beam of 25 feet; distances from its middle in m.
constexpr std::array<float, 6> wheel_offsets{1.905F, 2.286F, 2.667F, 3.048F, 3.429F, 3.81F};

// The trace in millimetres and its valid range.
struct Trace {
    std::vector<float> height;
    std::int32_t first = 0;
    std::int32_t last = 0;
};

struct ProfileIndex {
    std::vector<tPGLot> lots;
    std::vector<tPGDefect> defects;
};

Trace roll(const Track& track, float interval) {
    std::vector<float> profile(track.elevation.size());
    std::transform(track.elevation.begin(), track.elevation.end(), profile.begin(),
                   [](float elevation) { return 1000.0F * elevation; });
    const auto count = static_cast<std::int32_t>(profile.size());
    Trace trace;
    trace.height.resize(profile.size());
    vialto::call(pgfilt_dll, 0, count - 1, interval,
                 static_cast<std::int32_t>(wheel_offsets.size()), count, wheel_offsets.data(),
                 profile.data(), trace.height.data(), &trace.first, &trace.last);
    return trace;
}

// Lots of 100 m, and what is left over as the last one.
std::vector<tPGLot> divide(const Trace& trace, float interval) {
    const auto samples = std::max(2, static_cast<std::int32_t>(std::lround(lot_length / interval)));
    std::vector<tPGLot> lots;
    for (std::int32_t start = trace.first; start < trace.last; start += samples) {
        tPGLot lot{};
        lot.iStart = start;
        lot.iEnd = std::min(start + samples - 1, trace.last);
        lots.push_back(lot);
    }
    return lots;
}

// Scallops of 0.6 m (2 ft) and more, in steps of 1.27 mm (0.05 inch).
ProfileIndex evaluate(const Trace& trace, float interval, float band, float lowest_scallop) {
    std::array<float, idx_pgset_count> settings{};
    settings[idx_pgset_BlankingBand] = band;
    settings[idx_pgset_MinScallopWidth] = narrowest_scallop;
    settings[idx_pgset_MinScallopHeight] = lowest_scallop;
    settings[idx_pgset_ScallopRound] = rounding_step;
    ProfileIndex result{divide(trace, interval), std::vector<tPGDefect>(vialto_i_PG_maxdefects)};
    std::int32_t defects = 0;
    const std::int32_t no_bumps = 0;
    vialto::call(pgindex_dll, trace.first, trace.last, interval, settings.data(),
                 static_cast<std::int32_t>(trace.height.size()), trace.height.data(),
                 static_cast<std::int32_t>(result.lots.size()), result.lots.data(), &defects,
                 result.defects.data(), &no_bumps, nullptr);
    result.defects.resize(static_cast<std::size_t>(defects));
    return result;
}

void print_index(const tPGLot& lot) {
    const double mm_per_km = 1000.0 * static_cast<double>(lot.RndPI);
    std::printf("  %8.1f %8.1f", mm_per_km, inches_per_mile_at_mm_per_km * mm_per_km);
}

void report_lots(const Trace& trace, float interval) {
    constexpr float lowest_counted = 0.889F; // mm; 0.035 inch
    const ProfileIndex banded = evaluate(trace, interval, band_tenth_inch, lowest_counted);
    const ProfileIndex bandless = evaluate(trace, interval, 0.0F, lowest_counted);
    std::printf("  profile index          0.1 inch band      zero band\n"
                "    from m     to m     mm/km    in/mi     mm/km    in/mi\n");
    for (std::size_t k = 0; k < banded.lots.size(); ++k) {
        const tPGLot& lot = banded.lots[k];
        std::printf("  %8.2f %8.2f", static_cast<double>(interval) * lot.iStart,
                    static_cast<double>(interval) * lot.iEnd);
        print_index(lot);
        print_index(bandless.lots[k]);
        std::printf("\n");
    }
}

void report_must_correct(const Trace& trace, float interval) {
    const ProfileIndex high = evaluate(trace, interval, 0.0F, must_correct);
    std::printf("  must-correct bumps and dips, 7.62 mm (0.3 inch) and more off the trend\n");
    if (high.defects.empty()) {
        std::printf("    none\n");
        return;
    }
    std::printf("    from m     to m        mm\n");
    for (const tPGDefect& defect : high.defects) {
        std::printf("  %8.2f %8.2f  %8.2f  %s\n", static_cast<double>(defect.BeginX),
                    static_cast<double>(defect.EndX), static_cast<double>(defect.MxHts),
                    defect.Type == idx_pgdefect_above ? "bump" : "dip");
    }
}

} // namespace

void report_profilograph(const Options& options, const Road& road) {
    if (!options.profilograph) {
        return;
    }
    for (const Track& track : road.tracks) {
        std::printf("\nProfilograph, %s\n", track.name.c_str());
        const Trace trace = roll(track, road.interval);
        report_lots(trace, road.interval);
        report_must_correct(trace, road.interval);
    }
}
