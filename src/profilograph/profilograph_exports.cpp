// The exported profilograph analyses; their contracts stand in vialto/vialto.h.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "frame/analysis_frame.hpp"
#include "profilograph/profile_index.hpp"
#include "profilograph/trace.hpp"
#include "vialto/vialto.h"

using namespace vialto;

namespace {

constexpr std::int32_t wheel_offset_lines = 6; // of the diagnostic file

// The samples iStartIndex to iEndIndex of a host's array, both included; none if they are reversed.
template <class Element>
std::span<Element> stretch_of(Element* array, std::int32_t iStartIndex, std::int32_t iEndIndex) {
    if (iEndIndex < iStartIndex) {
        return {};
    }
    const std::size_t count = static_cast<std::size_t>(iEndIndex - iStartIndex) + 1;
    return {array + iStartIndex, count};
}

std::int32_t saturated(std::int64_t number) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

std::int64_t stretch_length(std::int32_t iStartIndex, std::int32_t iEndIndex) {
    return std::int64_t{iEndIndex} - iStartIndex + 1;
}

// Refuses a stretch that begins ahead of the host's array or has too many samples to be counted.
void check_stretch(ArgumentCheck& check, std::int32_t iStartIndex, std::int32_t iEndIndex) {
    if (iStartIndex < 0) {
        check.refuse("iStartIndex", " is negative");
    }
    if (stretch_length(iStartIndex, iEndIndex) > std::numeric_limits<std::int32_t>::max()) {
        check.refuse("iEndIndex", " makes the stretch longer than 2147483647 samples");
    }
}

void check_wheel_offsets(ArgumentCheck& check, std::int32_t iNumWheelOffsets,
                         const float* xWheelOffsets) {
    if (iNumWheelOffsets <= 0) {
        check.refuse("iNumWheelOffsets", " is not positive");
    }
    check.array("xWheelOffsets", xWheelOffsets, iNumWheelOffsets);
    const auto offsets = host_array(xWheelOffsets, iNumWheelOffsets);
    if (!std::all_of(offsets.begin(), offsets.end(),
                     [](float offset) { return std::isfinite(offset); })) {
        check.refuse("xWheelOffsets", " holds an offset that is not finite");
    }
}

void log_stretch(DiagnosticText& text, std::int32_t iNumPoints, std::int32_t iStartIndex,
                 std::int32_t iEndIndex, float xStepSize) {
    text.record("Number of Points      :", iNumPoints);
    text.record("Number of Points used :", saturated(stretch_length(iStartIndex, iEndIndex)));
    text.record("iStartIndex           :", iStartIndex);
    text.record("iEndIndex             :", iEndIndex);
    text.record("Sample Interval (m)   :", xStepSize);
}

void log_wheel_offsets(DiagnosticText& text, std::span<const float> xWheelOffsets) {
    text.record("Wheel Offsets (m)     :");
    for (std::int32_t i = 1; i <= wheel_offset_lines; ++i) {
        text.record(i, element_or_zero(xWheelOffsets, static_cast<std::size_t>(i - 1)));
    }
}

void log_settings(DiagnosticText& text, const PGSettings& settings) {
    text.record("BlankingBand (mm)     :", settings.BlankingBand);
    text.record("MinScallopWidth (m)   :", settings.MinScallopWidth);
    text.record("MinScallopHeight (mm) :", settings.MinScallopHeight);
    text.record("ScallopRound (mm)     :", settings.ScallopRound);
    text.record("BumpCutoffHeight (mm) :", settings.BumpCutoffHeight);
    text.record("BumpChordlength (m)   :", settings.BumpChordlength);
}

void log_lots(DiagnosticText& text, std::span<const tPGLot> lots) {
    text.record("iStart iEnd xBBUpperStart xBBUpperEnd xBBLowerStart xBBLowerEnd RawPI RndPI");
    for (const tPGLot& lot : lots) {
        text.record(lot.iStart, lot.iEnd, lot.xBBUpperStart, lot.xBBUpperEnd, lot.xBBLowerStart,
                    lot.xBBLowerEnd, lot.RawPI, lot.RndPI);
    }
}

void log_defects(DiagnosticText& text, std::span<const tPGDefect> defects) {
    text.record("Number of Defects     :", static_cast<std::int32_t>(defects.size()));
    text.record("iStart iEnd BeginX BeginY EndX EndY Length MxHts Type");
    for (const tPGDefect& defect : defects) {
        text.record(defect.iStart, defect.iEnd, defect.BeginX, defect.BeginY, defect.EndX,
                    defect.EndY, defect.EndX - defect.BeginX, defect.MxHts, defect.Type);
    }
}

// In the order in which the host passes them.
PGSettings settings_of(const float* xPGSettings) {
    return {.BlankingBand = xPGSettings[idx_pgset_BlankingBand],
            .MinScallopWidth = xPGSettings[idx_pgset_MinScallopWidth],
            .MinScallopHeight = xPGSettings[idx_pgset_MinScallopHeight],
            .ScallopRound = xPGSettings[idx_pgset_ScallopRound],
            .BumpCutoffHeight = xPGSettings[idx_pgset_BumpCutoffHeight],
            .BumpChordlength = xPGSettings[idx_pgset_BumpChordlength]};
}

std::vector<TraceLot> local_lots(std::span<const tPGLot> lots, std::int32_t iStartIndex) {
    std::vector<TraceLot> result;
    result.reserve(lots.size());
    for (const tPGLot& lot : lots) {
        result.push_back({.iStart = std::int64_t{lot.iStart} - iStartIndex,
                          .iEnd = std::int64_t{lot.iEnd} - iStartIndex,
                          .result = {}});
    }
    return result;
}

// The bounds stay as the host gave them.
void hand_back(const LotResult& result, tPGLot& lot) {
    lot.xBBUpperStart = result.xBBUpperStart;
    lot.xBBUpperEnd = result.xBBUpperEnd;
    lot.xBBLowerStart = result.xBBLowerStart;
    lot.xBBLowerEnd = result.xBBLowerEnd;
    lot.RawPI = result.RawPI;
    lot.RndPI = result.RndPI;
}

// Moves records by iStartIndex samples. What a host has put into a record may saturate.
void move_records(std::span<tPGDefect> records, std::int32_t iStartIndex, float xStepSize) {
    const float distance = static_cast<float>(iStartIndex) * xStepSize;
    for (tPGDefect& record : records) {
        record.iStart = saturated(std::int64_t{record.iStart} + iStartIndex);
        record.iEnd = saturated(std::int64_t{record.iEnd} + iStartIndex);
        record.BeginX += distance;
        record.EndX += distance;
    }
}

} // namespace

int32_t VIALTO_CALL pgfilt_dll(int32_t iStartIndex, int32_t iEndIndex, float xStepSize,
                               int32_t iNumWheelOffsets, int32_t iNumPoints,
                               const float* xWheelOffsets, const float* xProfile, float* xPGTrace,
                               int32_t* BeginElemIdx, int32_t* EndElemIdx, tEvent* event) {
    // Copies of the stretch: the host's trace may take the place of its profile.
    std::vector<float> profile;
    std::vector<float> trace;
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("*** Profilogragh Filter ***");
        log_stretch(text, iNumPoints, iStartIndex, iEndIndex, xStepSize);
        text.record("Wheel Offsets         :", iNumWheelOffsets);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.sample_interval("xStepSize", xStepSize);
        check_wheel_offsets(check, iNumWheelOffsets, xWheelOffsets);
        // A reversed pair is the trace's own failure.
        if (iStartIndex <= iEndIndex) {
            check_stretch(check, iStartIndex, iEndIndex);
            check.address("xProfile", xProfile);
            check.address("xPGTrace", xPGTrace);
        }
        check.address("BeginElemIdx", BeginElemIdx);
        check.address("EndElemIdx", EndElemIdx);
    };
    const auto log_arrays = [&](DiagnosticText& text) {
        log_wheel_offsets(text, host_array(xWheelOffsets, iNumWheelOffsets));
    };
    const auto drive = [&] {
        const auto stretch = stretch_of(xProfile, iStartIndex, iEndIndex);
        profile.assign(stretch.begin(), stretch.end());
        trace.resize(stretch.size());
        std::int32_t iBeginElem = 0;
        std::int32_t iEndElem = 0;
        if (pgfilter(xStepSize, host_array(xWheelOffsets, iNumWheelOffsets), profile, trace,
                     iBeginElem, iEndElem) != success) {
            return failure;
        }
        std::copy(trace.begin() + iBeginElem, trace.begin() + iEndElem + 1,
                  xPGTrace + iStartIndex + iBeginElem);
        *BeginElemIdx = iBeginElem + iStartIndex;
        *EndElemIdx = iEndElem + iStartIndex;
        return success;
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("BeginElemIdx(0-based) :", *BeginElemIdx);
        text.record("EndElemIdx            :", *EndElemIdx);
        text.record("Profile   PG_Trace");
        for (std::size_t i = 0; i < profile.size(); ++i) {
            text.record(profile[i], trace[i]);
        }
    };
    return run_export({.name = "pgfilt_dll"}, event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .log_arrays = log_arrays,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL pgindex_dll(int32_t iStartIndex, int32_t iEndIndex, float xStepSize,
                                const float* xPGSettings, int32_t iNumPoints, const float* xPGTrace,
                                int32_t iNumLots, tPGLot* tPGLots, int32_t* iNumDefects,
                                tPGDefect* tPGDefects, const int32_t* iNumBumps,
                                tPGDefect* tPGBumps, tEvent* event) {
    const auto bump_count = [&] {
        return std::clamp<std::int32_t>(*iNumBumps, 0, vialto_i_PG_maxdefects);
    };
    const std::span<tPGLot> host_lots = host_array(tPGLots, iNumLots);
    // A longer lot on an empty or reversed stretch fails before it is read.
    const bool reads_trace = iStartIndex <= iEndIndex &&
                             std::any_of(host_lots.begin(), host_lots.end(),
                                         [](const tPGLot& lot) { return lot.iStart < lot.iEnd; });
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("*** Profilogragh Index and Defective Segments ***");
        log_stretch(text, iNumPoints, iStartIndex, iEndIndex, xStepSize);
        if (xPGSettings != nullptr) {
            log_settings(text, settings_of(xPGSettings));
        }
        text.record("Number of Lots        :", iNumLots);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.sample_interval("xStepSize", xStepSize);
        check.address("xPGSettings", xPGSettings);
        check.array("tPGLots", tPGLots, iNumLots);
        if (reads_trace) {
            check_stretch(check, iStartIndex, iEndIndex);
            check.address("xPGTrace", xPGTrace);
            check.address("tPGDefects", tPGDefects);
        }
        check.address("iNumDefects", iNumDefects);
        check.address("iNumBumps", iNumBumps);
        if (iNumBumps != nullptr) {
            check.array("tPGBumps", tPGBumps, bump_count());
        }
    };
    const auto drive = [&] {
        const auto stretch =
            reads_trace ? stretch_of(xPGTrace, iStartIndex, iEndIndex) : std::span<const float>();
        std::vector<TraceLot> lots = local_lots(host_lots, iStartIndex);
        if (pgindex(xStepSize, settings_of(xPGSettings), stretch, lots, *iNumDefects,
                    host_array(tPGDefects, vialto_i_PG_maxdefects)) != success) {
            return failure;
        }
        // pgindex has stopped at the limit; the test stands all the same.
        if (*iNumDefects > vialto_i_PG_maxdefects) {
            return raise_failure("iNumDefects > i_PG_maxdefects", routine_of_export);
        }
        for (std::size_t k = 0; k < lots.size(); ++k) {
            hand_back(lots[k].result, host_lots[k]);
        }
        move_records(host_array(tPGDefects, *iNumDefects), iStartIndex, xStepSize);
        move_records(host_array(tPGBumps, bump_count()), iStartIndex, xStepSize);
        return success;
    };
    const auto log_results = [&](DiagnosticText& text) {
        log_lots(text, host_lots);
        log_defects(text, host_array(tPGDefects, *iNumDefects));
    };
    return run_export({.name = "pgindex_dll"}, event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}
