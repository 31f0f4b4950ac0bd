// One call of filtcon_drv with everything that it leaves behind.
#pragma once

#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "filters/filtcon.hpp"
#include "support/current_event.hpp"

namespace vialto::test {

using Road = std::vector<float>;

inline constexpr float inf = std::numeric_limits<float>::infinity();
inline constexpr float nan = std::numeric_limits<float>::quiet_NaN();
inline constexpr float untouched_sample = -7.5F;

struct Filter {
    std::int32_t main_type;
    std::int32_t sub_type = idx_subfilttyp_none;
    float longest = 9.0F; // in intervals, as is the next
    float shortest = 9.0F;
    std::int32_t out_type = idx_filtouttyp_elevation;
    std::int32_t if250mmFilter = vialto_yes;
    float interval = 0.125F; // m
};

struct FilterRun {
    Road y;
    tFiltCon record{};
    float statistic = untouched_sample;
    std::string event; // empty after a success

    FilterRun(const Road& profile, const Filter& f) : y(profile.size(), untouched_sample) {
        const float longest = f.longest * f.interval;
        const float shortest = f.shortest * f.interval;
        record = {f.main_type, f.sub_type, f.out_type, f.if250mmFilter,
                  0.0F,        longest,    shortest,   70.0F,
                  0.0F,        -9,         -9};
        reset_event();
        (void)filtcon_drv(profile, f.interval, record, y, statistic);
        event = summary_of_current_event();
    }

    // "0 to 2" for the range of the valid elements.
    [[nodiscard]] std::string range() const {
        return std::to_string(record.iBeginElemIdx) + " to " + std::to_string(record.iEndElemIdx);
    }
    // "0 to 2: 1.5 nan 3", after a failure with the event before it; the event alone if nothing
    // was written.
    [[nodiscard]] std::string outcome() const {
        if (range() == "-9 to -9" && y == Road(y.size(), untouched_sample)) {
            return event;
        }
        std::ostringstream text;
        text << event << std::setprecision(9) << (event.empty() ? "" : " ") << range() << ":";
        for (const float value : y) {
            text << " " << (std::isnan(value) ? std::fabs(nan) : value);
        }
        return text.str();
    }
};

} // namespace vialto::test
