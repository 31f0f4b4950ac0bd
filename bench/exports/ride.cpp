// The ride exports.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "exports/measure.hpp"
#include "support/literal_filters.hpp"
#include "support/quarter_car_model.hpp"
#include "vialto/vialto.h"

namespace vialto::bench {
namespace {

constexpr std::int32_t longest_wim = 50000; // samples

Integers segments_of_100_m() {
    return Integers(16, 4001);
}

void bench_ride(benchmark::State& state) {
    const Floats profile = road(1);
    float index = 0.0F;
    measure(state, mile, [&] {
        return ride_dlldrv(2, 1, idx_ridests_IRI, mile, profile.data(), nullptr, interval, &index,
                           nullptr);
    });
}

void bench_ride_literal(benchmark::State& state) {
    const Floats profile = road(1);
    measure_literal(state, mile, [&] {
        return test::literal_filter(test::iri_car, profile, interval, 10, 1.0F).statistic;
    });
}

void bench_rideseg(benchmark::State& state) {
    const Floats profile = road(1);
    const Integers points = segments_of_100_m();
    Floats index(points.size());
    Floats length(points.size());
    measure(state, mile, [&] {
        return rideseg_dlldrv(1, idx_ridests_IRI, mile, profile.data(), interval,
                              static_cast<std::int32_t>(points.size()), points.data(), index.data(),
                              length.data(), nullptr);
    });
}

void bench_ridecon(benchmark::State& state) {
    const Floats profile = road(1);
    Floats output = room();
    measure(state, mile, [&] {
        return ridecon_dlldrv(1, interval, base_length, idx_ridests_IRI, mile, profile.data(),
                              output.data(), nullptr);
    });
}

void bench_ridecon_literal(benchmark::State& state) {
    const Floats profile = road(1);
    constexpr float box = base_length / interval;
    measure_literal(state, mile, [&] {
        Floats slope = test::literal_filter(test::iri_car, profile, interval, 10, 1.0F).filtered;
        for (float& value : slope) {
            value = std::fabs(value);
        }
        return test::literal_moving_average(slope, static_cast<std::size_t>(box + 0.5F),
                                            static_cast<std::size_t>(box * 0.5F + 0.5F), false);
    });
}

void bench_ride2chan(benchmark::State& state) {
    const Floats left = road(1);
    const Floats right = road(2);
    float index = 0.0F;
    measure(state, mile, [&] {
        return ride2chan_dlldrv(2, 1, idx_ridests_MRI, mile, left.data(), right.data(), nullptr,
                                interval, &index, nullptr);
    });
}

void bench_rideseg2chan(benchmark::State& state) {
    const Floats left = road(1);
    const Floats right = road(2);
    const Integers points = segments_of_100_m();
    Floats index(points.size());
    Floats length(points.size());
    measure(state, mile, [&] {
        return rideseg2chan_dlldrv(1, idx_ridests_MRI, mile, left.data(), right.data(), interval,
                                   static_cast<std::int32_t>(points.size()), points.data(),
                                   index.data(), length.data(), nullptr);
    });
}

void bench_ridecon2chan(benchmark::State& state) {
    const Floats left = road(1);
    const Floats right = road(2);
    Floats output = room();
    measure(state, mile, [&] {
        return ridecon2chan_dlldrv(1, idx_ridests_MRI, mile, left.data(), right.data(), interval,
                                   base_length, output.data(), nullptr);
    });
}

void bench_wimindex(benchmark::State& state) {
    const Floats profile = road(1, longest_wim);
    Floats output = room();
    measure(state, longest_wim, [&] {
        return wimindex_dlldrv(2, interval, 0.0F, longest_wim, profile.data(), output.data(),
                               nullptr);
    });
}

BENCHMARK(bench_ride)->Name("ride_dlldrv");
BENCHMARK(bench_ride_literal)->Name("ride_dlldrv/literal");
BENCHMARK(bench_rideseg)->Name("rideseg_dlldrv");
BENCHMARK(bench_ridecon)->Name("ridecon_dlldrv");
BENCHMARK(bench_ridecon_literal)->Name("ridecon_dlldrv/literal");
BENCHMARK(bench_ride2chan)->Name("ride2chan_dlldrv");
BENCHMARK(bench_rideseg2chan)->Name("rideseg2chan_dlldrv");
BENCHMARK(bench_ridecon2chan)->Name("ridecon2chan_dlldrv");
BENCHMARK(bench_wimindex)->Name("wimindex_dlldrv");

} // namespace
} // namespace vialto::bench
