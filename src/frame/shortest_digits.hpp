// Text of a 32-bit float: the shortest digits that read back as the same number.
#pragma once

#include <cstddef>

namespace vialto {

// What write_shortest may touch behind `text`; the longest text itself has 15 characters.
inline constexpr std::size_t shortest_room = 24;

// Writes `number` at `text` and returns the place behind it: of the decimals that read back as the
// same number those with the fewest digits, of them the nearest, of two as near the even one; in
// fixed or scientific notation, whichever is shorter, fixed where both are as long ("0.025",
// "1e-05"). Whole numbers in fixed notation are exact. That is the text of std::to_chars, but for
// NaN, which has no sign here.
[[nodiscard]] char* write_shortest(char* text, float number);

} // namespace vialto
