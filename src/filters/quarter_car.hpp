// The quarter-car filter: the response of a two-mass vehicle model to a profile. One recursion
// serves two parameter sets, that of the International Roughness Index (IRI) and that of the Ride
// Number (RN, called PTRN in messages).
//
// Reference: M. W. Sayers, "On the Calculation of International Roughness Index from Longitudinal
// Road Profile", Transportation Research Record 1501, 1995; ASTM E1926 (IRI) and E1489 (RN).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "numeric/inverse.hpp"
#include "vialto/vialto.h"

namespace vialto {

struct tQcarParams {
    float xInitLength; // initialization length [m]
    float xStatPower;  // exponent of the summary statistic, 1 or 2
    float xK1;         // tyre spring rate per sprung mass [1/s^2]
    float xK2;         // suspension spring rate per sprung mass [1/s^2]
    float xC;          // damper rate per sprung mass [1/s]
    float xMu;         // unsprung to sprung mass ratio
    float xSpeed;      // simulation speed [km/h]
};

[[nodiscard]] tQcarParams iri_parameters();
[[nodiscard]] tQcarParams rn_parameters(float xSimuVelocity);

// At most so many tracks go through one quarter car side by side. Each has the bits that it has
// alone; together they take little longer than one.
inline constexpr std::size_t most_tracks = 2;

struct QuarterCarTrack {
    std::span<const float> xProfile; // elevations
    std::span<float> xFiltered = {}; // as long
    float xQcarStat = 0.0F;          // the summary statistic
};

// idx_filttyp_IRI and idx_filttyp_RN.
//
// Given: the profiles of one track or two, N elevations each, their interval [m], iMainFilterType,
// if250mmFilter, iOutType and, for RN, xSimuVelocity [km/h].
// Returned: the filtered slope (iOutType 2) or its integral (1), N values, of which the last iBase
// ones, iBase being the base of the moving average in samples, have no slope of their own; the
// summary statistic (IRI: mean absolute slope, RN: root mean square); iBeginElemIdx 0 and
// iEndElemIdx N - iBase - 1, or -1 if no sample is filtered, the statistic then being a NaN.
//
// Fails for any other type, a switch other than 1 and 2 and, after the filter has run, for an
// output type other than 1 and 2, which leaves the slope in xFiltered and the statistic set.
[[nodiscard]] ReturnCode qcarfilt_drv(std::span<QuarterCarTrack> tracks, float xStepSize,
                                      tFiltCon& settings);

// The filter behind qcarfilt_drv.
//
// Given: base length of the moving average [m] (0.0: slope over one interval), scale factor on the
// slopes, parameters.
// Returned: filtered slope, statistic, and the 1-based first and last filtered sample.
[[nodiscard]] ReturnCode qcar_filter(std::span<QuarterCarTrack> tracks, float xStepSize,
                                     float xBase, float xSlopeScale, const tQcarParams& parameters,
                                     std::int32_t& iBegin, std::int32_t& iEnd);

// The same filter in pieces, for a caller that runs it anew from the middle of a profile on: the
// slope of a sample depends on those before it through the state alone.

inline constexpr std::size_t qcar_states = 4;

// Height and velocity of the sprung mass, then of the unsprung mass.
using QuarterCarState = std::array<float, qcar_states>;

// A quarter car on profiles of one interval.
struct QuarterCar {
    SquareMatrix<qcar_states> st; // X(i) = st X(i-1) + pr u(i), u(i) being a slope of the profile
    std::array<float, qcar_states> pr;
    std::int32_t iBase; // samples that a slope is taken over
    float xStepSize;    // m
    float xSlopeScale;  // factor on the slopes
    float xInitLength;  // m
};

// Base length of the moving average ahead of the quarter car [m], as if250mmFilter selects it.
[[nodiscard]] float quarter_car_base_length(std::int32_t if250mmFilter);

// Fails as qcar_filter for an initialization length of 0 or a system that has no inverse.
[[nodiscard]] ReturnCode set_up_quarter_car(float xStepSize, float xBase, float xSlopeScale,
                                            const tQcarParams& parameters, QuarterCar& car);

// The number of samples, of `count`, that have a slope.
[[nodiscard]] std::size_t count_slopes(const QuarterCar& car, std::size_t count);

// The state ahead of the first sample.
[[nodiscard]] QuarterCarState start_state(const QuarterCar& car, std::span<const float> xProfile);

// At most so many stretches go through one quarter car side by side.
inline constexpr std::size_t most_runs = 4;

// A stretch of a track on its way through the quarter car.
struct QuarterCarRun {
    std::span<const float> profile = {}; // from the stretch's first sample on
    QuarterCarState state = {}; // ahead of that sample, and then of the one behind the last
    std::span<float> y = {};    // the filtered slopes, as many as it has room for
};

// Filters stretches, equally long, whichever tracks they lie on and samples they start from. Each
// has the bits that it has alone; together they take little longer than one.
void run_quarter_car(const QuarterCar& car, std::span<QuarterCarRun> runs);

} // namespace vialto
