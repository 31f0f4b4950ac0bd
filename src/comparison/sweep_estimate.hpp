// The agreement of two profiles at offset after offset, with the means and mean squares of all
// overlaps from running sums. Its work for an offset is one product and one addition a sample; the
// definition normalises and correlates both stretches anew, at more than twenty times the cost.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "comparison/overlap.hpp"

namespace vialto {

// Sums over any stretch of a profile, from its running sums.
class StretchSums {
public:
    struct Stretch {
        double sum;
        double variance_sum; // of the squared deviations from the mean of the stretch
    };

    explicit StretchSums(std::span<const double> samples);

    // `count` samples from `first`, at least one. None where rounding, at its worst, could leave
    // variance_sum less good than the sweep promises: where the stretch is close to flat beside the
    // whole profile, and with a NaN.
    [[nodiscard]] std::optional<Stretch> over(std::size_t first, std::size_t count) const;

private:
    // Of all samples ahead of each place, so that the first is 0.
    std::vector<double> sums_;
    std::vector<double> sums_of_squares_;
};

class SweepEstimate {
public:
    // The roughness coefficient and the shape factor lie within this part of their scale of what
    // compute_agreement gives, and so does their product.
    static constexpr float tolerance = 1.0e-6F;

    explicit SweepEstimate(const ProfilePair& profiles);
    SweepEstimate(const SweepEstimate&) = delete;
    SweepEstimate& operator=(const SweepEstimate&) = delete;

    // The agreement at one overlap; none where the sums cannot carry it: a profile that holds a NaN
    // or an infinity, stretches that are flat or close to it, fewer than two samples. Cheapest when
    // the offsets come in their order.
    [[nodiscard]] std::optional<Agreement> at(const Overlap& overlap);

private:
    static constexpr std::size_t block = 16; // offsets served by one pass

    // Sums of products at the lags first_lag to first_lag + block - 1 of one profile, `moving`,
    // behind the other.
    struct ProductBlock {
        bool test_moves;
        std::size_t first_lag;
        std::array<double, block> sums;
    };

    [[nodiscard]] double product_sum(std::int64_t offset);
    [[nodiscard]] ProductBlock products(bool test_moves, std::size_t first_lag) const;
    [[nodiscard]] static std::vector<double> centred(std::span<const float> profile);

    // The profiles less their means, each followed by zeros for the lags of a block that reach
    // beyond its end.
    std::vector<double> reference_;
    std::vector<double> test_;
    StretchSums reference_sums_;
    StretchSums test_sums_;
    std::optional<ProductBlock> products_;
};

} // namespace vialto
