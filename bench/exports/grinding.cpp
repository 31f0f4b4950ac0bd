// The grinding exports.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>

#include "exports/measure.hpp"
#include "grinding/mustgrind.hpp"
#include "support/literal_grinding.hpp"
#include "vialto/vialto.h"

namespace vialto::bench {
namespace {

tGrinderSetup grinder() {
    return {.WheelBase = 5.5F,
            .HeadPosition = 0.5F,
            .TandemSpread = 0.6F,
            .ShortWavelength = 0.3F,
            .MaxGrindingDepth_mm = 8.0F};
}

tGrindSpot whole_road() {
    tGrindSpot spot{};
    spot.iNumPasses = 1;
    spot.iDirection[0] = 1;
    spot.iEnd = mile - 1;
    return spot;
}

tMustGrindCfg must_grind(std::int32_t selector, float threshold) {
    return {.iRideIndexType = selector,
            .if250mmFilter = 1,
            .xRideThreshold = threshold,
            .xSlideBaseLength = base_length,
            .ib_grindopt = {1, 1, 1},
            .x_grinddepth_min = 0.0F,
            .x_grindlength_min = 0.3F,
            .x_grindgap_min = 0.3F};
}

void bench_grindsimu(benchmark::State& state) {
    const tGrinderSetup setup = grinder();
    const tGrindSpot spot = whole_road();
    const Floats profile = road(1);
    Floats ground = profile;
    Integers flags(static_cast<std::size_t>(mile));
    measure(state, mile, [&] {
        ground = profile;
        return grindsimu_dlldrv(interval, 1, mile, &setup, &spot, ground.data(), flags.data(),
                                nullptr);
    });
}

void bench_grindsimu_2chan(benchmark::State& state) {
    const tGrinderSetup setup = grinder();
    const tGrindSpot spot = whole_road();
    const Floats profile = road(1);
    Floats left = profile;
    Floats right = profile;
    Integers flags(static_cast<std::size_t>(mile));
    measure(state, mile, [&] {
        left = profile;
        right = profile;
        return grindsimu_2chan_dlldrv(interval, 1, mile, &setup, &spot, left.data(), right.data(),
                                      flags.data(), nullptr);
    });
}

void bench_mustgrind(benchmark::State& state) {
    const tGrinderSetup setup = grinder();
    const Floats profile = road(1);
    Integers flags(static_cast<std::size_t>(mile));
    measure(state, mile, [&] {
        tMustGrindCfg cfg = must_grind(idx_ridests_IRI, 0.0025F);
        return mustgrind_dlldrv(mile, interval, &cfg, &setup, profile.data(), flags.data(),
                                nullptr);
    });
}

void bench_mustgrind_literal(benchmark::State& state) {
    const tGrinderSetup setup = grinder();
    const tMustGrindCfg cfg = must_grind(idx_ridests_IRI, 0.0025F);
    const Floats profile = road(1);
    measure_literal(state, mile, [&] {
        return test::literal_mustgrind({interval, cfg, setup, profile}).helpful;
    });
}

void bench_mustgrind_2chan(benchmark::State& state) {
    const tGrinderSetup setup = grinder();
    const Floats left = road(1);
    const Floats right = road(2);
    Integers flags(static_cast<std::size_t>(mile));
    measure(state, mile, [&] {
        tMustGrindCfg cfg = must_grind(idx_ridests_HRI, 0.0025F);
        return mustgrind_2chan_dlldrv(mile, interval, &cfg, &setup, left.data(), right.data(),
                                      flags.data(), nullptr);
    });
}

BENCHMARK(bench_grindsimu)->Name("grindsimu_dlldrv");
BENCHMARK(bench_grindsimu_2chan)->Name("grindsimu_2chan_dlldrv");
BENCHMARK(bench_mustgrind)->Name("mustgrind_dlldrv");
BENCHMARK(bench_mustgrind_literal)->Name("mustgrind_dlldrv/literal");
BENCHMARK(bench_mustgrind_2chan)->Name("mustgrind_2chan_dlldrv");

} // namespace
} // namespace vialto::bench
