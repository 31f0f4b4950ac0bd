// The profile index of a profilograph trace, lot by lot, and the list of its defects.
//
// Reference: ASTM E1274, Standard Test Method for Measuring Pavement Roughness Using a
// Profilograph.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// Both indexes of a lot that is too short to have one. It is a value, not a failure.
inline constexpr float no_profile_index = -1.0F;

// In the order of the host's array. Heights have the unit of the trace.
struct PGSettings {
    float BlankingBand;    // full width of the band about the trend line
    float MinScallopWidth; // m
    float MinScallopHeight;
    float ScallopRound;     // rounding step of scallop heights; 0.0 for none
    float BumpCutoffHeight; // written to the diagnostic file, read by no step
    float BumpChordlength;  // m; likewise
};

struct LotResult {
    float xBBUpperStart = 0.0F; // blanking band at both ends of the lot
    float xBBUpperEnd = 0.0F;
    float xBBLowerStart = 0.0F;
    float xBBLowerEnd = 0.0F;
    float RawPI = no_profile_index; // height per metre
    float RndPI = no_profile_index;
};

// A lot of the stretch: 0-based samples, both included. 64-bit, since the host's numbers count from
// the start of its trace and may lie anywhere.
struct TraceLot {
    std::int64_t iStart;
    std::int64_t iEnd;
    LotResult result;
};

// Given: the interval [m], the settings, the trace of the stretch, the lots, in any order and free
// to overlap.
// Returned: the result of each lot; the number of defects, and so many records in tDefects, which
// has room for 5000: lot by lot, the partial scallop at the lot's start, the whole scallops in the
// order in which they close, the partial scallop at its end. Their indexes and distances count from
// the start of the stretch.
//
// A lot of one sample or none gets -1.0 in both indexes and a band of 0.0, wherever it lies.
//
// Fails, under the name "pgindex", for a lot that reaches outside the stretch and at the limits of
// 1000 scallops in a lot and 5000 defects. iNumDefects then counts the defects of the lots before,
// and records of the failing lot may stand behind them.
[[nodiscard]] ReturnCode pgindex(float xStepSize, const PGSettings& settings,
                                 std::span<const float> xTrace, std::span<TraceLot> tLots,
                                 std::int32_t& iNumDefects, std::span<tPGDefect> tDefects);

} // namespace vialto
