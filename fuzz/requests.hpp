// Requests to every function of the library, a family to a file: what the fuzzers and the tests of
// the whole library try it on.
#pragma once

#include <span>
#include <vector>

#include "fuzz/fuzzed_host.hpp"

namespace vialto::fuzz {

struct Request {
    const char* function;     // of the library
    void (*run)(FuzzedHost&); // makes its call, or a row of calls that ends in it
};

[[nodiscard]] std::span<const Request> ride_requests();
[[nodiscard]] std::span<const Request> two_tracks_requests();
[[nodiscard]] std::span<const Request> spectra_requests();
[[nodiscard]] std::span<const Request> profilograph_requests();
[[nodiscard]] std::span<const Request> grinding_requests();
[[nodiscard]] std::span<const Request> comparison_requests();
[[nodiscard]] std::span<const Request> joints_requests();

inline std::vector<Request> all_requests() {
    std::vector<Request> all;
    for (const auto& family :
         {ride_requests(), two_tracks_requests(), spectra_requests(), profilograph_requests(),
          grinding_requests(), comparison_requests(), joints_requests()}) {
        all.insert(all.end(), family.begin(), family.end());
    }
    return all;
}

} // namespace vialto::fuzz
