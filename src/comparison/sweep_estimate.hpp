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

// A profile less its mean, in 64-bit. The samples stay as they are, half as large in memory.
class CentredProfile {
public:
    // Sums over a stretch.
    struct Stretch {
        double sum;
        double variance_sum; // of the squared deviations from the mean of the stretch
    };

    explicit CentredProfile(std::span<const float> samples);

    [[nodiscard]] std::size_t size() const { return samples_.size(); }

    // The deviations from place `first` on, no later than the end; behind the end they are 0.
    void deviations(std::size_t first, std::span<double> deviations) const;

    // `count` samples from `first`, at least one. None where rounding, at its worst, could leave
    // variance_sum less good than the sweep promises: where the stretch is close to flat beside the
    // whole profile, and with a NaN.
    [[nodiscard]] std::optional<Stretch> over(std::size_t first, std::size_t count) const;

private:
    struct RunningSums {
        double sum;
        double sum_of_squares;

        void add(double deviation);
    };

    [[nodiscard]] double deviation(std::size_t i) const;
    // Of all samples ahead of a place.
    [[nodiscard]] RunningSums ahead_of(std::size_t place) const;

    std::span<const float> samples_;
    double mean_;
    std::vector<RunningSums> marks_; // ahead of every so many places, and of all samples
};

class SweepEstimate {
public:
    // The roughness coefficient and the shape factor lie within this part of their scale of what
    // compute_agreement gives, and so does their product.
    static constexpr float tolerance = 1.0e-6F;

    // Offsets served by one pass: as many as have a place in 16 vector registers of 128 bits,
    // beside a sample and a product.
    static constexpr std::size_t block = 28;
    using LagSums = std::array<double, block>;

    explicit SweepEstimate(const ProfilePair& profiles);

    // The agreement at one overlap; none where the sums cannot carry it: a profile that holds a NaN
    // or an infinity, stretches that are flat or close to it, fewer than two samples. Cheapest when
    // the offsets come in their order.
    [[nodiscard]] std::optional<Agreement> at(const Overlap& overlap);

private:
    // Sums of products at the lags first_lag to first_lag + block - 1 of one profile, `moving`,
    // behind the other.
    struct ProductBlock {
        bool test_moves;
        std::size_t first_lag;
        LagSums sums;
    };

    [[nodiscard]] double product_sum(std::int64_t offset);
    [[nodiscard]] ProductBlock products(bool test_moves, std::size_t first_lag) const;

    CentredProfile reference_;
    CentredProfile test_;
    std::optional<ProductBlock> products_;
};

} // namespace vialto
