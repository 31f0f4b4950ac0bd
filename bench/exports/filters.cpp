// The anti-smoothing export.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "exports/measure.hpp"
#include "vialto/vialto.h"

namespace vialto::bench {
namespace {

void bench_antismth(benchmark::State& state) {
    const Floats profile = road(1);
    Floats result = profile;
    std::int32_t first = 0;
    std::int32_t last = 0;
    measure(state, mile, [&] {
        result = profile;
        return antismth_dlldrv(interval, 0.25F, mile, result.data(), &first, &last, nullptr);
    });
}

BENCHMARK(bench_antismth)->Name("antismth_dlldrv");

} // namespace
} // namespace vialto::bench
