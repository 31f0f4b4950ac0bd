// Factors between units.
#pragma once

namespace vialto {

inline constexpr float mm_per_m = 1000.0F;
inline constexpr float m_per_mm = 0.001F;
inline constexpr float percent = 100.0F;

} // namespace vialto
