#include "filters/quarter_car.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <type_traits>

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
constexpr std::int32_t most_terms = 1000;             // of the power series
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

// exp(a dt) by its power series, until a term changes no bit of the sum; a NaN changes none either.
Matrix state_transition(const Matrix& a, float dt) {
    Matrix term = unit_matrix();
    Matrix sum = term;
    for (std::int32_t j = 1; j <= most_terms; ++j) {
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
            break;
        }
    }
    return sum;
}

// st and pr of the car: the system over one time step with a constant input.
ReturnCode setstm(const System& system, float dt, QuarterCar& car) {
    constexpr std::string_view name = "setstm";
    car.st = state_transition(system.a, dt);
    Matrix inverse{};
    if (invert(system.a, inverse) != inverse_found) {
        (void)raise_failure("the combination of cutoff wavelengths causes ill-conditioned matrix",
                            name, vialto_code_analysis, fatal);
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
    const float* profile;
    std::size_t base; // samples
    float scale;      // one over the base in metres

    float operator[](std::size_t i) const { return (profile[i + base] - profile[i]) * scale; }
};

Slope slope_of(const QuarterCar& car, std::span<const float> profile) {
    return {profile.data(), static_cast<std::size_t>(car.iBase),
            car.xSlopeScale / (static_cast<float>(car.iBase) * car.xStepSize)};
}

// One number of each run: a float for one run, and for more a vector with room for four. In a
// vector of just two, g++ clears the rest of the register behind each operation.
using FourFloats = float __attribute__((vector_size(4 * sizeof(float))));
template <std::size_t Runs>
using Lanes = std::conditional_t<Runs == 1, float, FourFloats>;

template <std::size_t Runs, class OfRun>
Lanes<Runs> lanes_of(const OfRun& of_run) {
    if constexpr (Runs == 1) {
        return of_run(0);
    } else {
        FourFloats lanes{};
        for (std::size_t run = 0; run < Runs; ++run) {
            lanes[run] = of_run(run);
        }
        return lanes;
    }
}

float lane(float of_one_run, std::size_t) {
    return of_one_run;
}

float lane(const FourFloats& lanes, std::size_t run) {
    return lanes[run];
}

// Runs the recursion over the slope u and writes the filtered slope, that of the suspension,
// X(3) - X(1), from the given state on, which it leaves behind the last sample. Returns the sum of
// magnitude(filtered slope) in ascending order.
//
// Both the slope and the sum are taken here because they cost nothing beside the recursion, which
// waits for its own chain of sums. For the same reason the state stands in four separate variables:
// the products of a step go side by side. And a second run costs little, as its chain is another.
template <std::size_t Runs, class Magnitude>
std::array<float, most_runs> stfilt(const QuarterCar& car, std::span<QuarterCarRun, Runs> runs,
                                    const Magnitude& magnitude) {
    const Matrix st = car.st;
    const Vector pr = car.pr;
    std::array<Slope, Runs> slope;
    std::array<float*, Runs> y;
    for (std::size_t run = 0; run < Runs; ++run) {
        slope[run] = slope_of(car, runs[run].profile);
        y[run] = runs[run].y.data();
    }
    const auto state = [&](std::size_t element) {
        return lanes_of<Runs>([&](std::size_t run) { return runs[run].state[element]; });
    };
    Lanes<Runs> x1 = state(0);
    Lanes<Runs> x2 = state(1);
    Lanes<Runs> x3 = state(2);
    Lanes<Runs> x4 = state(3);
    std::array<float, most_runs> sums{};
    const std::size_t count = runs[0].y.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Lanes<Runs> u = lanes_of<Runs>([&](std::size_t run) { return slope[run][i]; });
        const auto next = [&](std::size_t k) {
            return st[k][0] * x1 + st[k][1] * x2 + st[k][2] * x3 + st[k][3] * x4 + pr[k] * u;
        };
        const Lanes<Runs> next1 = next(0);
        const Lanes<Runs> next2 = next(1);
        const Lanes<Runs> next3 = next(2);
        const Lanes<Runs> next4 = next(3);
        x1 = next1;
        x2 = next2;
        x3 = next3;
        x4 = next4;
        const Lanes<Runs> suspension = x3 - x1;
        for (std::size_t run = 0; run < Runs; ++run) {
            const float filtered = lane(suspension, run);
            y[run][i] = filtered;
            sums[run] += magnitude(filtered);
        }
    }
    for (std::size_t run = 0; run < Runs; ++run) {
        runs[run].state = {lane(x1, run), lane(x2, run), lane(x3, run), lane(x4, run)};
    }
    return sums;
}

template <class Magnitude>
std::array<float, most_runs> stfilt(const QuarterCar& car, std::span<QuarterCarRun> runs,
                                    const Magnitude& magnitude) {
    switch (runs.size()) {
    case 1:
        return stfilt(car, runs.first<1>(), magnitude);
    case 2:
        return stfilt(car, runs.first<2>(), magnitude);
    case 3:
        return stfilt(car, runs.first<3>(), magnitude);
    default:
        return stfilt(car, runs.first<most_runs>(), magnitude);
    }
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

void run_quarter_car(const QuarterCar& car, std::span<QuarterCarRun> runs) {
    (void)stfilt(car, runs, [](float) { return 0.0F; });
}

ReturnCode qcar_filter(std::span<QuarterCarTrack> tracks, float xStepSize, float xBase,
                       float xSlopeScale, const tQcarParams& parameters, std::int32_t& iBegin,
                       std::int32_t& iEnd) {
    QuarterCar car{};
    if (set_up_quarter_car(xStepSize, xBase, xSlopeScale, parameters, car) != success) {
        for (const QuarterCarTrack& track : tracks) {
            std::copy(track.xProfile.begin(), track.xProfile.end(), track.xFiltered.begin());
        }
        return failure;
    }
    const std::size_t filtered_count = count_slopes(car, tracks.front().xProfile.size());
    std::array<QuarterCarRun, most_tracks> room;
    const std::span<QuarterCarRun> runs = std::span(room).first(tracks.size());
    for (std::size_t k = 0; k < runs.size(); ++k) {
        const QuarterCarTrack& track = tracks[k];
        runs[k] = {track.xProfile, start_state(car, track.xProfile),
                   track.xFiltered.first(filtered_count)};
    }
    const bool mean_of_magnitudes = parameters.xStatPower == 1.0F;
    const std::array<float, most_runs> sums =
        mean_of_magnitudes ? stfilt(car, runs, [](float value) { return std::fabs(value); })
                           : stfilt(car, runs, [](float value) { return value * value; });
    for (std::size_t k = 0; k < tracks.size(); ++k) {
        const float mean = sums[k] / static_cast<float>(filtered_count);
        tracks[k].xQcarStat = mean_of_magnitudes ? mean : std::sqrt(mean);
        const std::span<float> tail = tracks[k].xFiltered.subspan(filtered_count);
        std::fill(tail.begin(), tail.end(), 0.0F);
    }
    iBegin = 1;
    iEnd = static_cast<std::int32_t>(filtered_count);
    return success;
}

ReturnCode qcarfilt_drv(std::span<QuarterCarTrack> tracks, float xStepSize, tFiltCon& settings) {
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
    if (qcar_filter(tracks, xStepSize, xBase, xSlopeScale, parameters, iBegin, iEnd) != success) {
        return pass_failure(name);
    }
    if (settings.iOutType == idx_filtouttyp_elevation) {
        for (const QuarterCarTrack& track : tracks) {
            covertslope_integration(track.xFiltered, xStepSize);
        }
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
