#include "support/literal_filters.hpp"

#include <algorithm>
#include <cmath>

namespace vialto::test {

namespace {

// Element i of an array whose elements count from 1.
template <class Element>
Element& at(std::vector<Element>& array, std::size_t i) {
    return array[i - 1];
}

float literal_line_slope(std::vector<float>& p, std::size_t first, std::size_t count) {
    if (count < 2) {
        return 0.0F;
    }
    double s1 = 0.0;
    double s2 = 0.0;
    double sy = 0.0;
    double siy = 0.0;
    for (std::size_t i = 1; i <= count; ++i) {
        const auto x = static_cast<double>(i);
        const auto y = static_cast<double>(at(p, first + i - 1));
        s1 += x;
        s2 += x * x;
        sy += y;
        siy += x * y;
    }
    const auto n = static_cast<double>(count);
    return static_cast<float>((n * siy - sy * s1) / (n * s2 - s1 * s1));
}

// Runs the passes of a Butterworth filter, each given as a function of the samples in its own
// direction.
template <class FirstOrder, class SecondOrder>
void run_both_ways(std::vector<double>& x, const FirstOrder& first_order,
                   const SecondOrder& second_order) {
    x = first_order(x);
    std::reverse(x.begin(), x.end());
    x = second_order(x);
    x = first_order(x);
    std::reverse(x.begin(), x.end());
    x = second_order(x);
}

constexpr double cutoff_correction = 0.8633841081005059;

double cotangent(double dx, double cutoff) {
    return 1.0 / std::tan(dx * 0.5 * (6.283185307 / cutoff));
}

} // namespace

std::vector<float> literal_moving_average(std::span<const float> profile, std::size_t base,
                                          std::size_t half, bool high_pass) {
    const std::size_t n = profile.size();
    std::vector<float> p(n + 2 * half);
    for (std::size_t i = 1; i <= n; ++i) {
        at(p, half + i) = profile[i - 1];
    }
    const float a = literal_line_slope(p, half + 1, half);
    const float b = literal_line_slope(p, n + 1, half);
    for (std::size_t k = 1; k <= half; ++k) {
        at(p, k) = at(p, half + 1) - static_cast<float>(half - k + 1) * a;
        at(p, half + n + k) = at(p, half + n) + static_cast<float>(k) * b;
    }
    const auto length = static_cast<float>(base);
    float mean = 0.0F;
    for (std::size_t i = 1; i <= base; ++i) {
        mean = mean + at(p, i);
    }
    mean = mean / length;
    std::vector<float> filtered(n);
    for (std::size_t i = 1; i <= n; ++i) {
        if (i > 1) {
            mean = mean + (at(p, i - 1 + base) - at(p, i - 1)) / length;
        }
        at(filtered, i) = high_pass ? at(p, half + i) - mean : mean;
    }
    return filtered;
}

std::vector<float> literal_anti_smoothing(std::span<const float> profile, std::size_t length,
                                          std::size_t shift) {
    std::vector<float> p(profile.begin(), profile.end());
    std::vector<float> y(profile.size() - length);
    for (std::size_t i = 2; i <= length + 1; ++i) {
        at(y, 1) = at(y, 1) + at(p, i);
    }
    for (std::size_t i = 1; i < y.size(); ++i) {
        at(y, i + 1) = at(y, i) + at(p, i + length + 1) - at(p, i + 1);
    }
    for (std::size_t i = 1; i <= y.size(); ++i) {
        at(y, i) = at(p, i + shift) - at(y, i) / static_cast<float>(length);
    }
    return y;
}

std::vector<double> literal_butterworth_high_pass(std::vector<double> profile, float interval,
                                                  float wavelength) {
    using Samples = std::vector<double>;
    const double c = cotangent(static_cast<double>(interval),
                               static_cast<double>(wavelength) / cutoff_correction);
    const double b0 = c / (c + 1.0);
    const double b1 = -c / (c + 1.0);
    const double a1 = (1.0 - c) / (c + 1.0);
    const double e = c + c * c + 1.0;
    const double c0 = c * c / e;
    const double c1 = -2.0 * (c * c) / e;
    const double d1 = -2.0 * (c * c - 1.0) / e;
    const double d2 = (c * c + 1.0 - c) / e;
    const auto first_order = [&](Samples x) {
        Samples y(x.size());
        for (std::size_t i = 2; i <= x.size(); ++i) {
            at(y, i) = b0 * at(x, i) + b1 * at(x, i - 1) - a1 * at(y, i - 1);
        }
        return y;
    };
    const auto second_order = [&](Samples x) {
        Samples y(x.size());
        if (x.size() > 1) {
            at(y, 2) = b0 * at(x, 2) + b1 * at(x, 1) - a1 * at(y, 1);
        }
        for (std::size_t i = 3; i <= x.size(); ++i) {
            at(y, i) = c1 * at(x, i - 1) - d1 * at(y, i - 1) - d2 * at(y, i - 2) +
                       c0 * (at(x, i - 2) + at(x, i));
        }
        return y;
    };
    run_both_ways(profile, first_order, second_order);
    return profile;
}

std::vector<double> literal_butterworth_low_pass(std::vector<double> profile, float interval,
                                                 float wavelength) {
    using Samples = std::vector<double>;
    const double c = cotangent(static_cast<double>(interval),
                               static_cast<double>(wavelength) * cutoff_correction);
    const double e0 = 1.0 / (c + 1.0);
    const double a1 = (1.0 - c) / (c + 1.0);
    const double f = c * c + 1.0;
    const double g = c + f;
    const double g0 = 1.0 / g;
    const double g1 = 2.0 / g;
    const double h1 = -2.0 * (c * c - 1.0) / g;
    const double h2 = (f - c) / g;
    const auto first_order = [&](Samples x) {
        Samples y = x;
        for (std::size_t i = 2; i <= x.size(); ++i) {
            at(y, i) = e0 * (at(x, i - 1) + at(x, i)) - a1 * at(y, i - 1);
        }
        return y;
    };
    const auto second_order = [&](Samples x) {
        Samples y = x;
        if (x.size() > 1) {
            at(y, 2) = e0 * (at(x, 1) + at(x, 2)) - a1 * at(y, 1);
        }
        for (std::size_t i = 3; i <= x.size(); ++i) {
            at(y, i) = g1 * at(x, i - 1) - h1 * at(y, i - 1) - h2 * at(y, i - 2) +
                       g0 * (at(x, i - 2) + at(x, i));
        }
        return y;
    };
    run_both_ways(profile, first_order, second_order);
    return profile;
}

std::optional<float> literal_bridge_level(std::span<const float> window, float tolerance) {
    float z = -10'000'000.0F;
    for (const float sample : window) {
        z = std::max(z, sample);
    }
    float v = 0.0F;
    int iter = 0;
    do {
        iter = iter + 1;
        z = (z - tolerance) + v;
        if (iter > 1000) {
            return std::nullopt;
        }
        v = 0.0F;
        for (const float sample : window) {
            v = v + std::max(sample - z, 0.0F);
        }
        v = v / static_cast<float>(window.size());
    } while (!(std::abs(tolerance - v) / tolerance <= 0.001F));
    return tolerance + z;
}

std::vector<std::complex<double>> literal_band_pass_signal(std::span<const float> profile,
                                                           float interval, float shortest,
                                                           float longest) {
    using Complex = std::complex<double>;
    const auto dt = static_cast<double>(interval);
    const double low = 1.0 / static_cast<double>(longest);
    const double high = 1.0 / static_cast<double>(shortest);
    const double w1 = 2.0 / dt * std::tan(6.28318530717958 * low * dt / 2.0);
    const double w2 = 2.0 / dt * std::tan(6.28318530717958 * high * dt / 2.0);
    const double width = (w2 - w1) * 0.5;
    float mean = 0.0F;
    for (const float sample : profile) {
        mean = mean + sample;
    }
    mean = mean / static_cast<float>(profile.size());
    std::vector<Complex> x;
    for (const float sample : profile) {
        x.emplace_back(static_cast<double>(sample - mean));
    }
    for (const bool backward : {false, true}) {
        for (int k = 1; k <= 3; ++k) {
            const auto theta =
                static_cast<double>(static_cast<float>(2 * k + 2) * 3.1415927F / 6.0F);
            const Complex s = dt * (width * std::polar(1.0, theta) + Complex{0.0, (w1 + w2) * 0.5});
            Complex a = (2.0 + s) / (2.0 - s);
            Complex b = dt * width / (2.0 - s);
            if (backward) {
                a = std::conj(a);
                b = std::conj(b);
            }
            const std::vector<Complex> y = x;
            for (std::size_t i = 0; i < x.size(); ++i) {
                x[i] = i == 0 ? b * y[0] : a * x[i - 1] + b * (y[i - 1] + y[i]);
            }
        }
        std::reverse(x.begin(), x.end());
    }
    return x;
}

} // namespace vialto::test
