// One call of filtcon_drv with everything that it leaves behind.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "filters/filtcon.hpp"
#include "support/current_event.hpp"

namespace vialto::test {

using Range = std::pair<std::int32_t, std::int32_t>; // first and last valid element

inline constexpr std::int32_t untouched_index = -9;
inline constexpr Range untouched_range{untouched_index, untouched_index};
inline constexpr float untouched_sample = -7.5F;

[[nodiscard]] inline tFiltCon filter_settings(std::int32_t main_type, std::int32_t sub_type,
                                              float longest, float shortest,
                                              std::int32_t out_type = idx_filtouttyp_elevation) {
    tFiltCon settings{};
    settings.iMainFilterType = main_type;
    settings.iSubFilterType = sub_type;
    settings.iOutType = out_type;
    settings.if250mmFilter = vialto_yes;
    settings.xSimuVelocity = 70.0F;
    settings.xLongWavelength = longest;
    settings.xShortWavelength = shortest;
    settings.iBeginElemIdx = untouched_index;
    settings.iEndElemIdx = untouched_index;
    return settings;
}

struct FilterRun {
    std::vector<float> y;
    Range range;
    float statistic = untouched_sample;
    std::string event; // empty after a success

    FilterRun(const std::vector<float>& profile, float interval, tFiltCon settings)
        : y(profile.size(), untouched_sample) {
        reset_event();
        (void)filtcon_drv(profile, interval, settings, y, statistic);
        range = {settings.iBeginElemIdx, settings.iEndElemIdx};
        event = summary_of_current_event();
    }

    [[nodiscard]] bool wrote_nothing() const {
        return y == std::vector<float>(y.size(), untouched_sample) && range == untouched_range;
    }
    // Succeeded, with the whole profile valid.
    [[nodiscard]] bool filtered_all() const {
        return event.empty() && range == Range{0, static_cast<std::int32_t>(y.size()) - 1};
    }
};

} // namespace vialto::test
