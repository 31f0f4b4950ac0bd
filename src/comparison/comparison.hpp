// The comparison of a reference profile with a test profile.
#pragma once

#include <cstdint>
#include <span>

#include "comparison/overlap.hpp"
#include "comparison/sweep.hpp"
#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// The two records of the profiles, as the host passes them.
struct ProfileRecords {
    tProfinfo& reference;
    tProfinfo& test;
};

struct ComparisonOutput {
    SweepArrays sweep;                   // shape and roughness are the library's own
    std::span<float> xDataArrayRefFilt;  // as long as the raw profile; written only if
    std::span<float> xDataArrayTestFilt; // if_outputfilt is 1
};

// The comparison step, in x_normsampleinterval, and the number of offsets to try: one for offset 0
// and as many to either side as x_offset_max holds steps, to the nearest; odd. A negative
// x_offset_max can give a negative number.
ReturnCode cc_coefarr(std::int32_t& iCroxCorrPoints, tProfAnalysis& analysis,
                      const tProfinfo& reference, const tProfinfo& test);

// Prepares both profiles and runs the sweep.
//
// Given: the raw profiles, the switches of the analysis record, and both profile records.
// Returned: the sweep's arrays, first filled with marks (-999.0, the offsets 999.0); iIndexMaxCorr;
// the optimum; i_filt_leadin and i_filt_leadout of each profile that was prepared; and after a
// success, with if_outputfilt 1, the filtered and trimmed profiles.
//
// Fails with the failures of prefiltering, resampling and cc_sweep.
[[nodiscard]] ReturnCode cc_cal(const ProfilePair& raw, tProfAnalysis& analysis,
                                const ProfileRecords& records, const ComparisonOutput& output,
                                SweepOptimum& optimum);

// The whole comparison: cc_cal, the ride index of the raw section of interest of each profile, and
// the results in the analysis record. Fails with the failures of cc_cal and ride_drv, which leave
// the fields from x_opt_finalcc on untouched.
[[nodiscard]] ReturnCode compare_profiles(const ProfilePair& raw, tProfAnalysis& analysis,
                                          const ProfileRecords& records,
                                          const ComparisonOutput& output);

} // namespace vialto
