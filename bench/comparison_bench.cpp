#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "comparison/sweep.hpp"
#include "support/literal_sweep.hpp"
#include "support/roads.hpp"

namespace {

using namespace vialto;

constexpr float interval = 0.025F; // m
constexpr std::size_t samples_a_mile = 64374;
constexpr std::size_t positions = 201; // 2.5 m to either side

struct TwoRuns {
    std::vector<float> reference = test::random_road(samples_a_mile, 0.025, 1);
    std::vector<float> test;

    // The second run: 12 samples behind the first, with noise.
    TwoRuns() : test(test::random_road(samples_a_mile, 0.025, 2)) {
        for (std::size_t i = 12; i < test.size(); ++i) {
            test[i] = reference[i - 12] + 0.1F * test[i];
        }
    }
};

void cc_sweep_of_a_mile(benchmark::State& state) {
    const TwoRuns runs;
    std::vector<float> final_cc(positions);
    std::vector<float> roughness(positions);
    std::vector<float> shape(positions);
    std::vector<float> offset(positions);
    SweepOptimum optimum;
    for (auto _ : state) {
        benchmark::DoNotOptimize(cc_sweep({runs.reference, runs.test}, interval, 2.5F,
                                          {final_cc, roughness, shape, offset}, optimum));
    }
    state.SetItemsProcessed(state.iterations() * std::ssize(final_cc));
}

void literal_sweep_of_a_mile(benchmark::State& state) {
    const TwoRuns runs;
    for (auto _ : state) {
        benchmark::DoNotOptimize(test::literal_sweep(runs.reference, runs.test, positions));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(positions));
}

BENCHMARK(cc_sweep_of_a_mile)->Unit(benchmark::kMillisecond);
BENCHMARK(literal_sweep_of_a_mile)->Unit(benchmark::kMillisecond);

} // namespace
