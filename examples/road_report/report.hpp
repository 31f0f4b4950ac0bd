// The sections of the report. Each calls the library and prints what a road engineer expects.
#pragma once

#include <cstdint>

#include "options.hpp"
#include "road.hpp"
#include "vialto/vialto.hpp"

// A 250 mm moving average belongs ahead of the quarter car where samples lie closer than that.
[[nodiscard]] std::int32_t if250mm_filter(const Road& road);

// The overall index of one track, m/m.
[[nodiscard]] double overall_index(const Road& road, const Track& track, std::int32_t selector);

void report_road(const Options& options, const Road& road);
void report_ride(const Road& road);
void report_moving_roughness(const Options& options, const Road& road);
void report_profilograph(const Options& options, const Road& road);
void report_spectrum(const Options& options, const Road& road);
void report_must_grind(const Options& options, const Road& road);
void report_joints(const Options& options, const Road& road);
void report_comparison(const Options& options, const Road& road);
