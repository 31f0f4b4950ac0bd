// Trace of the profilograph, and its index. Heights are millimetres.
#include "fuzz/requests.hpp"

#include <algorithm>

namespace vialto::fuzz {

namespace {

void trace(FuzzedHost& host) {
    const std::int32_t count = host.length();
    const bool in_place = host.choice(4) == 3;
    const std::vector<float> profile = host.profile(count, 1000.0F);
    const std::int32_t first = host.integer(0, count / 2);
    const std::int32_t last = std::min(count - 1, host.integer(count - 1, count));
    const float interval = host.sample_interval();
    std::vector<float> offsets(static_cast<std::size_t>(host.choice(7)) + 1);
    std::generate(offsets.begin(), offsets.end(), [&] { return host.number(3.81F); });
    const std::int32_t pairs = host.size_of(static_cast<std::int32_t>(offsets.size()));
    const float* wheels = host.given(offsets);
    float* output = in_place ? host.returned(profile) : host.returned<float>(count);
    const float* input = in_place ? output : host.given(profile);
    std::int32_t* begin = host.record(-7);
    std::int32_t* end = host.record(-7);
    host.call([&](tEvent* event) {
        return pgfilt_dll(first, last, interval, pairs, count, wheels, input, output, begin, end,
                          event);
    });
}

// Mostly a row of lots over the trace.
std::vector<tPGLot> lots(FuzzedHost& host, std::int32_t count, std::int32_t samples) {
    std::vector<tPGLot> lots(static_cast<std::size_t>(count));
    std::int32_t first = 0;
    for (tPGLot& lot : lots) {
        lot.iStart = host.integer(first, first + 1);
        lot.iEnd = host.integer(first, first + samples / count);
        first = std::clamp(lot.iEnd, 0, samples);
    }
    return lots;
}

void index(FuzzedHost& host) {
    const std::int32_t count = host.length();
    const float* trace = host.given(host.profile(count, 1000.0F));
    const std::int32_t first = host.integer(0, count / 2);
    const std::int32_t last = std::min(count - 1, host.integer(count - 1, count));
    const float interval = host.sample_interval();
    const float* settings =
        host.given(std::vector<float>{host.number(5.08F), host.number(0.6F), host.number(0.9F),
                                      host.number(1.27F), host.number(7.62F), host.number(7.62F)});
    const std::int32_t places = host.choice(33);
    tPGLot* all_lots = host.returned(lots(host, places, count));
    const std::int32_t named = host.size_of(places);
    std::int32_t* defect_count = host.record(-7);
    auto* defects = host.returned<tPGDefect>(vialto_i_PG_maxdefects);
    const std::int32_t bump_places = host.choice(4);
    const std::int32_t* bump_count = host.given(host.size_of(bump_places));
    const std::int32_t elsewhere = host.integer(0, count);
    tPGDefect* bumps = host.returned(std::vector<tPGDefect>(
        static_cast<std::size_t>(bump_places), tPGDefect{elsewhere, elsewhere, host.number(2.0F),
                                                         0.0F, host.number(3.0F), 0.0F, 0.0F, 1}));
    host.call([&](tEvent* event) {
        return pgindex_dll(first, last, interval, settings, count, trace, named, all_lots,
                           defect_count, defects, bump_count, bumps, event);
    });
}

} // namespace

std::span<const Request> profilograph_requests() {
    static constexpr Request requests[] = {{"pgfilt_dll", trace}, {"pgindex_dll", index}};
    return requests;
}

} // namespace vialto::fuzz
