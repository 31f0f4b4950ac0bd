#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "joints/joint_id.hpp"
#include "support/host.hpp"
#include "support/literal_joint_id.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace {

using namespace vialto;

constexpr float interval = 0.025F; // m
constexpr std::size_t samples_a_mile = 64374;

// A rough road with a joint every 5 m, 4 mm deep and two samples wide.
std::vector<float> jointed_road(std::uint32_t seed) {
    auto profile = test::random_road(samples_a_mile, static_cast<double>(interval), seed);
    for (std::size_t i = 100; i < profile.size(); i += 200) {
        profile[i] -= 0.004F;
        profile[i + 1] -= 0.004F;
    }
    return profile;
}

struct Tracks {
    std::vector<float> left = jointed_road(1);
    std::vector<float> right = jointed_road(2);
    test::JointTrackResult left_result{std::vector<std::int32_t>(samples_a_mile),
                                       std::vector<double>(samples_a_mile)};
    test::JointTrackResult right_result = left_result;
};

// Arguments: method, spacing in tenths of a metre. One of 0.4 m is never met, so that all passes
// run.
void joint_id_call(benchmark::State& state) {
    Tracks tracks;
    const tJointIDCfg settings{static_cast<std::int32_t>(state.range(0)), 0,
                               static_cast<float>(state.range(1)) * 0.1F};
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            joint_id(settings, interval,
                     {tracks.left, tracks.left_result.types, tracks.left_result.locations},
                     {tracks.right, tracks.right_result.types, tracks.right_result.locations}));
    }
}

// Every pass filters both tracks anew.
void literal_joint_id_call(benchmark::State& state) {
    Tracks tracks;
    const tJointIDCfg settings{static_cast<std::int32_t>(state.range(0)), 0,
                               static_cast<float>(state.range(1)) * 0.1F};
    for (auto _ : state) {
        benchmark::DoNotOptimize(test::literal_joint_id(settings, interval, tracks.left,
                                                        tracks.right, tracks.left_result,
                                                        tracks.right_result));
    }
}

// A joint every 5 m of a mile.
void joint_fault_dlldrv_call(benchmark::State& state) {
    const test::TemporaryDirectory directory;
    const auto profile = test::random_road(samples_a_mile, static_cast<double>(interval), 1);
    std::vector<double> joints;
    for (double location = 5.0; location < 1600.0; location += 5.0) {
        joints.push_back(location);
    }
    std::vector<float> faults(joints.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(joint_fault_dlldrv(
            static_cast<std::int32_t>(profile.size()), static_cast<std::int32_t>(joints.size()),
            interval, 100.0F, profile.data(), joints.data(), faults.data(), nullptr));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(joints.size()));
}

BENCHMARK(joint_id_call)->ArgsProduct({{1, 3, 4}, {4, 50}})->Unit(benchmark::kMillisecond);
BENCHMARK(literal_joint_id_call)->ArgsProduct({{1, 3, 4}, {4, 50}})->Unit(benchmark::kMillisecond);
BENCHMARK(joint_fault_dlldrv_call);

} // namespace
