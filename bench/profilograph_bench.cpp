#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "profilograph/profile_index.hpp"
#include "profilograph/scallops.hpp"
#include "profilograph/trace.hpp"
#include "support/host.hpp"
#include "support/literal_profilograph.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace {

using namespace vialto;

constexpr float interval = 0.025F; // m
constexpr std::int64_t samples_a_mile = 64374;
constexpr std::int32_t lot_size = 4000; // 100 m

// Six pairs on a beam of 7.6 m, three of them between samples.
const std::vector<float> offsets{3.8F, 3.04F, 2.29F, 1.523F, 0.761F, 0.38F};
// A band of 0.2 inch, scallops of 0.6 m and more, rounded to 0.05 inch; in metres.
const PGSettings settings{0.00508F, 0.6F, 0.0009F, 0.00127F, 0.01F, 7.6F};
const ScallopRules rules{settings.BlankingBand, settings.MinScallopWidth, settings.ScallopRound,
                         settings.MinScallopHeight};

void count_samples(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

std::vector<float> road(const benchmark::State& state) {
    return test::random_road(static_cast<std::size_t>(state.range(0)),
                             static_cast<double>(interval), 1);
}

std::vector<float> trace_of(const std::vector<float>& profile) {
    return test::literal_trace(interval, offsets, profile);
}

std::vector<tPGLot> hundred_metre_lots(std::int32_t count) {
    std::vector<tPGLot> lots;
    for (std::int32_t start = 0; start + lot_size <= count; start += lot_size) {
        lots.push_back({start, start + lot_size - 1, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F});
    }
    return lots;
}

void pgfilter_call(benchmark::State& state) {
    const std::vector<float> profile = road(state);
    std::vector<float> trace(profile.size());
    std::int32_t first = 0;
    std::int32_t last = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(pgfilter(interval, offsets, profile, trace, first, last));
    }
    count_samples(state);
}

void pgfilter_literal(benchmark::State& state) {
    const std::vector<float> profile = road(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(trace_of(profile));
    }
    count_samples(state);
}

// The difference to pgfilter_call is the table of the diagnostic file: two numbers a sample.
void pgfilt_dll_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const std::vector<float> profile = road(state);
    std::vector<float> trace(profile.size());
    const auto count = static_cast<std::int32_t>(profile.size());
    std::int32_t first = 0;
    std::int32_t last = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(pgfilt_dll(0, count - 1, interval, 6, count, offsets.data(),
                                            profile.data(), trace.data(), &first, &last, nullptr));
    }
    count_samples(state);
}

void CountScallops_call(benchmark::State& state) {
    const std::vector<float> trace = trace_of(road(state));
    LotScallops found;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CountScallops(trace, interval, rules, found));
    }
    count_samples(state);
}

void pgindex_dll_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const std::vector<float> trace = trace_of(road(state));
    const auto count = static_cast<std::int32_t>(trace.size());
    std::vector<tPGLot> lots = hundred_metre_lots(count);
    std::vector<tPGDefect> defects(vialto_i_PG_maxdefects);
    const float host_settings[] = {settings.BlankingBand,     settings.MinScallopWidth,
                                   settings.MinScallopHeight, settings.ScallopRound,
                                   settings.BumpCutoffHeight, settings.BumpChordlength};
    std::int32_t defect_count = 0;
    const std::int32_t bump_count = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(pgindex_dll(0, count - 1, interval, host_settings, count,
                                             trace.data(), static_cast<std::int32_t>(lots.size()),
                                             lots.data(), &defect_count, defects.data(),
                                             &bump_count, nullptr, nullptr));
    }
    count_samples(state);
    state.counters["defects"] = defect_count;
}

BENCHMARK(pgfilter_call)->Arg(samples_a_mile)->Arg(10 * samples_a_mile);
BENCHMARK(pgfilter_literal)->Arg(samples_a_mile);
BENCHMARK(pgfilt_dll_call)->Arg(samples_a_mile)->Arg(10 * samples_a_mile);
BENCHMARK(CountScallops_call)->Arg(samples_a_mile);
BENCHMARK(pgindex_dll_call)->Arg(samples_a_mile)->Arg(10 * samples_a_mile);

} // namespace
