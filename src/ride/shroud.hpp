// The shroud: a rough spot casts a shadow on its neighbours that dies with the distance.
#pragma once

#include <span>

namespace vialto {

// Given: n magnitudes x, none below zero; their interval dx [m]; the distances [m] over which a
// shadow falls to 1/e.
// Returned: in y (n values, not x itself) for each sample the largest of its own value and of all
// others' values times e^(-k dx / distance), k samples away: the samples before it count with
// xBackDist, those after it with xForeDist. So a spot shades what follows it over xBackDist.
//
// Every pair is weighed in float32 as it is written, ((-k * dx) / distance), its exponential and
// the product being rounded to float32; a NaN wins no comparison. The result has the bits that
// visiting all pairs gives; the pairs that cannot win are not visited.
void shroud(std::span<const float> x, float dx, std::span<float> y, float xBackDist,
            float xForeDist);

} // namespace vialto
