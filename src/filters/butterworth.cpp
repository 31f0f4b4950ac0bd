#include "filters/butterworth.hpp"

#include <cmath>
#include <cstddef>
#include <string_view>
#include <vector>

#include "filters/cascade.hpp"
#include "filters/centred_band.hpp"
#include "filters/slope.hpp"

namespace vialto {

namespace {

// Of the cutoff, for the two passes of each section.
constexpr double cutoff_correction = 0.8633841081005059;
constexpr double two_pi = 6.283185307; // the digits of the design, deliberately no more

// The first-order sections. A high-pass opens from zero, a low-pass from the end sample.
struct HighPassSection {
    double b0;
    double b1;
    double a1;
    [[nodiscard]] static double opening(double) { return 0.0; }
    [[nodiscard]] double step(double x0, double x1, double y1) const {
        return b0 * x0 + b1 * x1 - a1 * y1;
    }
};

struct LowPassSection {
    double e0;
    double a1;
    [[nodiscard]] static double opening(double x0) { return x0; }
    [[nodiscard]] double step(double x0, double x1, double y1) const {
        return e0 * (x1 + x0) - a1 * y1;
    }
};

// One pass of a first-order section. x1 and y1 are the input and output one step back.
template <class Section>
class FirstOrderPass {
public:
    explicit FirstOrderPass(const Section& section) : section_(section) {}

    double open(double x0) {
        y1_ = section_.opening(x0);
        x1_ = x0;
        return y1_;
    }
    double second(double x0) { return next(x0); }
    double next(double x0) {
        y1_ = section_.step(x0, x1_, y1_);
        x1_ = x0;
        return y1_;
    }

private:
    Section section_;
    double x1_ = 0.0;
    double y1_ = 0.0;
};

struct SecondOrderSection {
    double c0;
    double c1;
    double d1;
    double d2;
};

// One pass of a second-order section, which opens with one step of the first-order one.
template <class Section>
class SecondOrderPass {
public:
    SecondOrderPass(const Section& opening, const SecondOrderSection& section)
        : opening_(opening), section_(section) {}

    double open(double x0) { return shift(x0, opening_.opening(x0)); }
    double second(double x0) { return shift(x0, opening_.step(x0, x1_, y1_)); }
    double next(double x0) {
        const auto [c0, c1, d1, d2] = section_;
        return shift(x0, c1 * x1_ - d1 * y1_ - d2 * y2_ + c0 * (x2_ + x0));
    }

private:
    double shift(double x0, double y0) {
        x2_ = x1_;
        x1_ = x0;
        y2_ = y1_;
        y1_ = y0;
        return y0;
    }

    Section opening_;
    SecondOrderSection section_;
    double x1_ = 0.0;
    double x2_ = 0.0;
    double y1_ = 0.0;
    double y2_ = 0.0;
};

template <class Section>
struct Design {
    FirstOrderPass<Section> first;
    SecondOrderPass<Section> second;

    Design(const Section& section1, const SecondOrderSection& section2)
        : first(section1), second(section1, section2) {}
};

// The cotangent that the bilinear transform asks for; the cutoff is in metres.
double cotangent(double dx, double cutoff) {
    const double w = dx * 0.5 * (two_pi / cutoff);
    return 1.0 / std::tan(w);
}

Design<HighPassSection> high_pass_design(double dx, double xLongWavelength) {
    const double c = cotangent(dx, xLongWavelength / cutoff_correction);
    const double d = c + 1.0;
    const double cc = c * c;
    const double e = c + cc + 1.0;
    return {{c / d, -c / d, (1.0 - c) / d},
            {cc / e, -2.0 * cc / e, -2.0 * (cc - 1.0) / e, (cc + 1.0 - c) / e}};
}

Design<LowPassSection> low_pass_design(double dx, double xShortWavelength) {
    const double c = cotangent(dx, xShortWavelength * cutoff_correction);
    const double cc = c * c;
    const double f = cc + 1.0;
    const double g = c + f;
    return {{1.0 / (c + 1.0), (1.0 - c) / (c + 1.0)},
            {1.0 / g, 2.0 / g, -2.0 * (cc - 1.0) / g, (f - c) / g}};
}

// A pass and its successor in the same direction share a sweep.
template <class Section>
void run_passes(std::span<double> x, const Design<Section>& design) {
    run_cascade(x.begin(), x.end(), design.first);
    run_cascade(x.rbegin(), x.rend(), design.second, design.first);
    run_cascade(x.begin(), x.end(), design.second);
}

void run_band_pass(std::span<double> x, const Design<HighPassSection>& high,
                   const Design<LowPassSection>& low) {
    run_cascade(x.begin(), x.end(), high.first);
    run_cascade(x.rbegin(), x.rend(), high.second, high.first);
    run_cascade(x.begin(), x.end(), high.second, low.first);
    run_cascade(x.rbegin(), x.rend(), low.second, low.first);
    run_cascade(x.begin(), x.end(), low.second);
}

} // namespace

ReturnCode zeb_bwfilter(std::int32_t iBWFilterType, std::int32_t iOutType, float xStepSize,
                        float xShortWavelength, float xLongWavelength,
                        std::span<const float> xProfile, std::span<float> xFiltered,
                        std::int32_t& iBegin, std::int32_t& iEnd) {
    constexpr std::string_view name = "zeb_bwfilter";
    const bool band_pass = iBWFilterType == idx_subfilttyp_bandpass;
    const bool high_pass = band_pass || iBWFilterType == idx_subfilttyp_highpass;
    const bool low_pass = band_pass || iBWFilterType == idx_subfilttyp_lowpass;
    const auto dx = static_cast<double>(xStepSize);
    const auto longest = static_cast<double>(xLongWavelength);
    const auto shortest = static_cast<double>(xShortWavelength);

    if (high_pass && 2.0 * dx * cutoff_correction > longest) {
        return raise_failure("Highpass cutoff is below the threshold value (~ 2 x Step * 0.86). "
                             "Try again with a larger value.",
                             name);
    }
    if (low_pass && shortest < 2.0 * dx / cutoff_correction) {
        return raise_failure("Lowpass cutoff is below the threshold value(~ 2 * Step / 0.86). "
                             "Try again with a larger value.",
                             name);
    }

    std::vector<double> x(xProfile.begin(), xProfile.end());
    if (band_pass) {
        run_band_pass(x, high_pass_design(dx, longest), low_pass_design(dx, shortest));
    } else if (high_pass) {
        run_passes(x, high_pass_design(dx, longest));
    } else if (low_pass) {
        run_passes(x, low_pass_design(dx, shortest));
    }
    for (std::size_t i = 0; i < x.size(); ++i) {
        xFiltered[i] = static_cast<float>(x[i]);
    }
    if (iOutType == idx_filtouttyp_slope) {
        covertslope_differences(xFiltered, xStepSize);
    }
    iBegin = 1;
    iEnd = static_cast<std::int32_t>(x.size());
    return success;
}

ReturnCode bwfilt_drv(std::span<const float> xProfile, float xStepSize, tFiltCon& settings,
                      std::span<float> xFiltered) {
    constexpr std::string_view name = "bwfilt_drv";
    std::int32_t iBegin = 0;
    std::int32_t iEnd = 0;
    ReturnCode code = success;
    switch (settings.iSubFilterType) {
    case idx_subfilttyp_none:
        return success;
    case idx_subfilttyp_bandpass:
    case idx_subfilttyp_lowpass:
    case idx_subfilttyp_highpass:
        code = zeb_bwfilter(settings.iSubFilterType, settings.iOutType, xStepSize,
                            settings.xShortWavelength, settings.xLongWavelength, xProfile,
                            xFiltered, iBegin, iEnd);
        break;
    case idx_subfilttyp_centredband:
        code = DRBWfilt_drv_prof(xStepSize, settings.xShortWavelength, settings.xLongWavelength,
                                 xProfile, xFiltered, iBegin, iEnd);
        break;
    default:
        return raise_failure("iBWFilterType is not within range", name);
    }
    if (code != success) {
        return pass_failure(name);
    }
    settings.iBeginElemIdx = iBegin - 1;
    settings.iEndElemIdx = iEnd - 1;
    return success;
}

} // namespace vialto
