// The moving-average filters: a box run over the profile, as low-pass, high-pass or both.
#pragma once

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

} // namespace vialto
