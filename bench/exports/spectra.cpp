// The exports of spectra and straightedge.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "exports/measure.hpp"
#include "vialto/vialto.h"

namespace vialto::bench {
namespace {

void bench_psd(benchmark::State& state) {
    const Floats profile = road(1);
    Floats frequency = room();
    Floats density = room();
    std::int32_t first = 0;
    std::int32_t last = 0;
    measure(state, mile, [&] {
        return psd_dll(0, mile - 1, 2, 1, 12, 0.0F, mile, interval, profile.data(),
                       frequency.data(), density.data(), &first, &last, nullptr);
    });
}

void bench_rse(benchmark::State& state) {
    const Floats profile = road(1);
    Floats deflection = room();
    float acceleration = 0.0F;
    std::int32_t first = 0;
    std::int32_t last = 0;
    measure(state, mile, [&] {
        return rse_dlldrv(mile, interval, 3.0F, profile.data(), deflection.data(), &acceleration,
                          &first, &last, nullptr);
    });
}

BENCHMARK(bench_psd)->Name("psd_dll");
BENCHMARK(bench_rse)->Name("rse_dlldrv");

} // namespace
} // namespace vialto::bench
