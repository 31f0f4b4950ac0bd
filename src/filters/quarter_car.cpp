#include "filters/quarter_car.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "filters/slope.hpp"
#include "numeric/inverse.hpp"
#include "numeric/rounding.hpp"

namespace vialto {

namespace {

constexpr float ini_length_iri = 11.0F;    // m
constexpr float ini_length_rn = 19.0F;     // m
constexpr float speed_iri = 80.0F;         // km/h
constexpr float base_length_250mm = 0.25F; // m
constexpr float kmh_per_mps = 3.6F;
constexpr float smallest_ini_length = 1.1920929e-07F; // m; epsilon of float32

constexpr std::size_t states = qcar_states;

using Matrix = SquareMatrix<states>;
using Vector = std::array<float, states>;

// dX/dt = a X + b u: X is height and velocity of the sprung mass, then of the unsprung mass; u is
// the slope of the profile.
struct System {
    Matrix a;
    Vector b;
};

System setabc(const tQcarParams& p) {
    return {{{{0.0F, 1.0F, 0.0F, 0.0F},
              {-p.xK2, -p.xC, p.xK2, p.xC},
              {0.0F, 0.0F, 0.0F, 1.0F},
              {p.xK2 / p.xMu, p.xC / p.xMu, -(p.xK1 + p.xK2) / p.xMu, -p.xC / p.xMu}}},
            {0.0F, 0.0F, 0.0F, p.xK1 / p.xMu}};
}

Matrix unit_matrix() {
    Matrix unit{};
    for (std::size_t i = 0; i < states; ++i) {
        unit[i][i] = 1.0F;
    }
    return unit;
}

// Sums in ascending order of k, without a leading zero.
Matrix multiply(const Matrix& left, const Matrix& right) {
    Matrix product{};
    for (std::size_t i = 0; i < states; ++i) {
        for (std::size_t j = 0; j < states; ++j) {
            float sum = left[i][0] * right[0][j];
            for (std::size_t k = 1; k < states; ++k) {
                sum += left[i][k] * right[k][j];
            }
            product[i][j] = sum;
        }
    }
    return product;
}

Vector multiply(const Matrix& left, const Vector& right) {
    Vector product{};
    for (std::size_t i = 0; i < states; ++i) {
        float sum = left[i][0] * right[0];
        for (std::size_t k = 1; k < states; ++k) {
            sum += left[i][k] * right[k];
        }
        product[i] = sum;
    }
    return product;
}

bool same_bits(const Matrix& left, const Matrix& right) {
    using Words = std::array<std::uint32_t, states * states>;
    return std::bit_cast<Words>(left) == std::bit_cast<Words>(right);
}

// exp(a dt) by its power series, until a term changes no bit of the sum. A NaN changes none either,
// so the loop ends for every time step.
Matrix state_transition(const Matrix& a, float dt) {
    Matrix term = unit_matrix();
    Matrix sum = term;
    for (std::int32_t j = 1;; ++j) {
        term = multiply(term, a);
        for (Vector& row : term) {
            for (float& element : row) {
                element = element * dt / static_cast<float>(j);
            }
        }
        const Matrix before = sum;
        for (std::size_t i = 0; i < states; ++i) {
            for (std::size_t k = 0; k < states; ++k) {
                sum[i][k] += term[i][k];
            }
        }
        if (same_bits(before, sum)) {
            return sum;
        }
    }
}

// st and pr of the car: the system over one time step with a constant input.
ReturnCode setstm(const System& system, float dt, QuarterCar& car) {
    constexpr std::string_view name = "setstm";
    car.st = state_transition(system.a, dt);
    Matrix inverse{};
    if (invert(system.a, inverse) != inverse_found) {
        (void)raise_failure("the combination of cutoff wavelengths causes ill-conditioned matrix",
                            name, error_code_analysis, fatal);
        // Deliberately named twice: the path reads setstm/setstm.
        return pass_failure(name);
    }
    const Vector moved = multiply(multiply(inverse, car.st), system.b);
    const Vector rest = multiply(inverse, system.b);
    for (std::size_t i = 0; i < states; ++i) {
        car.pr[i] = moved[i] - rest[i];
    }
    return success;
}

// The profile's slope over the moving average's base, sample by sample.
struct Slope {
    std::span<const float> profile;
    std::size_t base; // samples
    float scale;      // one over the base in metres

    float operator[](std::size_t i) const { return (profile[i + base] - profile[i]) * scale; }
};

Slope slope_of(const QuarterCar& car, std::span<const float> profile) {
    return {profile, static_cast<std::size_t>(car.iBase),
            car.xSlopeScale / (static_cast<float>(car.iBase) * car.xStepSize)};
}

// Runs the recursion over the slope u and writes the filtered slope, that of the suspension,
// X(3) - X(1), from the given state on, which it leaves behind the last sample. Returns the sum of
// magnitude(filtered slope) in ascending order.
//
// Both the slope and the sum are taken here because they cost nothing beside the recursion, which
// waits for its own chain of sums. For the same reason the state stands in four separate variables:
// the products of a step run side by side.
template <class Magnitude>
float stfilt(const QuarterCar& car, const Slope& slope, QuarterCarState& state, std::span<float> y,
             const Magnitude& magnitude) {
    const Matrix st = car.st;
    const Vector pr = car.pr;
    auto [x1, x2, x3, x4] = state;
    float sum = 0.0F;
    for (std::size_t i = 0; i < y.size(); ++i) {
        const float u = slope[i];
        const float next1 =
            st[0][0] * x1 + st[0][1] * x2 + st[0][2] * x3 + st[0][3] * x4 + pr[0] * u;
        const float next2 =
            st[1][0] * x1 + st[1][1] * x2 + st[1][2] * x3 + st[1][3] * x4 + pr[1] * u;
        const float next3 =
            st[2][0] * x1 + st[2][1] * x2 + st[2][2] * x3 + st[2][3] * x4 + pr[2] * u;
        const float next4 =
            st[3][0] * x1 + st[3][1] * x2 + st[3][2] * x3 + st[3][3] * x4 + pr[3] * u;
        x1 = next1;
        x2 = next2;
        x3 = next3;
        x4 = next4;
        y[i] = x3 - x1;
        sum += magnitude(y[i]);
    }
    state = {x1, x2, x3, x4};
    return sum;
}

// Slope of the unsmoothed profile over its first iInit samples. It is divided by iInit intervals,
// one more than it spans: deliberate.
float start_slope(std::span<const float> profile, float xStepSize, float xInitLength,
                  float xSlopeScale) {
    if (profile.empty()) {
        return 0.0F;
    }
    const auto beyond_first = static_cast<std::size_t>(truncate(xInitLength / xStepSize + 0.5F));
    const std::size_t iInit = std::min(profile.size(), beyond_first + 1);
    return (profile[iInit - 1] - profile[0]) * xSlopeScale /
           (xStepSize * static_cast<float>(iInit));
}

} // namespace

tQcarParams iri_parameters() {
    return {ini_length_iri, 1.0F, 653.0F, 63.3F, 6.0F, 0.15F, speed_iri};
}

tQcarParams rn_parameters(float xSimuVelocity) {
    return {ini_length_rn, 2.0F, 5120.0F, 390.0F, 17.0F, 0.036F, xSimuVelocity};
}

float quarter_car_base_length(std::int32_t if250mmFilter) {
    return if250mmFilter == vialto_yes ? base_length_250mm : 0.0F;
}

ReturnCode set_up_quarter_car(float xStepSize, float xBase, float xSlopeScale,
                              const tQcarParams& parameters, QuarterCar& car) {
    constexpr std::string_view name = "qcar_filter"; // whose part this is
    if (parameters.xInitLength < smallest_ini_length) {
        return raise_failure("initialization length for IRI/PTRN should not be zero", name);
    }
    car.iBase = std::max(1, truncate(xBase / xStepSize + 0.5F));
    car.xStepSize = xStepSize;
    car.xSlopeScale = xSlopeScale;
    car.xInitLength = parameters.xInitLength;
    const float dt = xStepSize / (parameters.xSpeed / kmh_per_mps);
    return setstm(setabc(parameters), dt, car) == success ? success : pass_failure(name);
}

std::size_t count_slopes(const QuarterCar& car, std::size_t count) {
    const auto base = static_cast<std::size_t>(car.iBase);
    return count > base ? count - base : 0;
}

QuarterCarState start_state(const QuarterCar& car, std::span<const float> xProfile) {
    const float slope = start_slope(xProfile, car.xStepSize, car.xInitLength, car.xSlopeScale);
    return {slope, 0.0F, slope, 0.0F};
}

void run_quarter_car(const QuarterCar& car, std::span<const float> xProfile, std::size_t first,
                     QuarterCarState& state, std::span<float> y) {
    (void)stfilt(car, slope_of(car, xProfile.subspan(first)), state, y, [](float) { return 0.0F; });
}

ReturnCode qcar_filter(std::span<const float> xProfile, float xStepSize, float xBase,
                       float xSlopeScale, const tQcarParams& parameters, std::span<float> xFiltered,
                       float& xQcarStat, std::int32_t& iBegin, std::int32_t& iEnd) {
    QuarterCar car{};
    if (set_up_quarter_car(xStepSize, xBase, xSlopeScale, parameters, car) != success) {
        std::copy(xProfile.begin(), xProfile.end(), xFiltered.begin());
        return failure;
    }
    const std::size_t filtered_count = count_slopes(car, xProfile.size());
    const Slope slope = slope_of(car, xProfile);
    QuarterCarState state = start_state(car, xProfile);
    const std::span<float> y = xFiltered.first(filtered_count);

    const bool mean_of_magnitudes = parameters.xStatPower == 1.0F;
    const float sum =
        mean_of_magnitudes
            ? stfilt(car, slope, state, y, [](float value) { return std::fabs(value); })
            : stfilt(car, slope, state, y, [](float value) { return value * value; });
    const float mean = sum / static_cast<float>(filtered_count);
    xQcarStat = mean_of_magnitudes ? mean : std::sqrt(mean);

    iBegin = 1;
    iEnd = static_cast<std::int32_t>(filtered_count);
    std::fill(xFiltered.begin() + iEnd, xFiltered.end(), 0.0F);
    return success;
}

ReturnCode qcarfilt_drv(std::span<const float> xProfile, float xStepSize, tFiltCon& settings,
                        std::span<float> xFiltered, float& xQcarStat) {
    constexpr std::string_view name = "qcarfilt_drv";
    tQcarParams parameters{};
    if (settings.iMainFilterType == idx_filttyp_IRI) {
        parameters = iri_parameters();
    } else if (settings.iMainFilterType == idx_filttyp_RN) {
        parameters = rn_parameters(settings.xSimuVelocity);
    } else {
        return raise_failure("tFiltCon%iMainFilterType is not either IRI nor RN", name);
    }
    if (settings.if250mmFilter != vialto_yes && settings.if250mmFilter != vialto_no) {
        return raise_failure("tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-", name);
    }
    const float xBase = quarter_car_base_length(settings.if250mmFilter);
    constexpr float xSlopeScale = 1.0F;
    std::int32_t iBegin = 0;
    std::int32_t iEnd = 0;
    if (qcar_filter(xProfile, xStepSize, xBase, xSlopeScale, parameters, xFiltered, xQcarStat,
                    iBegin, iEnd) != success) {
        return pass_failure(name);
    }
    if (settings.iOutType == idx_filtouttyp_elevation) {
        covertslope_integration(xFiltered, xStepSize);
    } else if (settings.iOutType != idx_filtouttyp_slope) {
        return raise_failure(
            "tFiltCon%iOutType is not either idx_filtouttyp_elevation nor idx_filtouttyp_slope",
            name);
    }
    settings.iBeginElemIdx = iBegin - 1;
    settings.iEndElemIdx = iEnd - 1;
    return success;
}

} // namespace vialto
