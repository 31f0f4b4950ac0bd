// A filter over a road, as filtcon_drv runs it.
#pragma once

#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "filters/filtcon.hpp"
#include "support/current_event.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

using Road = std::vector<float>;

inline constexpr float nan = std::numeric_limits<float>::quiet_NaN();
inline constexpr float untouched_sample = -7.5F;
inline constexpr std::int32_t untouched_index = -9;

inline constexpr std::int32_t average = idx_filttyp_mvgavg;
inline constexpr std::int32_t iri = idx_filttyp_IRI;
inline constexpr std::int32_t butterworth = idx_filttyp_bwfilt;
inline constexpr std::int32_t smooth = idx_filttyp_antismooth;
inline constexpr std::int32_t line = idx_filttyp_detrend;
inline constexpr std::int32_t bridge = idx_filttyp_bridge;
inline constexpr std::int32_t band = idx_subfilttyp_bandpass;
inline constexpr std::int32_t low = idx_subfilttyp_lowpass;
inline constexpr std::int32_t high = idx_subfilttyp_highpass;
inline constexpr std::int32_t centred = idx_subfilttyp_centredband;

struct Filter {
    std::int32_t main_type;
    std::int32_t sub_type = idx_subfilttyp_none;
    float longest = 9.0F; // in intervals, as is the next
    float shortest = 9.0F;
    std::int32_t out_type = idx_filtouttyp_elevation;
    std::int32_t if250mmFilter = vialto_yes;
    float interval = 0.125F; // m
};

inline std::ostream& operator<<(std::ostream& text, const Filter& f) {
    return text << "filter " << f.main_type << " of sub-type " << f.sub_type << ", output "
                << f.out_type << ", lengths of " << f.longest << " and " << f.shortest
                << " intervals of " << f.interval << " m, 250 mm filter " << f.if250mmFilter;
}

struct FilterRun {
    Road y;
    float statistic = untouched_sample;
    std::int32_t begin = untouched_index;
    std::int32_t end = untouched_index;
    std::string event; // of a failure

    FilterRun(const Road& profile, const Filter& f) : y(profile.size(), untouched_sample) {
        const float longest = f.longest * f.interval;
        const float shortest = f.shortest * f.interval;
        tFiltCon record{f.main_type, f.sub_type, f.out_type, f.if250mmFilter, 0.0F, longest,
                        shortest,    70.0F,      0.0F,       begin,           end};
        reset_event();
        (void)filtcon_drv(profile, f.interval, record, y, statistic);
        begin = record.iBeginElemIdx;
        end = record.iEndElemIdx;
        event = summary_of_current_event();
    }
};

} // namespace vialto::test
