// The comparison of a reference profile with a test profile.
#pragma once

#include <cstdint>
#include <span>

#include "comparison/sweep.hpp"
#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// One of the two profiles, as the host passes it.
struct HostProfile {
    std::span<const float> raw;
    tProfinfo& info;
    std::span<float> filtered; // as long as the raw profile; written only if if_outputfilt is 1
};

// The comparison step, in x_normsampleinterval, and the number of offsets to try: one for offset 0
// and as many to either side as x_offset_max holds steps, to the nearest; odd. A negative
// x_offset_max can give a negative number.
ReturnCode cc_coefarr(std::int32_t& iCroxCorrPoints, tProfAnalysis& analysis,
                      const tProfinfo& reference, const tProfinfo& test);

// Prepares both profiles and runs the sweep.
//
// Given: the switches of the analysis record, and both profiles.
// Returned: the sweep's arrays, first filled with marks (-999.0, the offsets 999.0); i_filt_leadin
// and i_filt_leadout of each profile that was prepared; with if_outputfilt 1, as soon as both are
// prepared, the filtered and trimmed profiles; and after a success iIndexMaxCorr and the optimum.
//
// Fails with the failures of prefiltering, resampling and cc_sweep.
[[nodiscard]] ReturnCode cc_cal(const HostProfile& reference, const HostProfile& test,
                                tProfAnalysis& analysis, const SweepArrays& sweep,
                                SweepOptimum& optimum);

// The whole comparison: cc_cal, the ride index of the raw section of interest of each profile, and
// the results in the analysis record. Fails with the failures of cc_cal and ride_drv, which leave
// the fields from x_opt_finalcc on untouched.
[[nodiscard]] ReturnCode compare_profiles(const HostProfile& reference, const HostProfile& test,
                                          tProfAnalysis& analysis, const SweepArrays& sweep);

} // namespace vialto
