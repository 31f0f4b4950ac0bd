#include "support/roads.hpp"

#include <cmath>
#include <numbers>
#include <random>

namespace vialto::test {

std::vector<float> straight_line(std::size_t count, double interval, double slope) {
    std::vector<float> profile(count);
    for (std::size_t i = 0; i < count; ++i) {
        profile[i] = static_cast<float>(slope * static_cast<double>(i) * interval);
    }
    return profile;
}

std::vector<float> sinusoid(std::size_t count, double interval, double wavelength,
                            double amplitude) {
    std::vector<float> profile(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double phase =
            2.0 * std::numbers::pi * static_cast<double>(i) * interval / wavelength;
        // To 40 binary places, in which all mathematical libraries agree.
        const double sine = std::ldexp(std::round(std::ldexp(std::sin(phase), 40)), -40);
        profile[i] = static_cast<float>(amplitude * sine);
    }
    return profile;
}

std::vector<float> random_road(std::size_t count, double interval, std::uint32_t seed) {
    // White slope, held to the plain by a slow leak: the spectrum of a pavement.
    std::mt19937 generator(seed);
    const double scale = 0.0016 * std::sqrt(interval);
    const double leak = 1.0 - interval / 30.0;
    std::vector<float> profile(count);
    double elevation = 0.0;
    for (float& sample : profile) {
        const double uniform = static_cast<double>(generator()) / 4294967296.0 - 0.5;
        elevation = elevation * leak + scale * uniform * std::sqrt(12.0);
        sample = static_cast<float>(elevation);
    }
    return profile;
}

} // namespace vialto::test
