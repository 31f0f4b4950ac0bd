#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ride/ride_drv.hpp"
#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace {

using namespace vialto;

constexpr float interval = 0.025F; // m
constexpr std::int64_t samples_a_mile = 64374;

void count_samples(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ride_dlldrv_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const auto count = static_cast<std::int32_t>(state.range(0));
    const auto profile = test::random_road(static_cast<std::size_t>(count), interval, 1);
    float index = 0.0F;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ride_dlldrv(2, 1, idx_ridests_IRI, count, profile.data(), nullptr,
                                             interval, &index, nullptr));
    }
    count_samples(state);
}

// The same without the frame: the difference is the share of the diagnostic file.
void ride_drv_call(benchmark::State& state) {
    const auto profile = test::random_road(static_cast<std::size_t>(state.range(0)), interval, 1);
    float index = 0.0F;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ride_drv(2, 1, idx_ridests_IRI, profile, {}, interval, index));
    }
    count_samples(state);
}

BENCHMARK(ride_dlldrv_call)->Arg(samples_a_mile)->Arg(10 * samples_a_mile);
BENCHMARK(ride_drv_call)->Arg(samples_a_mile)->Arg(10 * samples_a_mile);

} // namespace
