// Power spectral density and rolling straightedge.
#include "fuzz/requests.hpp"

#include <algorithm>

namespace vialto::fuzz {

namespace {

void spectrum(FuzzedHost& host) {
    const std::int32_t count = host.length();
    const float* profile = host.given(host.profile(count));
    const std::int32_t first = host.integer(0, count / 2);
    const std::int32_t last = std::min(count - 1, host.integer(count - 1, count));
    const std::int32_t type = host.integer(1, 2);
    const std::int32_t grid = host.integer(1, 2);
    const std::int32_t per_octave = host.integer(0, 100);
    const float step = host.number(0.01F);
    const std::int32_t points = host.length(); // may reach beyond the last sample
    const std::int32_t size = host.size_of(points);
    const float interval = host.sample_interval();
    float* frequency = host.returned<float>(points);
    float* density = host.returned<float>(points);
    std::int32_t* begin = host.record(-7);
    std::int32_t* end = host.record(-7);
    host.call([&](tEvent* event) {
        return psd_dll(first, last, type, grid, per_octave, step, size, interval, profile,
                       frequency, density, begin, end, event);
    });
}

void straightedge(FuzzedHost& host) {
    const std::int32_t count = host.length();
    const float* profile = host.given(host.profile(count));
    const float interval = host.sample_interval();
    const float length = host.number(3.0F);
    const std::int32_t size = host.size_of(count);
    float* deflection = host.returned<float>(count);
    float* acceleration = host.record(-777.0F);
    std::int32_t* begin = host.record(-7);
    std::int32_t* end = host.record(-7);
    host.call([&](tEvent* event) {
        return rse_dlldrv(size, interval, length, profile, deflection, acceleration, begin, end,
                          event);
    });
}

} // namespace

std::span<const Request> spectra_requests() {
    static constexpr Request requests[] = {{"psd_dll", spectrum}, {"rse_dlldrv", straightedge}};
    return requests;
}

} // namespace vialto::fuzz
