#include "support/literal_spectrum.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace vialto::test {

namespace {

std::complex<double> root(std::size_t k, std::size_t n) {
    return std::polar(1.0,
                      -2.0 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(n));
}

float logarithm(std::size_t n) {
    return static_cast<float>(std::log(static_cast<double>(n)));
}

std::size_t power_of_2(float exponent) {
    return std::size_t{1} << static_cast<int>(exponent);
}

std::vector<float> literal_grid(const tPSDCon& settings, float dx, std::size_t N) {
    std::size_t p = power_of_2(logarithm(N) / 0.6931472F);
    p = p >= N ? p : 2 * p;
    const float df0 = 1.0F / (dx * static_cast<float>(p - 1));
    const float fmax = 0.5F / dx;
    std::vector<float> f{0.0F};
    if (settings.iOctaveBands == 2) {
        const float df = std::max(settings.xFreqInterval, df0);
        const auto M = std::min(static_cast<int>(fmax / df + 2.0F), 100000);
        for (int i = 1; i <= M; ++i) {
            f.push_back(i == 1 ? df : f.back() + df);
        }
        return f;
    }
    const auto points = static_cast<float>(settings.iPointsPerOctave);
    const auto r = static_cast<float>(
        std::pow(2.0, static_cast<double>(1.0F / (points < 1.0F ? 6.0F : points))));
    for (f.push_back(df0); f.size() == 2 || f.back() <= fmax;) {
        f.push_back(std::max(f.back() * r, f.back() + df0));
    }
    return f;
}

} // namespace

std::vector<std::complex<double>> literal_fourier(const std::vector<std::complex<double>>& x) {
    const std::size_t n = x.size();
    std::vector<std::complex<double>> bins(n);
    if (n == 1) {
        return x;
    }
    std::vector<std::complex<double>> even(n / 2);
    std::vector<std::complex<double>> odd(n / 2);
    for (std::size_t i = 0; i < n / 2; ++i) {
        even[i] = x[2 * i];
        odd[i] = x[2 * i + 1];
    }
    even = literal_fourier(even);
    odd = literal_fourier(odd);
    for (std::size_t j = 0; j < n / 2; ++j) {
        const std::complex<double> turned = root(j, n) * odd[j];
        bins[j] = even[j] + turned;
        bins[j + n / 2] = even[j] - turned;
    }
    return bins;
}

LiteralSpectrum literal_spectrum(const tPSDCon& settings, float dx,
                                 const std::vector<float>& profile) {
    const std::vector<float> f = literal_grid(settings, dx, profile.size());
    const std::size_t n = profile.size() - 1;
    const std::size_t nfft = power_of_2(logarithm(n) / 0.6931472F + 0.99999F);
    std::vector<std::complex<double>> y(nfft);
    double sum = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        sum += static_cast<double>(profile[i + 1] - profile[i]);
    }
    const auto mean = static_cast<float>(sum / static_cast<double>(n));
    for (std::size_t i = 0; i < std::min(n, nfft); ++i) {
        y[i] = static_cast<double>(profile[i + 1] - profile[i] - mean);
    }
    const double scale = 2.0 / static_cast<double>(nfft) *
                         std::sqrt(static_cast<double>(nfft) / static_cast<double>(n));
    y = literal_fourier(y);

    const float dfft = 1.0F / (dx * static_cast<float>(nfft));
    const auto nHalf = static_cast<int>(nfft / 2);
    LiteralSpectrum out{f, std::vector<float>(f.size()), 1, static_cast<int>(f.size()) - 3};
    const auto mid = [&](int i) {
        const float a = f[static_cast<std::size_t>(i)];
        const float b = f[static_cast<std::size_t>(i) + 1];
        return settings.iOctaveBands == 2 ? (a + b) * 0.5F : std::sqrt(a * b);
    };
    for (int i = 1; i <= out.iLast; ++i) {
        if (mid(i) < dfft) {
            out.iFirst = i + 1;
        }
        if (mid(i) > dfft * static_cast<float>(nHalf - 1)) {
            out.iLast = i - 1;
            break;
        }
    }
    const float s = 1.0F / dx;
    float raw = 0.0F;
    int k = 1;
    for (int i = out.iFirst; i <= out.iLast; ++i) {
        const auto kHi = static_cast<int>(mid(i) / dfft + 1.0F);
        if (kHi >= k + 1) {
            double squares = 0.0;
            for (int j = k + 1; j <= kHi; ++j) {
                squares += std::norm(scale * y[static_cast<std::size_t>(j) - 1]);
            }
            raw = static_cast<float>(squares) / (static_cast<float>((kHi - k) * 2) * dfft);
            k = kHi;
        }
        const auto at = static_cast<std::size_t>(i);
        const auto sine =
            static_cast<float>(std::sin(static_cast<double>(3.14159265F * dx * f[at])));
        out.density[at] = settings.iPSDType == 1 ? raw * ((s * s * dx * dx) * 0.25F) / (sine * sine)
                                                 : raw * (s * s);
    }
    return out;
}

} // namespace vialto::test
