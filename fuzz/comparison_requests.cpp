// Comparison of two profiles, as hosts do it: first the number of offsets, then the sweep. And the
// repeatability of an instrument.
#include "fuzz/requests.hpp"

#include <algorithm>

namespace vialto::fuzz {

namespace {

constexpr std::int32_t most_offsets = 401; // that the host has room for

tFiltCon filter(FuzzedHost& host) {
    tFiltCon settings{};
    settings.iMainFilterType = host.integer(idx_filttyp_none, idx_filttyp_bridge);
    settings.iSubFilterType = host.integer(idx_subfilttyp_none, idx_subfilttyp_centredband);
    settings.iOutType = host.integer(idx_filtouttyp_elevation, idx_filtouttyp_slope);
    settings.if250mmFilter = host.integer(vialto_yes, vialto_no);
    settings.xLongWavelength = host.number(10.0F);
    settings.xShortWavelength = host.number(0.3F);
    settings.xSimuVelocity = host.number(80.0F);
    settings.iBeginElemIdx = host.integer(0, 10);
    settings.iEndElemIdx = host.integer(0, 1000);
    return settings;
}

tProfinfo profile_info(FuzzedHost& host, std::int32_t samples) {
    return {host.integer(0, samples / 2),
            host.integer(std::max(samples - 4, 0), samples),
            -7,
            -7,
            host.sample_interval(),
            filter(host)};
}

tProfAnalysis analysis(FuzzedHost& host) {
    tProfAnalysis analysis{};
    analysis.if_outputfilt = host.integer(vialto_yes, vialto_no);
    analysis.if_padding = host.integer(vialto_yes, vialto_no);
    analysis.if_upsampling = host.integer(vialto_yes, vialto_no);
    analysis.x_normsampleinterval = host.sample_interval();
    analysis.x_offset_max = host.number(1.0F);
    return analysis;
}

struct Plan {
    std::int32_t reference_count;
    std::int32_t test_count;
    tProfAnalysis* settings;
    tProfinfo* infos;
    std::int32_t* offsets;
};

Plan plan(FuzzedHost& host) {
    const std::int32_t reference_count = host.length();
    const std::int32_t test_count = host.length();
    tProfAnalysis* settings = host.record(analysis(host));
    tProfinfo* infos = host.returned(std::vector<tProfinfo>{profile_info(host, reference_count),
                                                            profile_info(host, test_count)});
    std::int32_t* offsets = host.record(41);
    host.call([&](tEvent* event) { return CC_CoeffArray(offsets, settings, infos, event); });
    return {reference_count, test_count, settings, infos, offsets};
}

void plan_alone(FuzzedHost& host) {
    (void)plan(host);
}

void compare(FuzzedHost& host) {
    const Plan planned = plan(host);
    const std::int32_t room = planned.offsets == nullptr
                                  ? 41
                                  : std::clamp(*planned.offsets, std::int32_t{0}, most_offsets);
    const std::int32_t named = host.size_of(room);
    const std::int32_t reference_size = host.size_of(planned.reference_count);
    const std::int32_t test_size = host.size_of(planned.test_count);
    const float* reference = host.given(host.profile(planned.reference_count));
    const float* test = host.given(host.profile(planned.test_count));
    float* final_cc = host.returned<float>(room);
    float* offset = host.returned<float>(room);
    float* filtered_reference = host.returned<float>(planned.reference_count);
    float* filtered_test = host.returned<float>(planned.test_count);
    host.call([&](tEvent* event) {
        return ccfunc(reference_size, test_size, named, reference, test, planned.settings,
                      planned.infos, final_cc, offset, filtered_reference, filtered_test, event);
    });
}

void repeatability(FuzzedHost& host) {
    const float* run_data =
        host.given(host.profile(vialto_repeatability_runs * vialto_repeatability_points));
    const float* reference = host.given(host.profile(vialto_repeatability_points));
    float* precision = host.record(-777.0F);
    float* bias = host.record(-777.0F);
    std::int32_t* precision_class = host.record(-7);
    std::int32_t* bias_class = host.record(-7);
    host.call([&](tEvent* event) {
        return pcbia_dlldrv(run_data, reference, precision, bias, precision_class, bias_class,
                            event);
    });
}

} // namespace

std::span<const Request> comparison_requests() {
    static constexpr Request requests[] = {
        {"ccfunc", compare}, {"pcbia_dlldrv", repeatability}, {"CC_CoeffArray", plan_alone}};
    return requests;
}

} // namespace vialto::fuzz
