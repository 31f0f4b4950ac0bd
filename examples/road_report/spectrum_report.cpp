// The slope spectrum of a road, as a table.
#include <cstddef>
#include <cstdio>

#include "report.hpp"
#include "table.hpp"

namespace {

constexpr std::int32_t points_per_octave = 12;

Curve slope_spectrum(const Road& road, const Track& track) {
    const std::int32_t samples = road.samples();
    Curve spectrum{track.name, std::vector<float>(track.elevation.size()),
                   std::vector<float>(track.elevation.size())};
    std::int32_t first = 0;
    std::int32_t last = 0;
    vialto::call(psd_dll, 0, samples - 1, idx_psdtyp_slope, idx_psdband_octave, points_per_octave,
                 0.0F, samples, road.interval, track.elevation.data(), spectrum.x.data(),
                 spectrum.y.data(), &first, &last);
    for (std::vector<float>* column : {&spectrum.x, &spectrum.y}) {
        column->resize(static_cast<std::size_t>(last + 1));
        column->erase(column->begin(), column->begin() + first);
    }
    return spectrum;
}

} // namespace

void report_spectrum(const Options& options, const Road& road) {
    if (options.psd.empty()) {
        return;
    }
    std::vector<Curve> spectra;
    for (const Track& track : road.tracks) {
        spectra.push_back(slope_spectrum(road, track));
    }
    write_table(options.psd, "frequency_cycles_per_m", "_m", spectra);
    std::printf("\nSlope spectrum, %d points per octave\n", static_cast<int>(points_per_octave));
    std::printf("  table             %s\n", options.psd.c_str());
}
