// The cross-correlation sweep: a test profile slides along a reference profile, and the offset at
// which the two agree best is found.
#pragma once

#include <cstdint>
#include <span>

#include "comparison/overlap.hpp"
#include "frame/event.hpp"

namespace vialto {

// Results of each offset, all of one length N. Position k, from 0, stands for an offset of k - N/2
// samples, N/2 truncated.
struct SweepArrays {
    std::span<float> final_cc;  // roughness coefficient times shape factor
    std::span<float> roughness; // percent, -100 to 100
    std::span<float> shape;     // 0 to 1
    std::span<float> offset;    // m
};

struct SweepOptimum {
    std::int32_t index = 0; // position in the arrays, from 0
    float offset = 0.0F;    // m
    float roughness = 0.0F;
    float shape = 0.0F;
    float final_cc = 0.0F;
};

// Given: two profiles at the same step, that step and the largest offset [m], which only label the
// offsets.
// Returned: the arrays and the first position with the largest final coefficient; position 0 if all
// of them are NaN, and an optimum of zeros for empty arrays.
//
// Coefficients lie within 1e-6 of their scale of those that compute_agreement gives, and the
// optimum is the very one: position and values.
//
// Fails with the failures of compute_agreement at the first offset that has one: the positions
// before it are written, it and those behind it are not, nor is the optimum.
[[nodiscard]] ReturnCode cc_sweep(const ProfilePair& profiles, float x_normsampleinterval,
                                  float x_offset_max, const SweepArrays& arrays,
                                  SweepOptimum& optimum);

} // namespace vialto
