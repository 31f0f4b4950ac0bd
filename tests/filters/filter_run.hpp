// One call of filtcon_drv with everything that it leaves behind.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "filters/filtcon.hpp"
#include "support/current_event.hpp"

namespace vialto::test {

inline constexpr std::int32_t untouched_index = -9;
inline constexpr float untouched_sample = -7.5F;

[[nodiscard]] inline tFiltCon filter_settings(std::int32_t main_type, std::int32_t sub_type,
                                              float longest, float shortest,
                                              std::int32_t out_type = idx_filtouttyp_elevation) {
    tFiltCon settings{};
    settings.iMainFilterType = main_type;
    settings.iSubFilterType = sub_type;
    settings.iOutType = out_type;
    settings.xLongWavelength = longest;
    settings.xShortWavelength = shortest;
    settings.iBeginElemIdx = untouched_index;
    settings.iEndElemIdx = untouched_index;
    return settings;
}

struct FilterRun {
    std::vector<float> y;
    std::int32_t begin = untouched_index;
    std::int32_t end = untouched_index;
    float statistic = untouched_sample;
    std::string event; // empty after a success

    FilterRun(const std::vector<float>& profile, float interval, tFiltCon settings)
        : y(profile.size(), untouched_sample) {
        reset_event();
        (void)filtcon_drv(profile, interval, settings, y, statistic);
        begin = settings.iBeginElemIdx;
        end = settings.iEndElemIdx;
        event = summary_of_current_event();
    }

    [[nodiscard]] bool wrote_nothing() const {
        return y == std::vector<float>(y.size(), untouched_sample) && begin == untouched_index &&
               end == untouched_index;
    }
    // Succeeded, with the whole profile valid.
    [[nodiscard]] bool filtered_all() const {
        return event.empty() && begin == 0 && end == static_cast<std::int32_t>(y.size()) - 1;
    }
};

} // namespace vialto::test
