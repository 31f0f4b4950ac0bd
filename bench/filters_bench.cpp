#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "filters/filtcon.hpp"
#include "support/host.hpp"
#include "support/literal_filters.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace {

using namespace vialto;

constexpr float interval = 0.025F;     // m
constexpr std::size_t samples = 64374; // a mile

// One filter over a mile. Wavelengths are metres.
void filter(benchmark::State& state, std::int32_t type, std::int32_t sub_type, float longest,
            float shortest, std::int32_t out_type) {
    const auto profile = test::random_road(samples, static_cast<double>(interval), 1);
    std::vector<float> filtered(samples);
    tFiltCon settings{};
    settings.iMainFilterType = type;
    settings.iSubFilterType = sub_type;
    settings.iOutType = out_type;
    settings.if250mmFilter = vialto_yes;
    settings.xLongWavelength = longest;
    settings.xShortWavelength = shortest;
    settings.xSimuVelocity = 80.0F;
    for (auto _ : state) {
        benchmark::DoNotOptimize(filtcon_drv(profile, interval, settings, filtered));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(samples));
}

constexpr std::int32_t elevation = idx_filtouttyp_elevation;
constexpr std::int32_t slope = idx_filtouttyp_slope;

BENCHMARK_CAPTURE(filter, copy, idx_filttyp_none, 0, 0.0F, 0.0F, elevation);
BENCHMARK_CAPTURE(filter, moving_average_low, idx_filttyp_mvgavg, 2, 0.0F, 0.25F, elevation);
BENCHMARK_CAPTURE(filter, moving_average_high, idx_filttyp_mvgavg, 3, 10.0F, 0.0F, elevation);
BENCHMARK_CAPTURE(filter, moving_average_band, idx_filttyp_mvgavg, 1, 10.0F, 0.25F, elevation);
BENCHMARK_CAPTURE(filter, moving_average_slope, idx_filttyp_mvgavg, 2, 0.0F, 0.25F, slope);
BENCHMARK_CAPTURE(filter, quarter_car_iri, idx_filttyp_IRI, 0, 0.0F, 0.0F, slope);
BENCHMARK_CAPTURE(filter, butterworth_high, idx_filttyp_bwfilt, 3, 91.0F, 0.0F, elevation);
BENCHMARK_CAPTURE(filter, butterworth_low, idx_filttyp_bwfilt, 2, 0.0F, 0.3F, elevation);
BENCHMARK_CAPTURE(filter, butterworth_band, idx_filttyp_bwfilt, 1, 91.0F, 0.3F, elevation);
BENCHMARK_CAPTURE(filter, band_pass, idx_filttyp_bwfilt, 4, 30.0F, 1.0F, elevation);
BENCHMARK_CAPTURE(filter, anti_smoothing, idx_filttyp_antismooth, 0, 0.0F, 2.5F, elevation);
BENCHMARK_CAPTURE(filter, bridge_250mm, idx_filttyp_bridge, 0, 0.0F, 0.25F, elevation);
BENCHMARK_CAPTURE(filter, bridge_10m, idx_filttyp_bridge, 0, 0.0F, 10.0F, elevation);
BENCHMARK_CAPTURE(filter, detrending, idx_filttyp_detrend, 0, 0.0F, 0.0F, elevation);

// The plain loops of the tests, for comparison.
void literal_moving_average_low(benchmark::State& state) {
    const auto profile = test::random_road(samples, static_cast<double>(interval), 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(test::literal_moving_average(profile, 10, 5, false));
    }
}
BENCHMARK(literal_moving_average_low);

void literal_moving_average_high(benchmark::State& state) {
    const auto profile = test::random_road(samples, static_cast<double>(interval), 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(test::literal_moving_average(profile, 400, 200, true));
    }
}
BENCHMARK(literal_moving_average_high);

void literal_butterworth_band(benchmark::State& state) {
    const auto profile = test::random_road(samples, static_cast<double>(interval), 1);
    for (auto _ : state) {
        std::vector<double> x(profile.begin(), profile.end());
        x = test::literal_butterworth_high_pass(std::move(x), interval, 91.0F);
        benchmark::DoNotOptimize(test::literal_butterworth_low_pass(std::move(x), interval, 0.3F));
    }
}
BENCHMARK(literal_butterworth_band);

void literal_band_pass(benchmark::State& state) {
    const auto profile = test::random_road(samples, static_cast<double>(interval), 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(test::literal_band_pass_signal(profile, interval, 1.0F, 30.0F));
    }
}
BENCHMARK(literal_band_pass);

void literal_bridge(benchmark::State& state) {
    const auto profile = test::random_road(samples, static_cast<double>(interval), 1);
    const auto base = static_cast<std::size_t>(state.range(0));
    const std::span<const float> road(profile);
    for (auto _ : state) {
        for (std::size_t first = 0; first + base <= samples; ++first) {
            benchmark::DoNotOptimize(test::literal_bridge_level(road.subspan(first, base), 0.001F));
        }
    }
}
BENCHMARK(literal_bridge)->Arg(10)->Arg(400);

// The export with its diagnostic file: three numbers for each of the 64272 valid elements.
void antismth_dlldrv_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const auto road = test::random_road(samples, static_cast<double>(interval), 1);
    std::vector<float> profile(samples);
    std::int32_t begin = 0;
    std::int32_t end = 0;
    for (auto _ : state) {
        profile = road;
        benchmark::DoNotOptimize(antismth_dlldrv(interval, 2.5F, static_cast<std::int32_t>(samples),
                                                 profile.data(), &begin, &end, nullptr));
    }
    state.SetItemsProcessed(state.iterations() * 3 * std::int64_t{end - begin + 1});
}
BENCHMARK(antismth_dlldrv_call);

} // namespace
