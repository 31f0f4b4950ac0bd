// Agreement with a reference profile, as an IRI filter sees both.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>

#include "report.hpp"

namespace {

struct Comparison {
    tProfAnalysis analysis;
    std::vector<float> offsets; // m
    std::vector<float> coefficients;
};

tProfinfo whole_profile(const Road& road) {
    tProfinfo info{};
    info.i_raw_leadin = 0;
    info.i_raw_leadout = road.samples() - 1;
    info.x_sampleinterval = road.interval;
    info.tFilter.iMainFilterType = idx_filttyp_IRI;
    info.tFilter.iOutType = idx_filtouttyp_slope;
    info.tFilter.if250mmFilter = if250mm_filter(road);
    return info;
}

Comparison compare(const Road& reference, const Road& road, std::size_t track, float max_offset) {
    Comparison result{};
    result.analysis.if_outputfilt = vialto_no;
    result.analysis.if_padding = vialto_no; // which for this switch means: as it stands
    result.analysis.if_upsampling = vialto_yes;
    result.analysis.x_offset_max = max_offset;
    std::array<tProfinfo, 2> profiles{whole_profile(reference), whole_profile(road)};

    std::int32_t points = 0;
    vialto::call(CC_CoeffArray, &points, &result.analysis, profiles.data());
    result.coefficients.resize(static_cast<std::size_t>(points));
    result.offsets.resize(static_cast<std::size_t>(points));
    std::vector<float> unused_reference(reference.tracks[track].elevation.size());
    std::vector<float> unused_test(road.tracks[track].elevation.size());
    vialto::call(ccfunc, reference.samples(), road.samples(), points,
                 reference.tracks[track].elevation.data(), road.tracks[track].elevation.data(),
                 &result.analysis, profiles.data(), result.coefficients.data(),
                 result.offsets.data(), unused_reference.data(), unused_test.data());
    return result;
}

} // namespace

void report_comparison(const Options& options, const Road& road) {
    if (options.reference.empty()) {
        return;
    }
    const Road reference = read_road(options.reference);
    std::printf("\nAgreement with %s\n", options.reference.c_str());
    std::printf("                     offset  agreement   shape  amplitude   IRI reference"
                "       test\n");
    std::printf("                          m          %%       %%      ratio            m/km"
                "       m/km\n");
    const std::size_t tracks = std::min(reference.tracks.size(), road.tracks.size());
    for (std::size_t track = 0; track < tracks; ++track) {
        const Comparison result = compare(reference, road, track, options.max_offset);
        const tProfAnalysis& best = result.analysis;
        std::printf(
            "  %-16s %8.3f %10.1f %7.1f %10.3f %15.2f %10.2f\n", road.tracks[track].name.c_str(),
            static_cast<double>(best.x_opt_offset), static_cast<double>(best.x_opt_finalcc),
            static_cast<double>(best.x_opt_roughcc), static_cast<double>(best.x_opt_shapefactor),
            1000.0 * static_cast<double>(best.x_ref_iri),
            1000.0 * static_cast<double>(best.x_test_iri));
    }
}
