#include "profilograph/scallops.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace vialto {

namespace {

constexpr float partial_width_factor = 0.33F;     // of the width of a whole scallop
constexpr float smallest_height = 1.1920929e-07F; // epsilon of float32

// A lower scallop is an upper one of the trace turned upside down: below, "height" is sign * y, and
// a change of sign loses no bit. Where the two sides differ all the same, it is deliberate.
struct Side {
    std::int32_t Type;
    float sign;
};

constexpr Side above{idx_pgdefect_above, 1.0F};
constexpr Side below{idx_pgdefect_below, -1.0F};

struct Lot {
    std::span<const float> y;
    float xStepSize;
    float bu; // upper edge of the band; the lower one is 0.0 - bu
    float inv;
    const ScallopRules& rules;

    // The one place where sample numbers become indexes.
    [[nodiscard]] float height(Side side, std::size_t i) const { return side.sign * y[i - 1]; }

    // i * xStepSize for a sample number or a number of intervals.
    [[nodiscard]] float length(std::size_t i) const { return static_cast<float>(i) * xStepSize; }

    [[nodiscard]] float highest(Side side, std::size_t first, std::size_t last) const {
        float result = height(side, first);
        for (std::size_t i = first + 1; i <= last; ++i) {
            result = std::max(result, height(side, i));
        }
        return result;
    }

    // The place of the crossing ahead of sample i, the first one outside the band. Of an upper
    // scallop it is measured from the sample before, of a lower one from that sample itself. Ahead
    // of the lot's first sample there is no crossing to measure.
    [[nodiscard]] float crossing_ahead(Side side, std::size_t i) const {
        const std::size_t anchor = side.Type == idx_pgdefect_above ? i - 1 : i;
        return i > 1 ? length(anchor) + (bu - height(side, anchor)) / slope(side, i)
                     : length(anchor);
    }

    // The place of the crossing behind, projected along the slope that ends at sample i; that
    // sample's own where the lot starts with it.
    [[nodiscard]] float crossing_behind(Side side, std::size_t i) const {
        return i > 1 ? length(i) - (bu - height(side, i)) / slope(side, i) : length(i);
    }

    // Steepness between the samples i - 1 and i.
    [[nodiscard]] float slope(Side side, std::size_t i) const {
        return std::fabs(height(side, i) - height(side, i - 1)) * inv;
    }

    [[nodiscard]] float height_by_rules(float h) const {
        if (rules.MinScallopHeight > h) {
            return 0.0F;
        }
        if (rules.ScallopRound > 0.0F) {
            return std::trunc(h / rules.ScallopRound + 0.5F) * rules.ScallopRound;
        }
        return h;
    }
};

// Judges the scallop with the first sample s outside the band and the first sample e back in it.
ReturnCode evaluate(const Lot& lot, Side side, std::size_t s, std::size_t e, LotScallops& found) {
    if (found.scallops.size() >= vialto_mxScallops) {
        // Deliberately under the name of its caller: the path reads pgindex/pgindex/pgindex_dll.
        return raise_failure("maximum number of scallops exceeds the program limits. Try with "
                             "smaller segments",
                             "pgindex");
    }
    // The raw height counts whatever the rules make of it.
    const float raw = lot.highest(side, s, e) - lot.bu;
    found.xSumRaw += raw;
    const float height = lot.height_by_rules(raw);
    if (!(height > smallest_height)) {
        return success;
    }
    found.xSumRnd += height;
    found.scallops.push_back({.Type = side.Type,
                              .BeginX = lot.crossing_ahead(side, s),
                              .EndX = lot.crossing_behind(side, e),
                              .iStart = static_cast<std::int32_t>(s),
                              .iEnd = static_cast<std::int32_t>(e - 1),
                              .MxHts = height});
    return success;
}

// Follows the trace on one side of the band.
class Excursion {
public:
    explicit Excursion(Side side) : side_(side) {}

    // One step of the scan, to sample number i. A trace that starts outside the band has opened
    // nothing, and so closes nothing.
    [[nodiscard]] ReturnCode step(const Lot& lot, std::size_t i, LotScallops& found) {
        const float here = lot.height(side_, i);
        const float before = lot.height(side_, i - 1);
        if (here > lot.bu && lot.bu >= before) {
            start_ = i;
        } else if (lot.bu >= here && before > lot.bu && start_ < i) {
            const std::size_t s = start_;
            start_ = none_open;
            if (lot.length(i - s) >= lot.rules.MinScallopWidth) {
                return evaluate(lot, side_, s, i, found);
            }
        }
        return success;
    }

private:
    static constexpr std::size_t none_open = std::numeric_limits<std::size_t>::max();

    Side side_;
    std::size_t start_ = none_open;
};

constexpr std::size_t block = 16; // samples that are looked at together

// Whether the trace passes an edge of the band on its way to any of the samples of the block from
// `first` on: only then has one of them a step to take.
bool passes_edge(const Lot& lot, std::size_t first) {
    std::int32_t passes = 0; // not a bool, for the loop to need no branch
    for (std::size_t i = first; i < first + block; ++i) {
        for (const Side side : {above, below}) {
            const bool outside = lot.height(side, i) > lot.bu;
            const bool was_outside = lot.height(side, i - 1) > lot.bu;
            passes |= outside != was_outside ? 1 : 0;
        }
    }
    return passes != 0;
}

ReturnCode scan_whole_scallops(const Lot& lot, LotScallops& found) {
    Excursion upper(above);
    Excursion lower(below);
    const std::size_t n = lot.y.size();
    std::size_t i = 2;
    while (i <= n) {
        if (i + block <= n + 1 && !passes_edge(lot, i)) {
            i += block;
            continue;
        }
        for (const std::size_t end = std::min(i + block, n + 1); i < end; ++i) {
            if (upper.step(lot, i, found) != success || lower.step(lot, i, found) != success) {
                return failure;
            }
        }
    }
    return success;
}

// Gives a partial scallop over the samples first to last its heights. Tells whether it is high
// enough to be one.
bool measure_partial(const Lot& lot, Side side, std::size_t first, std::size_t last,
                     PartialScallop& partial) {
    partial.xRawHt = lot.highest(side, first, last) - lot.bu;
    partial.xRndHt = lot.height_by_rules(partial.xRawHt);
    return partial.xRndHt > smallest_height;
}

// Looks for the partial scallop in which the lot starts, up to sample `limit`.
void find_start_partial(const Lot& lot, Side side, std::size_t limit, PartialScallop& partial) {
    std::size_t j = 2;
    while (j <= limit && !(lot.bu > lot.height(side, j))) {
        ++j;
    }
    const std::size_t m = j - 1;
    if (lot.length(j - 2) < partial_width_factor * lot.rules.MinScallopWidth ||
        !measure_partial(lot, side, 1, m, partial)) {
        return;
    }
    partial.iType = side.Type;
    partial.iStart = 1;
    // Deliberately one less than the last sample outside the band; and the crossing is projected
    // forward from that sample, not taken between it and the next.
    partial.iEnd = static_cast<std::int32_t>(j - 2);
    partial.EndX = lot.crossing_behind(side, m);
    // Deliberately one interval farther for a lower scallop.
    partial.BeginX = side.Type == idx_pgdefect_above ? 0.0F : lot.xStepSize;
}

// Looks for the partial scallop in which the lot ends, down to sample `first`.
void find_end_partial(const Lot& lot, Side side, std::size_t first, PartialScallop& partial) {
    const std::size_t n = lot.y.size();
    std::size_t p = n - 1;
    while (p >= first && !(lot.bu > lot.height(side, p))) {
        --p;
    }
    if (lot.length(n - p - 1) < partial_width_factor * lot.rules.MinScallopWidth ||
        !measure_partial(lot, side, p + 1, n, partial)) {
        return;
    }
    partial.iType = side.Type;
    partial.iStart = static_cast<std::int32_t>(p + 1);
    partial.iEnd = static_cast<std::int32_t>(n);
    partial.BeginX = lot.crossing_ahead(side, p + 1);
    partial.EndX = lot.length(n);
}

void find_partial_scallops(const Lot& lot, LotScallops& found) {
    const std::size_t n = lot.y.size();
    const bool none = found.scallops.empty();
    const std::size_t limit =
        none ? n : static_cast<std::size_t>(found.scallops.front().iStart) - 1;
    const std::size_t first = none ? 1 : static_cast<std::size_t>(found.scallops.back().iEnd) + 1;
    for (const Side side : {above, below}) {
        if (lot.height(side, 1) > lot.bu) {
            find_start_partial(lot, side, limit, found.edges.start);
        }
        if (lot.height(side, n) > lot.bu) {
            find_end_partial(lot, side, first, found.edges.end);
        }
    }
}

} // namespace

ReturnCode CountScallops(std::span<const float> y, float xStepSize, const ScallopRules& rules,
                         LotScallops& found) {
    const Lot lot{.y = y,
                  .xStepSize = xStepSize,
                  .bu = rules.BlankingBand * 0.5F,
                  .inv = 1.0F / xStepSize,
                  .rules = rules};
    found.scallops.clear();
    found.xSumRaw = 0.0F;
    found.xSumRnd = 0.0F;
    found.edges = {};
    if (y.empty()) {
        return success;
    }
    if (scan_whole_scallops(lot, found) != success) {
        return failure;
    }
    find_partial_scallops(lot, found);
    return success;
}

} // namespace vialto
