#include "grinding/grindsimu.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "filters/filtcon.hpp"
#include "filters/moving_average.hpp"
#include "numeric/rounding.hpp"
#include "numeric/units.hpp"

namespace vialto {

namespace {

constexpr std::string_view name = "grindsimu";

// The wheels of a pass as distances from the head towards higher samples.
struct Wheels {
    std::int64_t lead_outer;
    std::int64_t lead_inner;
    std::int64_t trail_inner;
    std::int64_t trail_outer;
};

Wheels wheels_of(const Grinder& grinder, std::int32_t iDirection) {
    const std::int64_t ahead = iDirection == idx_grinddir_higher ? 1 : -1;
    return {ahead * grinder.iLeadOuter, ahead * grinder.iLeadInner, -ahead * grinder.iTrailInner,
            -ahead * grinder.iTrailOuter};
}

// The samples that the head passes, from 0, low and high inclusive; none if low exceeds high.
struct HeadRange {
    std::int64_t low;
    std::int64_t high;
};

HeadRange head_range(const GrindPass& pass, const Wheels& wheels, std::size_t samples) {
    constexpr std::int64_t head = 0;
    const std::int64_t last = static_cast<std::int64_t>(samples) - 1;
    // Of most machines the outer wheels alone decide. But a small HeadPosition or a wide tandem
    // puts an inner wheel to the other side of the head, and a HeadPosition beyond the axles all.
    const auto [lowest, highest] = std::minmax(
        {head, wheels.lead_outer, wheels.lead_inner, wheels.trail_inner, wheels.trail_outer});
    return {std::max(std::int64_t{pass.iStart}, -lowest),
            std::min(std::int64_t{pass.iEnd}, last - highest)};
}

} // namespace

Grinder grinder_of(const tGrinderSetup& setup, float xStepSize) {
    const float half = setup.TandemSpread * 0.5F;
    const float a = setup.WheelBase * setup.HeadPosition;
    const float b = setup.WheelBase * (1.0F - setup.HeadPosition);
    return {.iLeadOuter = nint((half + a) / xStepSize),
            .iLeadInner = nint((a - half) / xStepSize),
            .iTrailInner = nint((b - half) / xStepSize),
            .iTrailOuter = nint((half + b) / xStepSize),
            .wLead = (1.0F - setup.HeadPosition) * 0.5F,
            .wTrail = setup.HeadPosition * 0.5F,
            .xMaxDepth = setup.MaxGrindingDepth_mm * m_per_mm};
}

ReturnCode grindspot(const Grinder& grinder, const GrindPass& pass, std::span<float> xProfile,
                     std::span<float> xWheelPath, std::span<std::int32_t> iGrindFlags) {
    if (pass.iDirection != idx_grinddir_higher && pass.iDirection != idx_grinddir_lower) {
        return raise_failure("grinding direction is not defined correctly", name);
    }
    const float xDepth = pass.xDepth_mm * m_per_mm;
    const Wheels wheels = wheels_of(grinder, pass.iDirection);
    const HeadRange range = head_range(pass, wheels, xProfile.size());
    const auto wheel_height = [&](std::int64_t head, std::int64_t wheel) {
        return xWheelPath[static_cast<std::size_t>(head + wheel)];
    };
    // In the order of travel: the trailing wheels ride on what the head has just cut.
    const bool upwards = pass.iDirection == idx_grinddir_higher;
    const std::int64_t step = upwards ? 1 : -1;
    std::int64_t head = upwards ? range.low : range.high;
    for (std::int64_t left = range.high - range.low + 1; left > 0; --left, head += step) {
        const float xPlane =
            (wheel_height(head, wheels.lead_outer) + wheel_height(head, wheels.lead_inner)) *
                grinder.wLead +
            (wheel_height(head, wheels.trail_inner) + wheel_height(head, wheels.trail_outer)) *
                grinder.wTrail;
        const auto j = static_cast<std::size_t>(head);
        const float xAbove = xProfile[j] - xPlane;
        const float xCut = xAbove - xDepth;
        if (!(xCut > 0.0F)) {
            continue;
        }
        if (!iGrindFlags.empty()) {
            iGrindFlags[j] =
                xCut <= grinder.xMaxDepth ? idx_grindflag_within : idx_grindflag_deeper;
        }
        xWheelPath[j] = (xDepth - (xWheelPath[j] - xPlane)) + xWheelPath[j];
        xProfile[j] = xProfile[j] - xCut;
    }
    return success;
}

ReturnCode filter_wheel_path(std::span<const float> xProfile, float xStepSize,
                             float ShortWavelength, std::span<float> xWheelPath) {
    tFiltCon settings = low_pass_settings(ShortWavelength);
    return filtcon_drv(xProfile, xStepSize, settings, xWheelPath) == success ? success
                                                                             : pass_failure(name);
}

ReturnCode grindsimu(float xStepSize, std::span<const tGrindSpot> tGrindSpots,
                     const tGrinderSetup& setup, std::span<float> xProfile,
                     std::span<std::int32_t> iGrindFlags) {
    std::vector<float> xWheelPath(xProfile.size());
    if (filter_wheel_path(xProfile, xStepSize, setup.ShortWavelength, xWheelPath) != success) {
        return failure;
    }
    const Grinder grinder = grinder_of(setup, xStepSize);
    std::fill(iGrindFlags.begin(), iGrindFlags.end(), idx_grindflag_none);
    for (const tGrindSpot& spot : tGrindSpots) {
        for (std::int32_t p = 0; p < spot.iNumPasses; ++p) {
            const GrindPass pass{spot.iDirection[p], spot.xDepth_mm[p], spot.iStart, spot.iEnd};
            if (grindspot(grinder, pass, xProfile, xWheelPath, iGrindFlags) != success) {
                return failure;
            }
        }
    }
    return success;
}

} // namespace vialto
