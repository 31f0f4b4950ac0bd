// The agreement of two profiles at offset after offset, from sums that one offset hands to the
// next. Its work for an offset is one product and one addition a sample; the definition normalises
// and correlates both stretches anew, at more than twenty times the cost.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "comparison/overlap.hpp"

namespace vialto {

// Sum and sum of squares over a window that slides along a profile.
class SlidingSums {
public:
    explicit SlidingSums(const std::vector<double>& samples) : samples_(samples) {}

    // Moves the window to `count` samples from `first`, entering and leaving samples one by one.
    void move_to(std::size_t first, std::size_t count);

    [[nodiscard]] double sum() const { return sum_; }
    // Sum of the squared deviations from the window's mean.
    [[nodiscard]] double variance_sum() const;
    // Whether rounding, at its worst, leaves variance_sum as good as the sweep promises. It does
    // not where most of what went into the sums has left the window or cancels, nor with a NaN.
    [[nodiscard]] bool accurate() const;

private:
    void enter(double sample);
    void leave(double sample);

    const std::vector<double>& samples_;
    std::size_t first_ = 0;
    std::size_t end_ = 0;
    double sum_ = 0.0;
    double squares_ = 0.0;
    double largest_squares_ = 0.0;
    double additions_ = 0.0;
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
    // or an infinity, stretches that are flat or close to it, cancellation, fewer than two samples.
    // Cheapest when the offsets come in their order.
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
    SlidingSums reference_sums_;
    SlidingSums test_sums_;
    std::optional<ProductBlock> products_;
};

} // namespace vialto
