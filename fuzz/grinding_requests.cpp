// The grinder, and the stretches that must be ground.
#include "fuzz/requests.hpp"

#include <algorithm>

namespace vialto::fuzz {

namespace {

tGrinderSetup machine(FuzzedHost& host) {
    return {host.number(5.5F), host.number(0.6F), host.number(1.0F), host.number(0.3F),
            host.number(8.0F)};
}

std::vector<tGrindSpot> spots(FuzzedHost& host, std::int32_t count, std::int32_t samples) {
    std::vector<tGrindSpot> spots(static_cast<std::size_t>(count));
    for (tGrindSpot& spot : spots) {
        spot.iNumPasses = host.integer(1, vialto_mxPasses + 1);
        for (std::int32_t pass = 0; pass < std::min<std::int32_t>(spot.iNumPasses, vialto_mxPasses);
             ++pass) {
            spot.iDirection[pass] = host.integer(1, 2);
            spot.xDepth_mm[pass] = host.number(0.0F);
        }
        spot.iStart = host.integer(0, samples);
        spot.iEnd = host.integer(samples / 2, samples + 1);
    }
    return spots;
}

template <bool two_tracks>
void grind(FuzzedHost& host) {
    const std::int32_t count = host.length();
    const float interval = host.sample_interval();
    const tGrinderSetup* setup = host.given(machine(host));
    const std::int32_t places = host.choice(6);
    const tGrindSpot* stretches = host.given(spots(host, places, count));
    const std::int32_t named = host.size_of(places);
    const std::int32_t size = host.size_of(count);
    float* left = host.returned(host.profile(count));
    auto* flags = host.returned<std::int32_t>(count);
    if (!two_tracks) {
        host.call([&](tEvent* event) {
            return grindsimu_dlldrv(interval, named, size, setup, stretches, left, flags, event);
        });
        return;
    }
    float* right = host.returned(host.profile(count));
    host.call([&](tEvent* event) {
        return grindsimu_2chan_dlldrv(interval, named, size, setup, stretches, left, right, flags,
                                      event);
    });
}

tMustGrindCfg settings(FuzzedHost& host, bool two_tracks) {
    return {two_tracks ? host.integer_of({idx_ridests_HRI, idx_ridests_MRI, idx_ridests_2ChanRN,
                                          idx_ridests_IRI})
                       : host.integer_of({idx_ridests_IRI, idx_ridests_RN, idx_ridests_IRI,
                                          idx_ridests_TwoRN, idx_ridests_WIM}),
            host.integer(vialto_yes, vialto_no),
            host.number(0.002F),
            host.number(7.62F),
            {host.integer(1, 2), host.integer(1, 2), host.integer(1, 2)},
            host.number(0.1F),
            host.number(0.5F),
            host.number(1.0F)};
}

template <bool two_tracks>
void must_grind(FuzzedHost& host) {
    const std::int32_t count = host.length();
    const float interval = host.sample_interval();
    tMustGrindCfg* cfg = host.record(settings(host, two_tracks));
    const tGrinderSetup* setup = host.given(machine(host));
    const std::int32_t size = host.size_of(count);
    const float* left = host.given(host.profile(count));
    auto* flags = host.returned<std::int32_t>(count);
    if (!two_tracks) {
        host.call([&](tEvent* event) {
            return mustgrind_dlldrv(size, interval, cfg, setup, left, flags, event);
        });
        return;
    }
    const float* right = host.given(host.profile(count));
    host.call([&](tEvent* event) {
        return mustgrind_2chan_dlldrv(size, interval, cfg, setup, left, right, flags, event);
    });
}

} // namespace

std::span<const Request> grinding_requests() {
    static constexpr Request requests[] = {{"grindsimu_dlldrv", grind<false>},
                                           {"grindsimu_2chan_dlldrv", grind<true>},
                                           {"mustgrind_dlldrv", must_grind<false>},
                                           {"mustgrind_2chan_dlldrv", must_grind<true>}};
    return requests;
}

} // namespace vialto::fuzz
