// The histogram export.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "exports/measure.hpp"
#include "vialto/vialto.h"

namespace vialto::bench {
namespace {

void bench_histgrm(benchmark::State& state) {
    const Floats values = road(1);
    Floats percentages(10);
    float above = 0.0F;
    measure(state, mile, [&] {
        return histgrm_dlldrv(2, 10, mile, -0.01F, 0.01F, 0.0025F, 0.0F, values.data(), nullptr,
                              percentages.data(), &above, nullptr);
    });
}

BENCHMARK(bench_histgrm)->Name("histgrm_dlldrv");

} // namespace
} // namespace vialto::bench
