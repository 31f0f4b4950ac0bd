// How the benchmarks of the exports measure.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::bench {

inline constexpr float interval = 0.025F;   // m
inline constexpr std::int32_t mile = 64374; // samples
inline constexpr float base_length = 7.62F; // m, of the moving statistics

using Floats = std::vector<float>;
using Integers = std::vector<std::int32_t>;

inline Floats road(std::uint32_t seed, std::int32_t samples = mile) {
    return test::random_road(static_cast<std::size_t>(samples), static_cast<double>(interval),
                             seed);
}

inline Floats room() {
    return Floats(static_cast<std::size_t>(mile));
}

// Runs `call` as often as the benchmark wants it; a call that does not succeed ends it.
template <class Call>
void measure(benchmark::State& state, std::int32_t samples, const Call& call) {
    const test::TemporaryDirectory directory;
    for (auto _ : state) {
        if (call() != vialto_success) {
            state.SkipWithError("the call failed");
        }
    }
    state.SetItemsProcessed(state.iterations() * samples);
}

template <class Call>
void measure_literal(benchmark::State& state, std::int32_t samples, const Call& call) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(call());
    }
    state.SetItemsProcessed(state.iterations() * samples);
}

} // namespace vialto::bench
