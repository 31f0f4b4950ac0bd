// Rows of requests to every function out of fixed bytes: every second one is a good request, the
// others have whatever a host may get wrong.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "fuzz/requests.hpp"

namespace vialto::test {

constexpr std::uint32_t requests_of_each = 300; // that digests are made of

inline std::vector<std::uint8_t> bytes_of_request(std::uint32_t number) {
    constexpr std::uint32_t tame = 208; // bytes below it choose nothing odd
    std::mt19937 generator(number);
    std::vector<std::uint8_t> bytes(256);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(generator() % (number % 2 == 0 ? tame : 256));
    }
    return bytes;
}

} // namespace vialto::test
