// Ride indices of two tracks, and the WIM error index.
#include "fuzz/requests.hpp"

namespace vialto::fuzz {

namespace {

void ride(FuzzedHost& host) {
    const std::int32_t exclude = host.integer(vialto_yes, vialto_no);
    const std::int32_t filter = host.integer(vialto_yes, vialto_no);
    const std::int32_t selector = host.integer(idx_ridests_HRI, idx_ridests_2ChanRN);
    const std::int32_t count = host.length();
    const float* left = host.given(host.profile(count));
    const float* right = host.given(host.profile(count));
    const std::int32_t* flags = host.given(host.integers(count, 0, 1));
    const float interval = host.sample_interval();
    const std::int32_t size = host.size_of(count);
    float* index = host.record(-777.0F);
    host.call([&](tEvent* event) {
        return ride2chan_dlldrv(exclude, filter, selector, size, left, right, flags, interval,
                                index, event);
    });
}

void segments(FuzzedHost& host) {
    const std::int32_t filter = host.integer(vialto_yes, vialto_no);
    const std::int32_t selector = host.integer(idx_ridests_HRI, idx_ridests_2ChanRN);
    const std::int32_t count = host.length();
    const float* left = host.given(host.profile(count));
    const float* right = host.given(host.profile(count));
    const float interval = host.sample_interval();
    const std::int32_t segment_count = host.choice(40);
    const std::int32_t size = host.size_of(count);
    const std::int32_t* points = host.given(host.integers(segment_count, count / 40, count / 20));
    float* index = host.returned<float>(segment_count);
    float* lengths = host.returned<float>(segment_count);
    const std::int32_t named = host.size_of(segment_count);
    host.call([&](tEvent* event) {
        return rideseg2chan_dlldrv(filter, selector, size, left, right, interval, named, points,
                                   index, lengths, event);
    });
}

void continuous(FuzzedHost& host) {
    const std::int32_t filter = host.integer(vialto_yes, vialto_no);
    const std::int32_t selector = host.integer(idx_ridests_HRI, idx_ridests_2ChanRN);
    const std::int32_t count = host.length();
    const float* left = host.given(host.profile(count));
    const float* right = host.given(host.profile(count));
    const float interval = host.sample_interval();
    const float base = host.number(7.62F);
    const std::int32_t size = host.size_of(count);
    float* output = host.returned<float>(count);
    host.call([&](tEvent* event) {
        return ridecon2chan_dlldrv(filter, selector, size, left, right, interval, base, output,
                                   event);
    });
}

void wim_index(FuzzedHost& host) {
    const std::int32_t bridging = host.integer(vialto_yes, vialto_no);
    const std::int32_t count = host.length();
    const float* profile = host.given(host.profile(count));
    const float interval = host.sample_interval();
    const float shrouding = host.number(5.0F);
    const std::int32_t size = host.size_of(count);
    float* output = host.returned<float>(count);
    host.call([&](tEvent* event) {
        return wimindex_dlldrv(bridging, interval, shrouding, size, profile, output, event);
    });
}

} // namespace

std::span<const Request> two_tracks_requests() {
    static constexpr Request requests[] = {{"ride2chan_dlldrv", ride},
                                           {"rideseg2chan_dlldrv", segments},
                                           {"ridecon2chan_dlldrv", continuous},
                                           {"wimindex_dlldrv", wim_index}};
    return requests;
}

} // namespace vialto::fuzz
