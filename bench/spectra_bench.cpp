#include <benchmark/benchmark.h>

#include <algorithm>
#include <bit>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <utility>
#include <vector>

#include "spectra/fourier_transform.hpp"
#include "spectra/psd_drv.hpp"
#include "spectra/rolling_straightedge.hpp"
#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace {

using namespace vialto;

constexpr float interval = 0.025F; // m
constexpr std::int64_t samples_a_mile = 64374;

std::vector<float> road(benchmark::State& state) {
    return test::random_road(static_cast<std::size_t>(state.range(0)),
                             static_cast<double>(interval), 1);
}

void count_samples(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The factors of rotation are given away: the plain transform does not pay for them.
struct PlainTransform {
    explicit PlainTransform(std::size_t length) : roots(length / 2) {
        for (std::size_t k = 0; k < roots.size(); ++k) {
            roots[k] = std::polar(
                1.0F, static_cast<float>(-2.0 * std::numbers::pi * static_cast<double>(k) /
                                         static_cast<double>(length)));
        }
    }

    void run(std::vector<std::complex<float>>& x) const {
        for (std::size_t i = 1, j = 0; i < x.size(); ++i) {
            std::size_t bit = x.size() / 2;
            for (; (j & bit) != 0; bit /= 2) {
                j ^= bit;
            }
            j ^= bit;
            if (i < j) {
                std::swap(x[i], x[j]);
            }
        }
        for (std::size_t length = 2; length <= x.size(); length *= 2) {
            for (std::size_t first = 0; first < x.size(); first += length) {
                for (std::size_t k = 0; k < length / 2; ++k) {
                    const std::complex<float> root = roots[k * (x.size() / length)];
                    const std::complex<float> low = x[first + k];
                    const std::complex<float> high = x[first + k + length / 2];
                    const std::complex<float> turned{
                        high.real() * root.real() - high.imag() * root.imag(),
                        high.real() * root.imag() + high.imag() * root.real()};
                    x[first + k] = low + turned;
                    x[first + k + length / 2] = low - turned;
                }
            }
        }
    }

    std::vector<std::complex<float>> roots;
};

// Half as many complex numbers as the real transform has samples: the same work, less the split.
void plain_radix_2(benchmark::State& state) {
    const PlainTransform transform(static_cast<std::size_t>(state.range(0)) / 2);
    const std::vector<float> x = road(state);
    std::vector<std::complex<float>> numbers(x.size() / 2);
    for (auto _ : state) {
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            numbers[i] = {x[2 * i], x[2 * i + 1]};
        }
        transform.run(numbers);
        benchmark::DoNotOptimize(numbers.data());
    }
    count_samples(state);
}

void fourier_transform_call(benchmark::State& state) {
    const std::vector<float> x = road(state);
    std::vector<float> samples(x.size() + 2);
    std::vector<float> room(fourier_room(x.size() / 2));
    for (auto _ : state) {
        std::copy(x.begin(), x.end(), samples.begin());
        fourier_transform(samples, room);
        benchmark::DoNotOptimize(samples.data());
    }
    count_samples(state);
}

// Argument 1: the kind of bands. Even spacing as fine as the stretch allows is the longest grid.
void psd_drv_call(benchmark::State& state) {
    const std::vector<float> profile = road(state);
    std::vector<float> frequency(profile.size());
    std::vector<float> density(profile.size());
    std::int32_t first = 0;
    std::int32_t last = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            psd_drv({idx_psdtyp_elevation, static_cast<std::int32_t>(state.range(1)), 12, 0.0F},
                    static_cast<std::int32_t>(profile.size()), interval, profile, frequency,
                    density, first, last));
    }
    count_samples(state);
    state.counters["grid"] = last - first + 1;
}

void psd_dll_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const std::vector<float> profile = road(state);
    const auto count = static_cast<std::int32_t>(profile.size());
    std::vector<float> frequency(profile.size());
    std::vector<float> density(profile.size());
    std::int32_t first = 0;
    std::int32_t last = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(psd_dll(0, count - 1, idx_psdtyp_elevation,
                                         static_cast<std::int32_t>(state.range(1)), 12, 0.0F, count,
                                         interval, profile.data(), frequency.data(), density.data(),
                                         &first, &last, nullptr));
    }
    count_samples(state);
    state.counters["grid"] = last - first + 1;
}

void rse_drv_call(benchmark::State& state) {
    const std::vector<float> profile = road(state);
    std::vector<float> deflection(profile.size());
    float acceleration = 0.0F;
    std::int32_t first = 0;
    std::int32_t last = 0;
    const float length = state.range(1) == 1 ? 3.0F : 3.01F; // ends on samples, or between them
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            rse_drv(interval, length, profile, deflection, acceleration, first, last));
    }
    count_samples(state);
}

BENCHMARK(plain_radix_2)->Arg(65536)->Arg(1 << 20)->Arg(1 << 24);
BENCHMARK(fourier_transform_call)->Arg(4096)->Arg(65536)->Arg(1 << 20)->Arg(1 << 24);
BENCHMARK(psd_drv_call)
    ->Args({samples_a_mile, idx_psdband_octave})
    ->Args({samples_a_mile, idx_psdband_even})
    ->Args({10000000, idx_psdband_octave});
BENCHMARK(psd_dll_call)
    ->Args({samples_a_mile, idx_psdband_octave})
    ->Args({samples_a_mile, idx_psdband_even});
BENCHMARK(rse_drv_call)->Args({samples_a_mile, 1})->Args({samples_a_mile, 2});

} // namespace
