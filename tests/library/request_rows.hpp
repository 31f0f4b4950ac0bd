// Rows of requests to every function out of fixed bytes: every second one is a good request, the
// others have whatever a host may get wrong.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "fuzz/rationed_memory.hpp"
#include "fuzz/requests.hpp"

namespace vialto::test {

inline std::vector<fuzz::Request> all_requests() {
    std::vector<fuzz::Request> all;
    for (const auto& family :
         {fuzz::ride_requests(), fuzz::two_tracks_requests(), fuzz::spectra_requests(),
          fuzz::profilograph_requests(), fuzz::grinding_requests(), fuzz::comparison_requests(),
          fuzz::joints_requests()}) {
        all.insert(all.end(), family.begin(), family.end());
    }
    return all;
}

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
