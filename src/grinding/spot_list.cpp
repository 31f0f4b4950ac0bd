#include "grinding/spot_list.hpp"

#include <algorithm>

#include "grinding/grindsimu.hpp"
#include "numeric/rounding.hpp"

namespace vialto {

namespace {

// The samples first to last count from 1, both inclusive.
void set_flags(std::span<std::int32_t> iGrindFlags, std::int32_t first, std::int32_t last,
               std::int32_t flag) {
    std::fill(iGrindFlags.begin() + (first - 1), iGrindFlags.begin() + last, flag);
}

} // namespace

void SpotList::rebuild_active() {
    iActive.clear();
    for (std::size_t place = 0; place < tGrindSpots.size(); ++place) {
        if (tGrindSpots[place].iStatus == spot_active) {
            iActive.push_back(static_cast<std::int32_t>(place));
        }
    }
}

void drop_spot(Spot& spot, std::span<std::int32_t> iGrindFlags) {
    spot.iStatus = spot_dropped;
    set_flags(iGrindFlags, spot.iStart, spot.iEnd, idx_grindflag_none);
}

ReturnCode tossout_shortgrindspots(float x_grindlength_min, float xStepSize,
                                   std::span<std::int32_t> iGrindFlags, SpotList& spots) {
    const std::int32_t iMinLen = nint(x_grindlength_min / xStepSize);
    const bool all_listed = gather_stretches(
        1, static_cast<std::int64_t>(iGrindFlags.size()),
        [&](std::size_t i) { return iGrindFlags[i] != idx_grindflag_none; }, spots.tGrindSpots);
    for (Spot& spot : spots.tGrindSpots) {
        if (spot.iEnd - spot.iStart < iMinLen) {
            drop_spot(spot, iGrindFlags);
        }
    }
    if (!all_listed) {
        return raise_failure("i_maxspots exceeded for grinding - try smaller sections",
                             "tossout_shortgrindspots");
    }
    spots.rebuild_active();
    return success;
}

void merge_closegrindspots(float x_grindgap_min, float xStepSize,
                           std::span<std::int32_t> iGrindFlags, SpotList& spots) {
    const std::int32_t iMinGap = nint(x_grindgap_min / xStepSize);
    const auto active_spot = [&](std::size_t place) -> Spot& {
        return spots.tGrindSpots[static_cast<std::size_t>(spots.iActive[place])];
    };
    std::size_t p = 0;
    for (std::size_t t = 1; t < spots.iActive.size(); ++t) {
        Spot& growing = active_spot(p);
        Spot& next = active_spot(t);
        if (next.iStart - growing.iEnd < iMinGap) {
            set_flags(iGrindFlags, growing.iEnd + 1, next.iStart - 1, idx_grindflag_within);
            growing.iEnd = next.iEnd;
            next.iStatus = spot_dropped;
        } else {
            ++p;
        }
    }
    spots.rebuild_active();
}

} // namespace vialto
