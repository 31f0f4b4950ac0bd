#include "profilograph/profile_index.hpp"

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "numeric/line_fit.hpp"
#include "profilograph/scallops.hpp"

namespace vialto {

namespace {

constexpr std::string_view name = "pgindex";

// The lot from which on a start partial scallop takes an earlier end partial scallop out.
constexpr std::size_t first_lot_that_takes_out = 3;

// The trend line of a lot: its height at the first and at the last sample.
struct Trend {
    float yStart;
    float yEnd;
};

ScallopRules rules_of(const PGSettings& settings) {
    return {.BlankingBand = settings.BlankingBand,
            .MinScallopWidth = settings.MinScallopWidth,
            .ScallopRound = settings.ScallopRound,
            .MinScallopHeight = settings.MinScallopHeight};
}

// Distances of the first `count` samples from the first one.
std::vector<float> distances(std::size_t count, float xStepSize) {
    std::vector<float> x(count);
    for (std::size_t k = 0; k < count; ++k) {
        x[k] = static_cast<float>(static_cast<std::int32_t>(k)) * xStepSize;
    }
    return x;
}

// The samples without their least-squares line, in y; all have the length of x.
Trend DetrendProfile(const Line& line, std::span<const float> x, std::span<const float> samples,
                     std::span<float> y) {
    const auto [b0, b1] = line;
    for (std::size_t k = 0; k < y.size(); ++k) {
        y[k] = samples[k] - b0 - x[k] * b1;
    }
    return {b0, x.back() * b1 + b0};
}

void set_band(const Trend& trend, float half, LotResult& result) {
    result.xBBUpperStart = half + trend.yStart;
    result.xBBUpperEnd = half + trend.yEnd;
    result.xBBLowerStart = trend.yStart - half;
    result.xBBLowerEnd = trend.yEnd - half;
}

Scallop as_scallop(const PartialScallop& partial) {
    return {.Type = partial.iType,
            .BeginX = partial.BeginX,
            .EndX = partial.EndX,
            .iStart = partial.iStart,
            .iEnd = partial.iEnd,
            .MxHts = partial.xRndHt};
}

// What the next lot needs of the last one that was counted; a lot of one sample leaves it alone.
struct PreviousLot {
    PartialScallop end;
    TraceLot* lot = nullptr;
};

// Puts the partial scallop at the lot's start ahead of the others. Of a scallop that straddles a
// lot boundary, both parts count if the later one is the higher, and neither if it is not: that
// asymmetry, the exception of the second lot, and this lot's Linv in the other lot's indexes are
// deliberate.
ReturnCode join_start_partial(std::size_t lot_number, float Linv, const PreviousLot& previous,
                              LotScallops& found) {
    const PartialScallop& start = found.edges.start;
    if (start.iType == no_scallop) {
        return success;
    }
    if (found.scallops.size() >= vialto_mxScallops) {
        return raise_failure("maximum allowable scallops exceeded for a segment", name);
    }
    found.scallops.insert(found.scallops.begin(), as_scallop(start));
    if (start.xRndHt > previous.end.xRndHt) {
        found.xSumRaw += start.xRawHt;
        found.xSumRnd += start.xRndHt;
    } else if (lot_number >= first_lot_that_takes_out && previous.lot != nullptr) {
        previous.lot->result.RndPI -= previous.end.xRndHt * Linv;
        previous.lot->result.RawPI -= previous.end.xRawHt * Linv;
    }
    return success;
}

void append_end_partial(LotScallops& found) {
    const PartialScallop& end = found.edges.end;
    if (end.iType != no_scallop) {
        found.xSumRaw += end.xRawHt;
        found.xSumRnd += end.xRndHt;
        found.scallops.push_back(as_scallop(end));
    }
}

// Writes the scallops of a lot behind the iNumDefects records that stand.
ReturnCode write_defects(const TraceLot& lot, std::span<const Scallop> scallops, float xStepSize,
                         float xSlope, std::int32_t iNumDefects, std::span<tPGDefect> tDefects) {
    auto place = static_cast<std::size_t>(iNumDefects);
    if (place + scallops.size() > std::size_t{vialto_i_PG_maxdefects}) {
        return raise_failure("maximum allowable scallops exceeded for the entire trace", name);
    }
    const auto s = static_cast<std::int32_t>(lot.iStart);
    const float base = static_cast<float>(s) * xStepSize - xStepSize;
    for (const Scallop& scallop : scallops) {
        // The test above leaves nothing for this one, which stands all the same.
        if (place >= tDefects.size()) {
            return raise_failure("PG Defects > i_PG_maxdefects. Try cropping the profiles", name);
        }
        // The slope is taken on the lot's own distance, which starts one step past its first
        // sample: deliberate.
        const float xBand = scallop.Type == idx_pgdefect_above ? lot.result.xBBUpperStart
                                                               : lot.result.xBBLowerStart;
        // The one place where sample numbers of the lot become indexes of the stretch.
        tDefects[place] = {.iStart = s - 1 + scallop.iStart,
                           .iEnd = s - 1 + scallop.iEnd,
                           .BeginX = scallop.BeginX + base,
                           .BeginY = scallop.BeginX * xSlope + xBand,
                           .EndX = base + scallop.EndX,
                           .EndY = xBand + scallop.EndX * xSlope,
                           .MxHts = scallop.MxHts,
                           .Type = scallop.Type};
        ++place;
    }
    return success;
}

// The analysis of one lot after the other.
class LotAnalysis {
public:
    LotAnalysis(float xStepSize, const PGSettings& settings, std::span<const float> xTrace,
                std::span<TraceLot> tLots)
        : xStepSize_(xStepSize), half_(settings.BlankingBand * 0.5F), rules_(rules_of(settings)),
          xTrace_(xTrace), tLots_(tLots) {}

    // The next lot, number lot_number of the list.
    [[nodiscard]] ReturnCode run(std::size_t lot_number, std::int32_t& iNumDefects,
                                 std::span<tPGDefect> tDefects) {
        TraceLot& lot = tLots_[lot_number - 1];
        lot.result = {};
        if (lot.iEnd <= lot.iStart) {
            return success;
        }
        const std::span<const float> samples = samples_of(lot);
        // A lot is refused as a whole and before it is read, so no defect of a counted lot can end
        // outside the stretch.
        if (samples.empty()) {
            return raise_failure("End location of a defect exceeds the profile length.", name);
        }
        const std::size_t n = samples.size();
        // From the lot's first sample to its last: one interval less than it has samples.
        const float Linv = 1.0F / (static_cast<float>(n - 1) * xStepSize_);

        if (x_.size() < n) {
            x_ = distances(n, xStepSize_);
        }
        y_.resize(n);
        const auto x = std::span(x_).first(n);
        const Trend trend = DetrendProfile(trend_line(lot_number, x, samples), x, samples, y_);
        set_band(trend, half_, lot.result);
        const float xSlope = (trend.yEnd - trend.yStart) * Linv;

        if (CountScallops(y_, xStepSize_, rules_, found_) != success) {
            return pass_failure(name);
        }
        if (join_start_partial(lot_number, Linv, previous_, found_) != success) {
            return failure;
        }
        append_end_partial(found_);
        previous_ = {found_.edges.end, &lot};
        if (write_defects(lot, found_.scallops, xStepSize_, xSlope, iNumDefects, tDefects) !=
            success) {
            return failure;
        }
        lot.result.RawPI = found_.xSumRaw * Linv;
        lot.result.RndPI = found_.xSumRnd * Linv;
        iNumDefects += static_cast<std::int32_t>(found_.scallops.size());
        return success;
    }

private:
    // None where the lot reaches outside the stretch or has no trend.
    [[nodiscard]] std::span<const float> samples_of(const TraceLot& lot) const {
        if (lot.iStart < 0 || lot.iEnd <= lot.iStart ||
            lot.iEnd >= static_cast<std::int64_t>(xTrace_.size())) {
            return {};
        }
        return xTrace_.subspan(static_cast<std::size_t>(lot.iStart),
                               static_cast<std::size_t>(lot.iEnd - lot.iStart) + 1);
    }

    // The line through the samples of a lot. That of the next lot comes along with it if the two
    // are equally long.
    Line trend_line(std::size_t lot_number, std::span<const float> x,
                    std::span<const float> samples) {
        if (next_line_) {
            return *std::exchange(next_line_, std::nullopt);
        }
        const std::span<const float> next =
            lot_number < tLots_.size() ? samples_of(tLots_[lot_number]) : std::span<const float>();
        if (next.size() != samples.size()) {
            return fit_line(x, samples);
        }
        const auto [line, next_line] = fit_two_lines(x, samples, next);
        next_line_ = next_line;
        return line;
    }

    float xStepSize_;
    float half_;
    ScallopRules rules_;
    std::span<const float> xTrace_;
    std::span<TraceLot> tLots_;
    std::vector<float> x_; // m; distances from the first sample, of the longest lot so far
    std::vector<float> y_; // the lot, detrended
    std::optional<Line> next_line_;
    LotScallops found_;
    PreviousLot previous_;
};

} // namespace

ReturnCode pgindex(float xStepSize, const PGSettings& settings, std::span<const float> xTrace,
                   std::span<TraceLot> tLots, std::int32_t& iNumDefects,
                   std::span<tPGDefect> tDefects) {
    iNumDefects = 0;
    LotAnalysis analysis(xStepSize, settings, xTrace, tLots);
    for (std::size_t lot_number = 1; lot_number <= tLots.size(); ++lot_number) {
        if (analysis.run(lot_number, iNumDefects, tDefects) != success) {
            return failure;
        }
    }
    return success;
}

} // namespace vialto
