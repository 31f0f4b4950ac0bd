#include "filters/centred_band.hpp"

#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <vector>

#include "filters/cascade.hpp"
#include "filters/moving_average.hpp"

namespace vialto {

namespace {

using Complex = std::complex<double>;

constexpr std::int32_t order = 3;
constexpr double two_pi = 6.28318530717958; // the digits of the design
constexpr float pi = 3.1415927F;

// Product and quotient in one fixed order of operations. Those of std::complex look for infinities
// after each product, and the compiler chooses how they divide.
Complex product(const Complex& a, const Complex& b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

Complex quotient(const Complex& a, const Complex& b) {
    const double norm = b.real() * b.real() + b.imag() * b.imag();
    const Complex scaled = product(a, std::conj(b));
    return {scaled.real() / norm, scaled.imag() / norm};
}

// X(i) = a X(i-1) + b (Y(i-1) + Y(i)), Y being the input.
struct ComplexSection {
    Complex a;
    Complex b;
};

class ComplexPass {
public:
    explicit ComplexPass(const ComplexSection& section) : section_(section) {}

    Complex open(const Complex& y0) {
        x1_ = product(section_.b, y0);
        y1_ = y0;
        return x1_;
    }
    Complex second(const Complex& y0) { return next(y0); }
    Complex next(const Complex& y0) {
        x1_ = product(section_.a, x1_) + product(section_.b, y1_ + y0);
        y1_ = y0;
        return x1_;
    }

private:
    ComplexSection section_;
    Complex x1_;
    Complex y1_;
};

using Sections = std::array<ComplexSection, order>;

// The sections of a band from the frequency `low` to `high` [cycles/m]; the interval is dt [m].
Sections design(double dt, double low, double high) {
    const double w1 = (2.0 / dt) * std::tan(two_pi * low * dt / 2.0);
    const double w2 = (2.0 / dt) * std::tan(two_pi * high * dt / 2.0);
    const double half_width = (w2 - w1) * 0.5;
    const double centre = (w1 + w2) * 0.5;
    Sections sections;
    for (std::int32_t k = 1; k <= order; ++k) {
        // The angle of the pole is 32-bit, its cosine and sine are 64-bit.
        const float angle =
            static_cast<float>(k - 1 + order + k) * pi / static_cast<float>(2 * order);
        const auto theta = static_cast<double>(angle);
        const Complex s{dt * (half_width * std::cos(theta)),
                        dt * (half_width * std::sin(theta) + centre)};
        const Complex divisor = 2.0 - s;
        sections[static_cast<std::size_t>(k - 1)] = {quotient(2.0 + s, divisor),
                                                     quotient({dt * half_width, 0.0}, divisor)};
    }
    return sections;
}

ComplexPass forward(const ComplexSection& section) {
    return ComplexPass(section);
}

ComplexPass backward(const ComplexSection& section) {
    return ComplexPass({std::conj(section.a), std::conj(section.b)});
}

} // namespace

ReturnCode DRBWfilt(float dt, double f0, double fc, std::span<const float> xProfile,
                    std::span<std::complex<double>> signal) {
    constexpr std::string_view name = "DRBWfilt";
    const auto interval = static_cast<double>(dt);
    const double low = f0 - fc;
    const double high = f0 + fc;
    if (low <= 0.0) {
        return raise_failure("low corner frequency (f0-fc) <= 0.0", name);
    }
    if (!(high < 1.0 / (2.0 * interval))) {
        return raise_failure("high corner frequency (f0+fc) >= nyquist", name);
    }
    const float mean = box_mean(xProfile);
    for (std::size_t i = 0; i < xProfile.size(); ++i) {
        signal[i] = static_cast<double>(xProfile[i] - mean);
    }
    const auto [first, second, third] = design(interval, low, high);
    run_cascade(signal.begin(), signal.end(), forward(first), forward(second), forward(third));
    run_cascade(signal.rbegin(), signal.rend(), backward(first), backward(second), backward(third));
    return success;
}

ReturnCode DRBWfilt_drv_prof(float xStepSize, float xShortWavelength, float xLongWavelength,
                             std::span<const float> xProfile, std::span<float> xFiltered,
                             std::int32_t& iBegin, std::int32_t& iEnd) {
    const double highest = 1.0 / static_cast<double>(xShortWavelength);
    const double lowest = 1.0 / static_cast<double>(xLongWavelength);
    const double f0 = (highest + lowest) * 0.5;
    const double fc = (highest - lowest) * 0.5;
    std::vector<Complex> signal(xProfile.size());
    if (DRBWfilt(xStepSize, f0, fc, xProfile, signal) != success) {
        return pass_failure("DRBWfilt_drv_prof");
    }
    for (std::size_t i = 0; i < signal.size(); ++i) {
        xFiltered[i] = static_cast<float>(2.0 * signal[i].real());
    }
    iBegin = 1;
    iEnd = static_cast<std::int32_t>(xProfile.size());
    return success;
}

} // namespace vialto
