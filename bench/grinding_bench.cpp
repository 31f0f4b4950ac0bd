#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "grinding/mustgrind.hpp"
#include "support/host.hpp"
#include "support/literal_grinding.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace {

using namespace vialto;

constexpr float interval = 0.025F; // m
constexpr std::size_t samples_a_mile = 64374;
constexpr tGrinderSetup machine{.WheelBase = 5.5F,
                                .HeadPosition = 0.5F,
                                .TandemSpread = 0.9F,
                                .ShortWavelength = 0.3F,
                                .MaxGrindingDepth_mm = 8.0F};

// Some hundred candidates a mile.
tMustGrindCfg settings(std::int32_t selector) {
    tMustGrindCfg cfg{};
    cfg.iRideIndexType = selector;
    cfg.if250mmFilter = vialto_yes;
    cfg.xRideThreshold = selector == idx_ridests_IRI ? 0.0024F : 0.006F;
    cfg.xSlideBaseLength = 7.62F;
    cfg.ib_grindopt[0] = cfg.ib_grindopt[1] = cfg.ib_grindopt[2] = vialto_yes;
    cfg.x_grindlength_min = 0.3F;
    cfg.x_grindgap_min = 0.3F;
    return cfg;
}

void mustgrind_dlldrv_call(benchmark::State& state) {
    tMustGrindCfg cfg = settings(static_cast<std::int32_t>(state.range(0)));
    const auto profile = test::random_road(samples_a_mile, static_cast<double>(interval), 1);
    std::vector<std::int32_t> flags(profile.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(mustgrind_dlldrv(samples_a_mile, interval, &cfg, &machine,
                                                  profile.data(), flags.data(), nullptr));
    }
    const auto literal = test::literal_mustgrind({interval, cfg, machine, profile});
    state.counters["candidates"] = static_cast<double>(literal.candidates);
    state.counters["helpful"] = static_cast<double>(literal.helpful);
}

void literal_mustgrind_run(benchmark::State& state) {
    const tMustGrindCfg cfg = settings(static_cast<std::int32_t>(state.range(0)));
    const auto profile = test::random_road(samples_a_mile, static_cast<double>(interval), 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(test::literal_mustgrind({interval, cfg, machine, profile}));
    }
}

// Nearly all of it is the table of the diagnostic file.
void grindsimu_dlldrv_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    auto profile = test::random_road(samples_a_mile, static_cast<double>(interval), 1);
    std::vector<std::int32_t> flags(profile.size());
    tGrindSpot whole_road{};
    whole_road.iNumPasses = 1;
    whole_road.iDirection[0] = 1;
    whole_road.iEnd = static_cast<std::int32_t>(profile.size()) - 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(grindsimu_dlldrv(interval, 1, samples_a_mile, &machine,
                                                  &whole_road, profile.data(), flags.data(),
                                                  nullptr));
    }
    constexpr std::int64_t columns = 3;
    state.SetItemsProcessed(state.iterations() * columns *
                            static_cast<std::int64_t>(samples_a_mile));
}

BENCHMARK(mustgrind_dlldrv_call)
    ->Arg(idx_ridests_IRI)
    ->Arg(idx_ridests_RN)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(literal_mustgrind_run)
    ->Arg(idx_ridests_IRI)
    ->Arg(idx_ridests_RN)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(grindsimu_dlldrv_call)->Unit(benchmark::kMillisecond);

} // namespace
