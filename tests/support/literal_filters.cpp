#include "support/literal_filters.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "filters/slope.hpp"

namespace vialto::test {

namespace {

constexpr double cutoff_correction = 0.8633841081005059;

double cotangent(float dx, double cutoff) {
    return 1.0 / std::tan(static_cast<double>(dx) * 0.5 * (6.283185307 / cutoff));
}

// Each section forwards and backwards. The first sample of a pass is taken `opening` times; the
// second, and every later one of the first-order section, becomes first(x0, x1, y1).
template <class First>
std::vector<double> run_both_ways(std::vector<double> y, double opening, const First& first,
                                  const std::array<double, 4>& second) {
    const auto [c0, c1, d1, d2] = second;
    for (const bool second_order : {false, true, false, true}) {
        const std::vector<double> x = y;
        for (std::size_t i = 0; i < x.size(); ++i) {
            y[i] = i == 0 ? opening * x[0]
                   : i == 1 || !second_order
                       ? first(x[i], x[i - 1], y[i - 1])
                       : c1 * x[i - 1] - d1 * y[i - 1] - d2 * y[i - 2] + c0 * (x[i - 2] + x[i]);
        }
        if (!second_order) {
            std::reverse(y.begin(), y.end());
        }
    }
    return y;
}

} // namespace

std::vector<float> literal_moving_average(std::span<const float> profile, std::size_t base,
                                          std::size_t half, bool high_pass) {
    std::vector<float> p(profile.size() + 2 * half);
    std::copy(profile.begin(), profile.end(), p.data() + half);
    const float a = lrslop(profile.first(half));
    const float b = lrslop(profile.last(half));
    for (std::size_t k = 1; k <= half; ++k) {
        p[half - k] = profile.front() - static_cast<float>(k) * a;
        p[half + profile.size() + k - 1] = profile.back() + static_cast<float>(k) * b;
    }
    const auto length = static_cast<float>(base);
    float mean = std::accumulate(p.data(), p.data() + base, 0.0F) / length;
    std::vector<float> filtered;
    for (std::size_t i = 0; i < profile.size(); ++i) {
        if (i > 0) {
            mean = mean + (p[i - 1 + base] - p[i - 1]) / length;
        }
        filtered.push_back(high_pass ? profile[i] - mean : mean);
    }
    return filtered;
}

std::vector<double> literal_butterworth_high_pass(std::vector<double> profile, float interval,
                                                  float wavelength) {
    const double c = cotangent(interval, static_cast<double>(wavelength) / cutoff_correction);
    const double e = c + c * c + 1.0;
    const auto first = [&](double x0, double x1, double y1) {
        return c / (c + 1.0) * x0 + -c / (c + 1.0) * x1 - (1.0 - c) / (c + 1.0) * y1;
    };
    return run_both_ways(
        std::move(profile), 0.0, first,
        {c * c / e, -2.0 * (c * c) / e, -2.0 * (c * c - 1.0) / e, (c * c + 1.0 - c) / e});
}

std::vector<double> literal_butterworth_low_pass(std::vector<double> profile, float interval,
                                                 float wavelength) {
    const double c = cotangent(interval, static_cast<double>(wavelength) * cutoff_correction);
    const double f = c * c + 1.0;
    const double g = c + f;
    const auto first = [&](double x0, double x1, double y1) {
        return 1.0 / (c + 1.0) * (x1 + x0) - (1.0 - c) / (c + 1.0) * y1;
    };
    return run_both_ways(std::move(profile), 1.0, first,
                         {1.0 / g, 2.0 / g, -2.0 * (c * c - 1.0) / g, (f - c) / g});
}

float literal_bridge_level(std::span<const float> window, float tolerance) {
    float z = *std::max_element(window.begin(), window.end());
    float v = 0.0F;
    do {
        z = (z - tolerance) + v;
        v = 0.0F;
        for (const float sample : window) {
            v = v + std::max(sample - z, 0.0F);
        }
        v = v / static_cast<float>(window.size());
    } while (std::abs(tolerance - v) / tolerance > 0.001F);
    return tolerance + z;
}

std::vector<std::complex<double>> literal_band_pass_signal(std::span<const float> profile,
                                                           float interval, float shortest,
                                                           float longest) {
    using Complex = std::complex<double>;
    const auto dt = static_cast<double>(interval);
    const auto warped = [&](float wavelength) {
        return 2.0 / dt * std::tan(6.28318530717958 / static_cast<double>(wavelength) * dt / 2.0);
    };
    const double width = (warped(shortest) - warped(longest)) * 0.5;
    const double centre = (warped(shortest) + warped(longest)) * 0.5;
    const float mean =
        std::accumulate(profile.begin(), profile.end(), 0.0F) / static_cast<float>(profile.size());
    std::vector<Complex> x;
    for (const float sample : profile) {
        x.emplace_back(static_cast<double>(sample - mean));
    }
    for (const bool backward : {false, true}) {
        for (int k = 1; k <= 3; ++k) {
            const auto theta = static_cast<float>(2 * k + 2) * 3.1415927F / 6.0F;
            const Complex s =
                dt * (width * std::polar(1.0, static_cast<double>(theta)) + Complex{0.0, centre});
            const Complex a = (2.0 + s) / (2.0 - s);
            const Complex b = dt * width / (2.0 - s);
            const auto either = [&](Complex z) { return backward ? std::conj(z) : z; };
            const std::vector<Complex> y = x;
            for (std::size_t i = 0; i < x.size(); ++i) {
                x[i] = i == 0 ? either(b) * y[0]
                              : either(a) * x[i - 1] + either(b) * (y[i - 1] + y[i]);
            }
        }
        std::reverse(x.begin(), x.end());
    }
    return x;
}

} // namespace vialto::test
