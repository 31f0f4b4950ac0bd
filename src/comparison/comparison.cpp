#include "comparison/comparison.hpp"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>
#include <vector>

#include "comparison/preparation.hpp"
#include "numeric/rounding.hpp"
#include "numeric/units.hpp"
#include "ride/ride_drv.hpp"

namespace vialto {

namespace {

constexpr float unreached_coefficient = -999.0F;
constexpr float unreached_offset = 999.0F; // m

void mark_unreached(const SweepArrays& arrays) {
    for (const std::span<float> array : {arrays.final_cc, arrays.roughness, arrays.shape}) {
        std::fill(array.begin(), array.end(), unreached_coefficient);
    }
    std::fill(arrays.offset.begin(), arrays.offset.end(), unreached_offset);
}

// Resamples what the preparation left of a profile.
ReturnCode resample_trimmed(std::span<const float> filtered, const tProfinfo& info, float step,
                            std::vector<float>& room, PreparedProfile& resampled) {
    const auto count = static_cast<std::size_t>(std::int64_t{info.i_filt_leadout} + 1);
    return resampling(filtered.first(count), info.x_sampleinterval, step, room, resampled);
}

// The ride index of the section of interest of the raw profile [m/m].
ReturnCode section_iri(const HostProfile& profile, float& xRideIndex) {
    const tProfinfo& info = profile.info;
    const std::int64_t count =
        std::int64_t{info.i_raw_leadout} - std::int64_t{info.i_raw_leadin} + 1;
    const std::span<const float> section =
        count > 0 ? profile.raw.subspan(static_cast<std::size_t>(info.i_raw_leadin),
                                        static_cast<std::size_t>(count))
                  : std::span<const float>{};
    // Nothing is left out, so that no exclusion flag is read.
    return ride_drv(vialto_no, info.tFilter.if250mmFilter, idx_ridests_IRI, section, {},
                    info.x_sampleinterval, xRideIndex);
}

} // namespace

ReturnCode cc_coefarr(std::int32_t& iCroxCorrPoints, tProfAnalysis& analysis,
                      const tProfinfo& reference, const tProfinfo& test) {
    const float step = comparison_step(analysis.if_upsampling, reference, test);
    analysis.x_normsampleinterval = step;
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max(); // odd, as every count
    const std::int64_t count = 2 * std::int64_t{nint(analysis.x_offset_max / step)} + 1;
    iCroxCorrPoints = static_cast<std::int32_t>(std::clamp(count, -most, most));
    return success;
}

ReturnCode cc_cal(const HostProfile& reference, const HostProfile& test, tProfAnalysis& analysis,
                  const SweepArrays& sweep, SweepOptimum& optimum) {
    constexpr std::string_view name = "cc_cal";
    mark_unreached(sweep);

    std::vector<float> reference_filtered;
    std::vector<float> test_filtered;
    if (prefiltering(reference.raw, analysis.if_padding, reference.info, reference_filtered) !=
            success ||
        prefiltering(test.raw, analysis.if_padding, test.info, test_filtered) != success) {
        return pass_failure(name);
    }
    if (analysis.if_outputfilt == vialto_yes) {
        std::copy(reference_filtered.begin(), reference_filtered.end(), reference.filtered.begin());
        std::copy(test_filtered.begin(), test_filtered.end(), test.filtered.begin());
    }

    // Deliberately not the step in the analysis record, which only labels the offsets.
    const float step = comparison_step(analysis.if_upsampling, reference.info, test.info);
    std::vector<float> reference_room;
    std::vector<float> test_room;
    ProfilePair prepared;
    if (resample_trimmed(reference_filtered, reference.info, step, reference_room,
                         prepared.reference) != success ||
        resample_trimmed(test_filtered, test.info, step, test_room, prepared.test) != success ||
        cc_sweep(prepared, analysis.x_normsampleinterval, analysis.x_offset_max, sweep, optimum) !=
            success) {
        return pass_failure(name);
    }
    analysis.iIndexMaxCorr = optimum.index;
    return success;
}

ReturnCode compare_profiles(const HostProfile& reference, const HostProfile& test,
                            tProfAnalysis& analysis, const SweepArrays& sweep) {
    SweepOptimum optimum;
    float reference_iri = 0.0F;
    float test_iri = 0.0F;
    if (cc_cal(reference, test, analysis, sweep, optimum) != success ||
        section_iri(reference, reference_iri) != success ||
        section_iri(test, test_iri) != success) {
        return failure;
    }
    analysis.x_opt_finalcc = optimum.final_cc;
    analysis.x_opt_shapefactor = optimum.shape;
    analysis.x_opt_roughcc = optimum.roughness;
    analysis.x_opt_offset = optimum.offset;
    analysis.x_ref_iri = reference_iri;
    analysis.x_test_iri = test_iri;
    // A reference index of 0 divides by zero: deliberate.
    analysis.x_iri_diff = (test_iri - reference_iri) / reference_iri * percent;
    return success;
}

} // namespace vialto
