// The text that write_shortest is held to.
#pragma once

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "frame/shortest_digits.hpp"

namespace vialto::test {

// The text of the float with these bits if it is not that of std::to_chars, else nothing.
inline std::string wrong_text(std::uint32_t bits) {
    const float number = std::bit_cast<float>(bits);
    char text[shortest_room];
    char expected[64];
    const std::string_view found(text, write_shortest(text, number));
    const char* end =
        std::to_chars(expected, expected + sizeof expected, std::isnan(number) ? NAN : number).ptr;
    return found == std::string_view(expected, end) ? "" : std::string(found);
}

} // namespace vialto::test
