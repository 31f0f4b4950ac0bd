// Joints and their faulting, and the small ones: anti-smoothing and histogram.
#include "fuzz/requests.hpp"

#include <algorithm>

namespace vialto::fuzz {

namespace {

void identification(FuzzedHost& host) {
    const std::int32_t count = host.length();
    const float interval = host.sample_interval();
    const tJointIDCfg* settings = host.given(
        tJointIDCfg{host.integer(1, 4), host.integer(vialto_yes, vialto_no), host.number(4.0F)});
    const std::int32_t size = host.size_of(count);
    const float* left = host.given(host.profile(count));
    const float* right = host.given(host.profile(count));
    auto* left_types = host.returned<std::int32_t>(count);
    auto* right_types = host.returned<std::int32_t>(count);
    auto* left_locations = host.returned<double>(count);
    auto* right_locations = host.returned<double>(count);
    host.call([&](tEvent* event) {
        return joint_id_dlldrv(settings, interval, size, left, right, left_types, right_types,
                               left_locations, right_locations, event);
    });
}

void faulting(FuzzedHost& host) {
    const std::int32_t count = host.length();
    const float interval = host.sample_interval();
    const float window = host.number(100.0F);
    std::vector<double> joints(static_cast<std::size_t>(host.choice(12)));
    std::generate(joints.begin(), joints.end(),
                  [&] { return static_cast<double>(host.number(8.0F)); });
    const auto places = static_cast<std::int32_t>(joints.size());
    const std::int32_t named = host.size_of(places);
    const std::int32_t size = host.size_of(count);
    const float* profile = host.given(host.profile(count, 1000.0F));
    const double* locations = host.given(joints);
    float* faults = host.returned<float>(places);
    host.call([&](tEvent* event) {
        return joint_fault_dlldrv(size, named, interval, window, profile, locations, faults, event);
    });
}

void anti_smoothing(FuzzedHost& host) {
    const std::int32_t count = host.length();
    const float interval = host.sample_interval();
    const float base = host.number(0.3F);
    const std::int32_t size = host.size_of(count);
    float* profile = host.returned(host.profile(count));
    std::int32_t* begin = host.record(-7);
    std::int32_t* end = host.record(-7);
    host.call([&](tEvent* event) {
        return antismth_dlldrv(interval, base, size, profile, begin, end, event);
    });
}

void histogram(FuzzedHost& host) {
    const std::int32_t count = host.length();
    const std::int32_t exclude = host.integer(vialto_yes, vialto_no);
    const std::int32_t classes = host.choice(50);
    const std::int32_t named = host.size_of(classes);
    const float low = host.number(-0.01F);
    const float high = host.number(0.01F);
    const float step = host.number(0.001F);
    const float threshold = host.number(0.005F);
    const std::int32_t size = host.size_of(count);
    const float* values = host.given(host.profile(count));
    const std::int32_t* mask = host.given(host.integers(count, 0, 1));
    float* percentages = host.returned<float>(classes);
    float* above = host.record(-777.0F);
    host.call([&](tEvent* event) {
        return histgrm_dlldrv(exclude, named, size, low, high, step, threshold, values, mask,
                              percentages, above, event);
    });
}

} // namespace

std::span<const Request> joints_requests() {
    static constexpr Request requests[] = {{"joint_id_dlldrv", identification},
                                           {"joint_fault_dlldrv", faulting},
                                           {"antismth_dlldrv", anti_smoothing},
                                           {"histgrm_dlldrv", histogram}};
    return requests;
}

} // namespace vialto::fuzz
