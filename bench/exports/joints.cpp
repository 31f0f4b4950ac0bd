// The joint exports.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

#include "exports/measure.hpp"
#include "support/literal_joint_id.hpp"
#include "vialto/vialto.h"

namespace vialto::bench {
namespace {

const tJointIDCfg curled_edges{.i_jntid_method = 4, .if_skewed = 0, .xDomJointSpacing = 5.0F};

// Slabs of 5 m with a notch at each joint, elevations in metres.
Floats slabs(std::uint32_t seed) {
    Floats profile = road(seed);
    for (std::size_t i = 200; i < profile.size(); i += 200) {
        profile[i] -= 0.006F;
    }
    return profile;
}

void bench_joint_id(benchmark::State& state) {
    const Floats left = slabs(1);
    const Floats right = slabs(2);
    Integers left_types(static_cast<std::size_t>(mile));
    Integers right_types = left_types;
    std::vector<double> left_places(static_cast<std::size_t>(mile));
    std::vector<double> right_places = left_places;
    measure(state, mile, [&] {
        return joint_id_dlldrv(&curled_edges, interval, mile, left.data(), right.data(),
                               left_types.data(), right_types.data(), left_places.data(),
                               right_places.data(), nullptr);
    });
}

void bench_joint_id_literal(benchmark::State& state) {
    const Floats left = slabs(1);
    const Floats right = slabs(2);
    test::JointTrackResult left_result{Integers(static_cast<std::size_t>(mile)),
                                       std::vector<double>(static_cast<std::size_t>(mile))};
    test::JointTrackResult right_result = left_result;
    measure_literal(state, mile, [&] {
        return test::literal_joint_id(curled_edges, interval, left, right, left_result,
                                      right_result);
    });
}

void bench_joint_fault(benchmark::State& state) {
    const Floats profile = slabs(1);
    std::vector<double> joints(318);
    std::iota(joints.begin(), joints.end(), 1.0);
    for (double& joint : joints) {
        joint *= 5.0;
    }
    Floats faults(joints.size());
    measure(state, mile, [&] {
        return joint_fault_dlldrv(mile, static_cast<std::int32_t>(joints.size()), interval, 100.0F,
                                  profile.data(), joints.data(), faults.data(), nullptr);
    });
}

BENCHMARK(bench_joint_id)->Name("joint_id_dlldrv");
BENCHMARK(bench_joint_id_literal)->Name("joint_id_dlldrv/literal");
BENCHMARK(bench_joint_fault)->Name("joint_fault_dlldrv");

} // namespace
} // namespace vialto::bench
