#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace {

using namespace vialto;

constexpr std::int32_t samples_a_mile = 64374;

// Arguments: values, classes.
void histgrm_dlldrv_call(benchmark::State& state) {
    const auto count = static_cast<std::int32_t>(state.range(0));
    const auto classes = static_cast<std::int32_t>(state.range(1));
    const auto values = test::random_road(static_cast<std::size_t>(count), 0.025, 1);
    const float low = -0.02F;
    const float high = 0.02F;
    const float step = (high - low) / static_cast<float>(classes);
    std::vector<float> percentages(static_cast<std::size_t>(classes));
    float above = 0.0F;
    for (auto _ : state) {
        benchmark::DoNotOptimize(histgrm_dlldrv(2, classes, count, low, high, step, 0.0F,
                                                values.data(), nullptr, percentages.data(), &above,
                                                nullptr));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(histgrm_dlldrv_call)
    ->Args({samples_a_mile, 12})
    ->Args({samples_a_mile, 48})
    ->Args({samples_a_mile, 300})
    ->Args({10 * samples_a_mile, 12});

} // namespace
