#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "comparison/repeatability.hpp"
#include "comparison/sweep.hpp"
#include "support/host.hpp"
#include "support/literal_sweep.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

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
        benchmark::DoNotOptimize(cc_sweep({{runs.reference}, {runs.test}}, interval, 2.5F,
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

// The whole comparison: padding, Butterworth filter, sweep, two ride indices, diagnostic file.
void ccfunc_of_a_mile(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const TwoRuns runs;
    const auto samples = static_cast<std::int32_t>(samples_a_mile);
    tFiltCon filter{};
    filter.iMainFilterType = idx_filttyp_bwfilt;
    filter.iSubFilterType = idx_subfilttyp_bandpass;
    filter.iOutType = idx_filtouttyp_slope;
    filter.if250mmFilter = vialto_yes;
    filter.xLongWavelength = 30.0F;
    filter.xShortWavelength = 0.5F;
    const tProfinfo profile{0, samples - 1, 0, 0, interval, filter};
    tProfinfo profiles[]{profile, profile};
    tProfAnalysis analysis{};
    analysis.x_offset_max = 2.5F;
    std::int32_t count = 0;
    CC_CoeffArray(&count, &analysis, profiles, nullptr);
    std::vector<float> final_cc(static_cast<std::size_t>(count));
    std::vector<float> offset(final_cc.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(ccfunc(samples, samples, count, runs.reference.data(),
                                        runs.test.data(), &analysis, profiles, final_cc.data(),
                                        offset.data(), nullptr, nullptr, nullptr));
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void pcbia_of_ten_runs(benchmark::State& state) {
    constexpr std::size_t samples =
        std::size_t{repeatability_runs} * std::size_t{repeatability_points};
    const std::vector<float> runs = test::random_road(samples, 0.025, 1);
    const std::vector<float> reference = test::random_road(repeatability_points, 0.025, 2);
    Repeatability result;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            pcbia(repeatability_runs, repeatability_points, runs, reference, result));
    }
    state.SetItemsProcessed(state.iterations() * std::ssize(runs));
}

BENCHMARK(cc_sweep_of_a_mile)->Unit(benchmark::kMillisecond);
BENCHMARK(literal_sweep_of_a_mile)->Unit(benchmark::kMillisecond);
BENCHMARK(ccfunc_of_a_mile)->Unit(benchmark::kMillisecond);
BENCHMARK(pcbia_of_ten_runs)->Unit(benchmark::kMicrosecond);

} // namespace
