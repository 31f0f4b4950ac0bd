// Ride indices of one track.
#include "fuzz/requests.hpp"

namespace vialto::fuzz {

namespace {

std::int32_t any_selector(FuzzedHost& host) {
    return host.integer_of({idx_ridests_IRI, idx_ridests_RN, idx_ridests_IRI, idx_ridests_RN,
                            idx_ridests_WIM, idx_ridests_TwoRN, idx_ridests_HRI});
}

void ride(FuzzedHost& host) {
    const std::int32_t exclude = host.integer(vialto_yes, vialto_no);
    const std::int32_t filter = host.integer(vialto_yes, vialto_no);
    const std::int32_t selector = any_selector(host);
    const std::int32_t count = host.length();
    const float* profile = host.given(host.profile(count));
    const std::int32_t* flags = host.given(host.integers(count, 0, 1));
    const float interval = host.sample_interval();
    const std::int32_t size = host.size_of(count);
    float* index = host.record(-777.0F);
    host.call([&](tEvent* event) {
        return ride_dlldrv(exclude, filter, selector, size, profile, flags, interval, index, event);
    });
}

void segments(FuzzedHost& host) {
    const std::int32_t filter = host.integer(vialto_yes, vialto_no);
    const std::int32_t selector = any_selector(host);
    const std::int32_t count = host.length();
    const float* profile = host.given(host.profile(count));
    const float interval = host.sample_interval();
    const std::int32_t segment_count = host.choice(40);
    const std::int32_t size = host.size_of(count);
    const std::int32_t* points = host.given(host.integers(segment_count, count / 40, count / 20));
    float* index = host.returned<float>(segment_count);
    float* lengths = host.returned<float>(segment_count);
    const std::int32_t named = host.size_of(segment_count);
    host.call([&](tEvent* event) {
        return rideseg_dlldrv(filter, selector, size, profile, interval, named, points, index,
                              lengths, event);
    });
}

void continuous(FuzzedHost& host) {
    const std::int32_t filter = host.integer(vialto_yes, vialto_no);
    const std::int32_t selector = any_selector(host);
    const std::int32_t count = host.length();
    const float* profile = host.given(host.profile(count));
    const float interval = host.sample_interval();
    const float base = host.number(7.62F);
    const std::int32_t size = host.size_of(count);
    float* output = host.returned<float>(count);
    host.call([&](tEvent* event) {
        return ridecon_dlldrv(filter, interval, base, selector, size, profile, output, event);
    });
}

} // namespace

std::span<const Request> ride_requests() {
    static constexpr Request requests[] = {
        {"ride_dlldrv", ride}, {"rideseg_dlldrv", segments}, {"ridecon_dlldrv", continuous}};
    return requests;
}

} // namespace vialto::fuzz
