// The exported grinding analyses; their contracts stand in vialto/vialto.h.
#include <algorithm>
#include <cstddef>
#include <vector>

#include "frame/analysis_frame.hpp"
#include "grinding/grindsimu.hpp"
#include "grinding/mustgrind.hpp"
#include "vialto/vialto.h"

using namespace vialto;

namespace {

void check_spots(ArgumentCheck& check, const tGrindSpot* tGrindSpots, std::int32_t iNumGrindSpots) {
    check.array("tGrindSpots", tGrindSpots, iNumGrindSpots);
    const std::span<const tGrindSpot> spots = host_array(tGrindSpots, iNumGrindSpots);
    if (std::any_of(spots.begin(), spots.end(),
                    [](const tGrindSpot& spot) { return spot.iNumPasses > vialto_mxPasses; })) {
        check.refuse("tGrindSpots", " holds a spot with more than ten passes");
    }
}

} // namespace

int32_t VIALTO_CALL grindsimu_dlldrv(float xStepSize, int32_t iNumGrindSpots, int32_t nsamp,
                                     const tGrinderSetup* setup, const tGrindSpot* tGrindSpots,
                                     float* xProfile, int32_t* iGrindFlags, tEvent* event) {
    const std::span<float> profile = host_array(xProfile, nsamp);
    const std::span<std::int32_t> host_flags = host_array(iGrindFlags, nsamp);
    std::vector<float> ground_profile;
    std::vector<std::int32_t> flags;
    const auto hand_over = [&] {
        std::copy(ground_profile.begin(), ground_profile.end(), profile.begin());
        std::copy(flags.begin(), flags.end(), host_flags.begin());
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.sample_interval("xStepSize", xStepSize);
        check.address("tGrinderSetup", setup);
        check_spots(check, tGrindSpots, iNumGrindSpots);
        check.array("xProfile", xProfile, nsamp);
        check.array("iGrindFlags", iGrindFlags, nsamp);
    };
    const auto drive = [&] {
        ground_profile.assign(profile.begin(), profile.end());
        flags.assign(host_flags.begin(), host_flags.end());
        if (grindsimu(xStepSize, host_array(tGrindSpots, iNumGrindSpots), *setup, ground_profile,
                      flags) != success) {
            hand_over(); // the passes before the failure stay done
            return failure;
        }
        return success;
    };
    const auto log_results = [&](DiagnosticText& text) {
        for (std::size_t i = 0; i < ground_profile.size(); ++i) {
            text.record(static_cast<float>(i) * xStepSize, profile[i], ground_profile[i]);
        }
    };
    return run_export(
        {.name = "grindsimu_dlldrv", .diagnostic_file = DiagnosticFile::opened_after_success},
        event,
        {.check_arguments = check_arguments,
         .drive = drive,
         .log_results = log_results,
         .hand_over = hand_over});
}

int32_t VIALTO_CALL grindsimu_2chan_dlldrv(float xStepSize, int32_t iNumGrindSpots, int32_t nsamp,
                                           const tGrinderSetup* setup,
                                           const tGrindSpot* tGrindSpots, float* xProfile1,
                                           float* xProfile2, int32_t* iGrindFlags, tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("xStepSize      :", xStepSize);
        text.record("iNumGrindSpots :", iNumGrindSpots);
        text.record("nsamp          :", nsamp);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.sample_interval("xStepSize", xStepSize);
        check.address("tGrinderSetup", setup);
        check_spots(check, tGrindSpots, iNumGrindSpots);
        check.array("xProfile1", xProfile1, nsamp);
        check.array("xProfile2", xProfile2, nsamp);
        check.array("iGrindFlags", iGrindFlags, nsamp);
    };
    const auto drive = [&] {
        const std::span<std::int32_t> combined = host_array(iGrindFlags, nsamp);
        std::vector<std::int32_t> flags1(combined.size());
        std::vector<std::int32_t> flags2(combined.size());
        // Each run is the whole export: it clears the event and writes a file of its own, of
        // which the second one stays. This frame hands the host what has gone wrong there.
        if (grindsimu_dlldrv(xStepSize, iNumGrindSpots, nsamp, setup, tGrindSpots, xProfile1,
                             flags1.data(), nullptr) != success ||
            grindsimu_dlldrv(xStepSize, iNumGrindSpots, nsamp, setup, tGrindSpots, xProfile2,
                             flags2.data(), nullptr) != success) {
            return failure;
        }
        std::transform(
            flags1.begin(), flags1.end(), flags2.begin(), combined.begin(),
            [](std::int32_t first, std::int32_t second) { return std::max(first, second); });
        return success;
    };
    const auto log_results = [](DiagnosticText& text) {
        text.record("done with the grindsimu_dlldrv calls");
    };
    return run_export({.name = "grindsimu_2chan_dlldrv"}, event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL mustgrind_dlldrv(int32_t nsamp, float xStepSize, tMustGrindCfg* cfg,
                                     const tGrinderSetup* setup, const float* xProfile,
                                     int32_t* iGrindFlags, tEvent* event) {
    std::int32_t selector = idx_ridests_None;
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.address("tMustGrindCfg", cfg);
        if (check.refused() || admit_selector(cfg->iRideIndexType, selector) != success) {
            return; // the selector is judged ahead of all that it selects for
        }
        check.sample_interval("xStepSize", xStepSize);
        check.address("tGrinderSetup", setup);
        check.array("xProfile", xProfile, nsamp);
        check.array("iGrindFlags", iGrindFlags, nsamp);
    };
    const auto drive = [&] {
        cfg->iRideIndexType = selector;
        return mustgrind({xStepSize, *cfg, *setup, host_array(xProfile, nsamp)},
                         host_array(iGrindFlags, nsamp));
    };
    return run_export({.name = "mustgrind_dlldrv", .diagnostic_file = DiagnosticFile::none}, event,
                      {.check_arguments = check_arguments, .drive = drive});
}

int32_t VIALTO_CALL mustgrind_2chan_dlldrv(int32_t nsamp, float xStepSize, tMustGrindCfg* cfg,
                                           const tGrinderSetup* setup, const float* xProfile1,
                                           const float* xProfile2, int32_t* iGrindFlags,
                                           tEvent* event) {
    std::int32_t selector = idx_ridests_None;
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.address("tMustGrindCfg", cfg);
        if (check.refused() || admit_selector_2chan(cfg->iRideIndexType, selector) != success) {
            return; // the selector is judged ahead of all that it selects for
        }
        check.sample_interval("xStepSize", xStepSize);
        check.address("tGrinderSetup", setup);
        check.array("xProfile1", xProfile1, nsamp);
        check.array("xProfile2", xProfile2, nsamp);
        check.array("iGrindFlags", iGrindFlags, nsamp);
    };
    const auto drive = [&] {
        cfg->iRideIndexType = selector;
        return mustgrind_2chan(xStepSize, *cfg, *setup, host_array(xProfile1, nsamp),
                               host_array(xProfile2, nsamp), host_array(iGrindFlags, nsamp));
    };
    return run_export({.name = "mustgrind_2chan_dlldrv", .diagnostic_file = DiagnosticFile::none},
                      event, {.check_arguments = check_arguments, .drive = drive});
}
