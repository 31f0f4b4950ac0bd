#include "report.hpp"

#include <cstdio>
#include <stdexcept>
#include <string>

namespace {

constexpr float longest_smoothed_interval = 0.167F; // m

std::string unpadded(const char (&text)[vialto_text_length]) {
    const std::string padded(text, sizeof text);
    return padded.substr(0, padded.find_last_not_of(' ') + 1);
}

} // namespace

void require_success(std::int32_t result, const tEvent& event) {
    if (result != vialto_success) {
        throw std::runtime_error(unpadded(event.description) + " (" + unpadded(event.routine) +
                                 ", code " + std::to_string(event.error_code) + ")");
    }
}

std::int32_t if250mm_filter(const Road& road) {
    return road.interval < longest_smoothed_interval ? vialto_yes : vialto_no;
}

void report_road(const Options& options, const Road& road) {
    std::printf("Road profile        %s\n", options.profile.c_str());
    std::printf("  length            %.3f m\n", road.length());
    std::printf("  sample interval   %.4g m\n", static_cast<double>(road.interval));
    std::printf("  samples           %d a track\n", static_cast<int>(road.samples()));
}
