#include "comparison/sweep_estimate.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "comparison/units.hpp"

namespace vialto {

namespace {

// What rounding of the 64-bit sums may take of SweepEstimate::tolerance; the rest is for the
// roundings to 32 bits.
constexpr double accuracy_of_sums = 1.0e-7;

} // namespace

StretchSums::StretchSums(std::span<const double> samples)
    : sums_(samples.size() + 1), sums_of_squares_(samples.size() + 1) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        sums_[i + 1] = sums_[i] + samples[i];
        sums_of_squares_[i + 1] = sums_of_squares_[i] + samples[i] * samples[i];
    }
}

std::optional<StretchSums::Stretch> StretchSums::over(std::size_t first, std::size_t count) const {
    const auto n = static_cast<double>(count);
    const double sum = sums_[first + count] - sums_[first];
    const double squares = sums_of_squares_[first + count] - sums_of_squares_[first];
    const double variance_sum = squares - sum * sum / n;
    // Each of the N additions errs by half an epsilon of its result: a running sum of squares does
    // not exceed the last one, S, nor a running sum sqrt(N S). That makes N S epsilon in `squares`,
    // and sqrt(N / n) times twice that in the term of the mean.
    const auto additions = static_cast<double>(sums_.size());
    const double worst_error = 4.0 * std::numeric_limits<double>::epsilon() * additions *
                               std::sqrt(additions / n) * sums_of_squares_.back();
    if (!(worst_error < accuracy_of_sums * variance_sum)) {
        return std::nullopt;
    }
    return Stretch{sum, variance_sum};
}

SweepEstimate::SweepEstimate(const ProfilePair& profiles)
    : reference_(centred(profiles.reference.samples)), test_(centred(profiles.test.samples)),
      reference_sums_(std::span(reference_).first(profiles.reference.samples.size())),
      test_sums_(std::span(test_).first(profiles.test.samples.size())) {}

std::vector<double> SweepEstimate::centred(std::span<const float> profile) {
    const double mean =
        std::accumulate(profile.begin(), profile.end(), 0.0) / static_cast<double>(profile.size());
    std::vector<double> deviations(profile.size() + block - 1);
    std::transform(profile.begin(), profile.end(), deviations.begin(),
                   [mean](float sample) { return static_cast<double>(sample) - mean; });
    return deviations;
}

std::optional<Agreement> SweepEstimate::at(const Overlap& overlap) {
    if (overlap.count < 2) {
        return std::nullopt;
    }
    const auto count = static_cast<std::size_t>(overlap.count);
    const auto reference =
        reference_sums_.over(static_cast<std::size_t>(overlap.reference_first), count);
    const auto test = test_sums_.over(static_cast<std::size_t>(overlap.test_first), count);
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
// last products are those with the zeros behind the moving profile. Each sum is taken in ascending
// order; the lags stand side by side in the vector registers.
SweepEstimate::ProductBlock SweepEstimate::products(bool test_moves, std::size_t first_lag) const {
    const std::vector<double>& fixed = test_moves ? reference_ : test_;
    const std::vector<double>& moving = test_moves ? test_ : reference_;
    constexpr std::size_t padding = block - 1;
    const std::size_t count = std::min(fixed.size() - padding, moving.size() - padding - first_lag);
    const double* const first = moving.data() + first_lag;
    std::array<double, block> sums{};
    for (std::size_t i = 0; i < count; ++i) {
        const double sample = fixed[i];
        for (std::size_t lag = 0; lag < block; ++lag) {
            sums[lag] += sample * first[i + lag];
        }
    }
    return {test_moves, first_lag, sums};
}

} // namespace vialto
