#include "comparison/sweep_estimate.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "numeric/units.hpp"
#include "numeric/vector_width.hpp"

namespace vialto {

namespace {

// What rounding of the 64-bit sums may take of SweepEstimate::tolerance; the rest is for the
// roundings to 32 bits.
constexpr double accuracy_of_sums = 1.0e-7;

constexpr std::size_t mark_distance = 16; // samples from one mark of the running sums to the next

// Adds the products of the fixed samples with those that lie 0 to block - 1 places behind `moving`.
// Each sum is taken in ascending order; the lags stand side by side in the vector registers.
VIALTO_WIDE_VECTORS void add_products(std::span<const double> fixed, const double* moving,
                                      SweepEstimate::LagSums& sums) {
    SweepEstimate::LagSums held = sums;
    for (std::size_t i = 0; i < fixed.size(); ++i) {
        const double sample = fixed[i];
        for (std::size_t lag = 0; lag < held.size(); ++lag) {
            held[lag] += sample * moving[i + lag];
        }
    }
    sums = held;
}

} // namespace

void CentredProfile::RunningSums::add(double deviation) {
    sum += deviation;
    sum_of_squares += deviation * deviation;
}

CentredProfile::CentredProfile(std::span<const float> samples)
    : samples_(samples), mean_(std::accumulate(samples.begin(), samples.end(), 0.0) /
                               static_cast<double>(samples.size())),
      marks_(samples.size() / mark_distance + 2) {
    RunningSums sums{};
    std::size_t i = 0;
    for (RunningSums& mark : marks_) {
        mark = sums;
        for (const std::size_t end = std::min(i + mark_distance, samples.size()); i < end; ++i) {
            sums.add(deviation(i));
        }
    }
}

double CentredProfile::deviation(std::size_t i) const {
    return static_cast<double>(samples_[i]) - mean_;
}

VIALTO_WIDE_VECTORS void CentredProfile::deviations(std::size_t first,
                                                    std::span<double> deviations) const {
    const std::size_t held = std::min(deviations.size(), samples_.size() - first);
    for (std::size_t i = 0; i < held; ++i) {
        deviations[i] = deviation(first + i);
    }
    std::fill(deviations.begin() + static_cast<std::ptrdiff_t>(held), deviations.end(), 0.0);
}

CentredProfile::RunningSums CentredProfile::ahead_of(std::size_t place) const {
    RunningSums sums = marks_[place / mark_distance];
    for (std::size_t i = place - place % mark_distance; i < place; ++i) {
        sums.add(deviation(i));
    }
    return sums;
}

std::optional<CentredProfile::Stretch> CentredProfile::over(std::size_t first,
                                                            std::size_t count) const {
    const auto n = static_cast<double>(count);
    const RunningSums ahead = ahead_of(first);
    const RunningSums upto = ahead_of(first + count);
    const double sum = upto.sum - ahead.sum;
    const double squares = upto.sum_of_squares - ahead.sum_of_squares;
    const double variance_sum = squares - sum * sum / n;
    // Each of the N additions errs by half an epsilon of its result: a running sum of squares does
    // not exceed the last one, S, nor a running sum sqrt(N S). That makes N S epsilon in `squares`,
    // and sqrt(N / n) times twice that in the term of the mean.
    const auto additions = static_cast<double>(samples_.size() + 1);
    const double worst_error = 4.0 * std::numeric_limits<double>::epsilon() * additions *
                               std::sqrt(additions / n) * marks_.back().sum_of_squares;
    if (!(worst_error < accuracy_of_sums * variance_sum)) {
        return std::nullopt;
    }
    return Stretch{sum, variance_sum};
}

SweepEstimate::SweepEstimate(const ProfilePair& profiles)
    : reference_(profiles.reference.samples), test_(profiles.test.samples) {}

std::optional<Agreement> SweepEstimate::at(const Overlap& overlap) {
    if (overlap.count < 2) {
        return std::nullopt;
    }
    const auto count = static_cast<std::size_t>(overlap.count);
    const auto reference =
        reference_.over(static_cast<std::size_t>(overlap.reference_first), count);
    const auto test = test_.over(static_cast<std::size_t>(overlap.test_first), count);
    if (!reference || !test) {
        return std::nullopt;
    }
    const auto n = static_cast<double>(count);
    const double rms_base = std::sqrt(reference->variance_sum / n);
    const double rms_test = std::sqrt(test->variance_sum / n);
    const auto x_rms_base = static_cast<float>(rms_base);
    const auto x_rms_test = static_cast<float>(rms_test);
    // Close to the limit the definition decides.
    if (both_flat(x_rms_base / 2.0F, x_rms_test / 2.0F)) {
        return std::nullopt;
    }
    const double covariance_sum = product_sum(overlap.offset) - reference->sum * test->sum / n;
    // The roundings of sngl_croxcorr, whose normalised segments have n as the sum of their squares.
    const auto c = static_cast<float>(covariance_sum / (rms_base * rms_test));
    return Agreement{.roughness = static_cast<float>(static_cast<double>(c) / n) * percent,
                     .shape = shape_factor(x_rms_base, x_rms_test)};
}

double SweepEstimate::product_sum(std::int64_t offset) {
    const bool test_moves = offset < 0;
    const auto lag = static_cast<std::size_t>(test_moves ? -offset : offset);
    const std::size_t place = lag % block;
    const std::size_t first_lag = lag - place;
    if (!products_ || products_->test_moves != test_moves || products_->first_lag != first_lag) {
        products_ = products(test_moves, first_lag);
    }
    return products_->sums[place];
}

// One pass over the overlap of the smallest lag serves all lags of the block: with a larger lag the
// last products are those with the zeros behind the moving profile.
SweepEstimate::ProductBlock SweepEstimate::products(bool test_moves, std::size_t first_lag) const {
    const CentredProfile& fixed = test_moves ? reference_ : test_;
    const CentredProfile& moving = test_moves ? test_ : reference_;
    constexpr std::size_t part = 1024; // samples, in 64-bit a small part of the cache
    std::array<double, part> fixed_part;
    std::array<double, part + block - 1> moving_part;
    const std::size_t count = std::min(fixed.size(), moving.size() - first_lag);
    LagSums sums{};
    for (std::size_t first = 0; first < count; first += part) {
        const auto samples = std::span(fixed_part).first(std::min(part, count - first));
        fixed.deviations(first, samples);
        moving.deviations(first_lag + first, moving_part);
        add_products(samples, moving_part.data(), sums);
    }
    return {test_moves, first_lag, sums};
}

} // namespace vialto
