// The moving-average filters: a box run over the profile, as low-pass, high-pass or both.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// idx_filttyp_mvgavg.
//
// Given: a profile of N elevations, its interval [m], iSubFilterType, iOutType, and the lengths of
// the boxes, xLongWavelength of the high-pass and xShortWavelength of the low-pass [m].
// Returned: the filtered profile, N values, elevation or slope (iOutType 2); iBeginElemIdx 0,
// iEndElemIdx N - 1. A sub-type other than band-pass, low-pass and high-pass runs no stage.
//
// A box of an even number of samples lies half a sample behind its sample. One of an odd number
// lies about it where the length was rounded up, and else a whole sample behind it: 20.8 intervals
// make 21 samples about theirs, 21 and 21.2 make 21 one sample behind. Deliberate.
//
// A low-pass or band-pass whose xShortWavelength is less than two intervals runs nothing at all,
// neither the high-pass stage nor the conversion to slope: the profile is copied. Deliberate.
//
// Fails where a box is not shorter than the profile; xFiltered is then untouched.
[[nodiscard]] ReturnCode mvgavg(std::span<const float> xProfile, float xStepSize,
                                tFiltCon& settings, std::span<float> xFiltered);

// The settings of a low-pass whose box has this length [m].
[[nodiscard]] tFiltCon low_pass_settings(float xShortWavelength);

enum class PassMode : std::int32_t { high_pass = 1, low_pass = 2 };

// A stage's box and the extension that it needs at either end, in samples.
struct Box {
    std::int32_t iBase;
    std::int32_t iHalf;
};

// The box of a base length, both in metres. The two numbers are truncated and saturate; neither is
// positive for a length below half an interval, or one that is a NaN.
[[nodiscard]] Box box_of(float base_length, float xStepSize);

// One stage: each element of y becomes the mean of a box of iBase samples around that of x
// (low-pass) or that sample minus the mean (high-pass). The ends are extended by iHalf samples
// along the least-squares lines through the first and the last iHalf samples. The box of element i,
// from 1, covers P(i) to P(i + iBase - 1), P being the extended profile, in which x(i) is
// P(iHalf + i).
//
// The mean is updated by the sample that enters and the one that leaves, never summed anew.
//
// y is as long as x and does not overlap it. iBase is less than that length. With iBase below 1 the
// box is empty and every mean 0/0, a NaN.
void mvgavg_pass(std::span<const float> x, const Box& box, PassMode mode, std::span<float> y);

// The same stage in pieces, for a caller that runs it anew from the middle of a profile on.

// Extends x: `left` and `right`, equally long and no longer than x, lie on the lines through as
// many of its first and last samples.
void extend_ends(std::span<const float> x, std::span<float> left, std::span<float> right);

// The mean of a box's samples, summed in ascending order; a NaN for an empty box. A box may reach
// from one array into another.
[[nodiscard]] float box_mean(std::span<const float> left, std::span<const float> right = {});

// The means of the boxes of `base` samples that follow the one whose mean is given, as many as m
// has room for: element i by the sample leaving[i] that drops out and entering[i] that comes in.
void continue_means(std::span<const float> leaving, std::span<const float> entering,
                    std::size_t base, float mean, std::span<float> m);

} // namespace vialto
