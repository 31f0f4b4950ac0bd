#include "report.hpp"

#include <cstdio>

namespace {

constexpr float longest_smoothed_interval = 0.167F; // m

} // namespace

std::int32_t if250mm_filter(const Road& road) {
    return road.interval < longest_smoothed_interval ? vialto_yes : vialto_no;
}

void report_road(const Options& options, const Road& road) {
    std::printf("Road profile        %s\n", options.profile.c_str());
    std::printf("  length            %.3f m\n", road.length());
    std::printf("  sample interval   %.4g m\n", static_cast<double>(road.interval));
    std::printf("  samples           %d a track\n", static_cast<int>(road.samples()));
}
