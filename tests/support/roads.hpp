// Profiles to test with. Distances and elevations are in metres.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vialto::test {

// Elevation i is slope * i * interval.
[[nodiscard]] std::vector<float> straight_line(std::size_t count, double interval, double slope);

// Elevation i is amplitude * sin(2 pi i interval / wavelength).
[[nodiscard]] std::vector<float> sinusoid(std::size_t count, double interval, double wavelength,
                                          double amplitude);

// A random road of roughly the roughness of a fair pavement (IRI about 2 m/km at 25 mm), the same
// for the same seed on every platform.
[[nodiscard]] std::vector<float> random_road(std::size_t count, double interval,
                                             std::uint32_t seed);

} // namespace vialto::test
