// Stretches of samples: gathering them along the profile, and the list of candidate grind spots,
// from which short ones are dropped and in which close ones are joined.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

inline constexpr std::int32_t spot_active = 1;
inline constexpr std::int32_t spot_dropped = 2;

// The samples of a spot count from 1, both ends inclusive.
struct Spot {
    std::int32_t iStatus;
    std::int32_t iStart;
    std::int32_t iEnd;
};

struct SpotList {
    std::vector<Spot> tGrindSpots;     // in order along the profile
    std::vector<std::int32_t> iActive; // places of the active spots in it, from 0, in order

    void rebuild_active();
};

// The spot is not to be ground, and its flags become 1.
void drop_spot(Spot& spot, std::span<std::int32_t> iGrindFlags);

// Walks the samples first to last of a profile, counted from 1, and adds each stretch of those that
// `marked` names, by their places from 0, to the list.
//
// Deliberately, a stretch that is open at the first sample of the walk starts at 1 and ends at the
// length of its run, wherever the walk starts; and a stretch that opens on the last sample of the
// walk is counted but not listed.
//
// Returns false, with the stretches before it listed, where the count exceeds vialto_i_maxspots.
template <class Marked>
[[nodiscard]] bool gather_stretches(std::int64_t first, std::int64_t last, const Marked& marked,
                                    std::vector<Spot>& stretches) {
    std::optional<Spot> open;
    for (std::int64_t i = first; i <= last; ++i) {
        if (!marked(static_cast<std::size_t>(i) - 1)) {
            if (open) {
                stretches.push_back(*open);
            }
            open.reset();
        } else if (!open) {
            if (stretches.size() == vialto_i_maxspots) {
                return false;
            }
            const auto start = static_cast<std::int32_t>(i == first ? 1 : i);
            open = {spot_active, start, start};
        } else {
            ++open->iEnd;
            if (i == last) {
                stretches.push_back(*open);
            }
        }
    }
    return true;
}

// Lists the stretches whose flag is not 1, and drops those shorter than x_grindlength_min [m]: they
// become dropped spots, and their flags 1. The length is a difference of sample numbers.
//
// Fails where there are more than vialto_i_maxspots; the short ones before are dropped already.
[[nodiscard]] ReturnCode tossout_shortgrindspots(float x_grindlength_min, float xStepSize,
                                                 std::span<std::int32_t> iGrindFlags,
                                                 SpotList& spots);

// Joins active spots whose gap, a difference of sample numbers, is below x_grindgap_min [m]: the
// gap is flagged 2, the first spot grows to the end of the second, which is dropped.
//
// Deliberately, the growing spot moves on by one place in the list of active spots where a gap is
// wide enough, not to the spot just compared, and may so be one that was joined before.
void merge_closegrindspots(float x_grindgap_min, float xStepSize,
                           std::span<std::int32_t> iGrindFlags, SpotList& spots);

} // namespace vialto
