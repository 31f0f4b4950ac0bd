#include "comparison/sweep.hpp"

#include <cstddef>
#include <limits>
#include <optional>

#include "comparison/sweep_estimate.hpp"
#include "numeric/units.hpp"

namespace vialto {

namespace {

Overlap overlap_of_position(std::size_t k, const SweepArrays& arrays, const ProfilePair& profiles) {
    const std::int64_t half = std::ssize(arrays.final_cc) / 2;
    return overlap_at(static_cast<std::int64_t>(k) - half, profiles);
}

void store(const SweepArrays& arrays, std::size_t k, const Agreement& agreement) {
    arrays.roughness[k] = agreement.roughness;
    arrays.shape[k] = agreement.shape;
    arrays.final_cc[k] = agreement.roughness * agreement.shape;
}

// The first position with the largest value; 0 if no value is a number.
std::size_t first_largest(std::span<const float> values) {
    std::size_t best = 0;
    float largest = -std::numeric_limits<float>::infinity();
    for (std::size_t k = 0; k < values.size(); ++k) {
        if (values[k] > largest) {
            largest = values[k];
            best = k;
        }
    }
    return best;
}

// Estimates that differ by less than their tolerance cannot tell which offset is best: those that
// may be are computed by their definition.
ReturnCode settle_best(const ProfilePair& profiles, const SweepArrays& arrays,
                       OverlapSegments& segments) {
    const std::span<const float> values = arrays.final_cc;
    const float contender =
        values[first_largest(values)] - 2.0F * percent * SweepEstimate::tolerance;
    for (std::size_t k = 0; k < values.size(); ++k) {
        if (values[k] >= contender) {
            Agreement agreement{};
            if (compute_agreement(profiles, overlap_of_position(k, arrays, profiles), segments,
                                  agreement) != success) {
                return failure;
            }
            store(arrays, k, agreement);
        }
    }
    return success;
}

} // namespace

ReturnCode cc_sweep(const ProfilePair& profiles, float x_normsampleinterval, float x_offset_max,
                    const SweepArrays& arrays, SweepOptimum& optimum) {
    if (arrays.final_cc.empty()) {
        optimum = {};
        return success;
    }
    SweepEstimate estimate(profiles);
    OverlapSegments segments;
    for (std::size_t k = 0; k < arrays.final_cc.size(); ++k) {
        const Overlap overlap = overlap_of_position(k, arrays, profiles);
        std::optional<Agreement> agreement = estimate.at(overlap);
        if (!agreement &&
            compute_agreement(profiles, overlap, segments, agreement.emplace()) != success) {
            return failure;
        }
        store(arrays, k, *agreement);
        arrays.offset[k] = static_cast<float>(k) * x_normsampleinterval - x_offset_max;
    }
    if (settle_best(profiles, arrays, segments) != success) {
        return failure;
    }
    const std::size_t k = first_largest(arrays.final_cc);
    optimum = {.index = static_cast<std::int32_t>(k),
               .offset = arrays.offset[k],
               .roughness = arrays.roughness[k],
               .shape = arrays.shape[k],
               .final_cc = arrays.final_cc[k]};
    return success;
}

} // namespace vialto
