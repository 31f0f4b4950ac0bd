#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ride/ride_drv.hpp"
#include "ride/shroud.hpp"
#include "ride/two_channel.hpp"
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
    const auto profile =
        test::random_road(static_cast<std::size_t>(count), static_cast<double>(interval), 1);
    float index = 0.0F;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ride_dlldrv(2, 1, idx_ridests_IRI, count, profile.data(), nullptr,
                                             interval, &index, nullptr));
    }
    count_samples(state);
}

// The same without the frame: the difference is the share of the diagnostic file.
void ride_drv_call(benchmark::State& state) {
    const auto profile = test::random_road(static_cast<std::size_t>(state.range(0)),
                                           static_cast<double>(interval), 1);
    float index = 0.0F;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ride_drv(2, 1, idx_ridests_IRI, profile, {}, interval, index));
    }
    count_samples(state);
}

constexpr float base_length = 7.62F;           // m
constexpr std::int32_t segment_samples = 4001; // 100 m

// The argument is the selector.
void rideseg_dlldrv_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const auto profile = test::random_road(samples_a_mile, static_cast<double>(interval), 1);
    const std::vector<std::int32_t> counts(samples_a_mile / segment_samples, segment_samples);
    const auto segments = static_cast<std::int32_t>(counts.size());
    std::vector<float> index(counts.size());
    std::vector<float> length(counts.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(rideseg_dlldrv(
            1, static_cast<std::int32_t>(state.range(0)), samples_a_mile, profile.data(), interval,
            segments, counts.data(), index.data(), length.data(), nullptr));
    }
}

void ridecon_dlldrv_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const auto profile = test::random_road(samples_a_mile, static_cast<double>(interval), 1);
    std::vector<float> output(profile.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            ridecon_dlldrv(1, interval, base_length, static_cast<std::int32_t>(state.range(0)),
                           samples_a_mile, profile.data(), output.data(), nullptr));
    }
}

void ride2chan_dlldrv_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const auto left = test::random_road(samples_a_mile, static_cast<double>(interval), 1);
    const auto right = test::random_road(samples_a_mile, static_cast<double>(interval), 2);
    float index = 0.0F;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ride2chan_dlldrv(2, 1, static_cast<std::int32_t>(state.range(0)),
                                                  samples_a_mile, left.data(), right.data(),
                                                  nullptr, interval, &index, nullptr));
    }
}

void ridecon2chan_dlldrv_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const auto left = test::random_road(samples_a_mile, static_cast<double>(interval), 1);
    const auto right = test::random_road(samples_a_mile, static_cast<double>(interval), 2);
    std::vector<float> output(left.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(ridecon2chan_dlldrv(
            1, static_cast<std::int32_t>(state.range(0)), samples_a_mile, left.data(), right.data(),
            interval, base_length, output.data(), nullptr));
    }
}

void wimindex_dlldrv_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const auto count = static_cast<std::int32_t>(state.range(0));
    const auto profile =
        test::random_road(static_cast<std::size_t>(count), static_cast<double>(interval), 1);
    std::vector<float> output(profile.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(wimindex_dlldrv(vialto_no, interval, 0.0F, count, profile.data(),
                                                 output.data(), nullptr));
    }
    count_samples(state);
}

std::vector<float> magnitudes(std::size_t count) {
    std::vector<float> x = test::random_road(count, static_cast<double>(interval), 1);
    for (float& value : x) {
        value = std::fabs(value);
    }
    return x;
}

// Falls as a shadow does, so that every pair is a near-tie.
std::vector<float> decay(std::size_t count) {
    std::vector<float> x(count);
    for (std::size_t i = 0; i < count; ++i) {
        x[i] = static_cast<float>(
            std::exp(-static_cast<double>(i) * static_cast<double>(interval) / 15.24));
    }
    return x;
}

void shroud_of(benchmark::State& state, const std::vector<float>& x) {
    std::vector<float> y(x.size());
    for (auto _ : state) {
        shroud(x, interval, y, 15.24F, 1.524F);
        benchmark::DoNotOptimize(y.data());
    }
    count_samples(state);
}

void shroud_of_a_road(benchmark::State& state) {
    shroud_of(state, magnitudes(static_cast<std::size_t>(state.range(0))));
}

void shroud_of_near_ties(benchmark::State& state) {
    shroud_of(state, decay(static_cast<std::size_t>(state.range(0))));
}

BENCHMARK(ride_dlldrv_call)->Arg(samples_a_mile)->Arg(10 * samples_a_mile);
BENCHMARK(ride_drv_call)->Arg(samples_a_mile)->Arg(10 * samples_a_mile);
BENCHMARK(rideseg_dlldrv_call)->Arg(idx_ridests_IRI)->Arg(idx_ridests_RN);
BENCHMARK(ridecon_dlldrv_call)->Arg(idx_ridests_IRI)->Arg(idx_ridests_RN);
BENCHMARK(ride2chan_dlldrv_call)->DenseRange(idx_ridests_HRI, idx_ridests_2ChanRN);
BENCHMARK(ridecon2chan_dlldrv_call)->DenseRange(idx_ridests_HRI, idx_ridests_2ChanRN);
BENCHMARK(wimindex_dlldrv_call)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(shroud_of_a_road)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(shroud_of_near_ties)->Arg(50000)->Unit(benchmark::kMillisecond);

} // namespace
