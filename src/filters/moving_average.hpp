// The moving-average filters: a box run over the profile, as low-pass, high-pass or both.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

// iMainFilterType 1.
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

enum class PassMode : std::int32_t { high_pass = 1, low_pass = 2 };

// One stage, in place (w grows by the extension for the time being): each element of w becomes the
// mean of a box of iBase samples around it (low-pass) or itself minus that mean (high-pass). The
// ends are extended by iHalf samples along the least-squares lines through the first and the last
// iHalf samples. The box of element i, from 1, covers P(i) to P(i + iBase - 1), P being the
// extended profile, in which w(i) is P(iHalf + i).
//
// The mean is updated by the sample that enters and the one that leaves, never summed anew.
//
// iBase is less than the length of w, and iHalf the half of it, rounded up or down. With iBase
// below 1 the box is empty and every mean 0/0, a NaN.
void mvgavg_pass(std::vector<float>& w, std::int32_t iBase, std::int32_t iHalf, PassMode mode);

// The same stage in pieces, for a caller that runs it anew from the middle of a profile on.

// A stage's box and the extension that it needs at either end, in samples.
struct Box {
    std::int32_t iBase;
    std::int32_t iHalf;
};

// The box of a base length, both in metres. The two numbers are truncated and saturate; neither is
// positive for a length below half an interval, or one that is a NaN.
[[nodiscard]] Box box_of(float base_length, float xStepSize);

// Writes the first and the last `half` elements of p on the lines through the first and the last
// `half` of those between them, of which there are as many at least.
void extend_ends(std::span<float> p, std::size_t half);

// The mean of a box's samples, summed in ascending order; a NaN for an empty box.
[[nodiscard]] float box_mean(std::span<const float> box);

// The means of the boxes of `base` samples that start at p(1), p(2), ... counted from 0, as many as
// m has room for, by updates of the one that starts at p(0).
void continue_means(std::span<const float> p, std::size_t base, float mean, std::span<float> m);

} // namespace vialto
