// Scallops: excursions of a detrended profilograph trace outside the blanking band.
//
// Sample numbers count from 1 within the lot. Sample i stands at the distance i * xStepSize, the
// first one thus one step past the lot's origin. Heights have the unit of the trace.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// Type of a scallop, beside idx_pgdefect_....
inline constexpr std::int32_t no_scallop = 0;

struct ScallopRules {
    float BlankingBand;     // full width of the band about 0.0
    float MinScallopWidth;  // m; narrowest whole scallop that counts
    float ScallopRound;     // rounding step of heights; none at 0.0 or below
    float MinScallopHeight; // a lower raw height counts as 0.0
};

// A whole scallop.
struct Scallop {
    std::int32_t Type;
    float BeginX; // m; where the trace leaves the band
    float EndX;   // m; where it comes back
    std::int32_t iStart;
    std::int32_t iEnd;
    float MxHts; // height by the rules
};

// A scallop cut off by an end of the lot. With type no_scallop there is none.
struct PartialScallop {
    std::int32_t iType = no_scallop;
    std::int32_t iStart = 0;
    std::int32_t iEnd = 0;
    float BeginX = 0.0F; // m
    float EndX = 0.0F;   // m
    float xRawHt = 0.0F; // height before the rules
    float xRndHt = 0.0F; // height by the rules
};

struct tScallopEdges {
    PartialScallop start;
    PartialScallop end;
};

struct LotScallops {
    std::vector<Scallop> scallops; // in the order in which they close
    float xSumRaw = 0.0F;          // raw heights of the whole scallops, the dropped ones included
    float xSumRnd = 0.0F;          // heights by the rules
    tScallopEdges edges;
};

// Counts the scallops of one lot.
//
// Given: the detrended lot y, the interval [m], the rules.
// Returned: the whole scallops that are wide and high enough, the sums over whole scallops, and the
// partial scallops at both ends, which are in neither the list nor the sums.
//
// Samples exactly on the edge of the band are inside it, and a NaN is neither inside nor outside.
//
// Fails with "maximum number of scallops exceeds the program limits. Try with smaller segments" at
// the candidate after the thousandth scallop, even if its height would have dropped it; the edges
// are then cleared.
[[nodiscard]] ReturnCode CountScallops(std::span<const float> y, float xStepSize,
                                       const ScallopRules& rules, LotScallops& found);

} // namespace vialto
