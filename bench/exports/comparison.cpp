// The comparison exports.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>

#include "exports/measure.hpp"
#include "support/literal_sweep.hpp"
#include "vialto/vialto.h"

namespace vialto::bench {
namespace {

constexpr std::int32_t offsets = 201;

struct ComparisonRecords {
    tProfAnalysis analysis{};
    std::array<tProfinfo, 2> profiles{};

    ComparisonRecords() {
        analysis.if_outputfilt = vialto_no;
        analysis.if_padding = vialto_no;
        analysis.if_upsampling = vialto_yes;
        analysis.x_offset_max = 2.5F;
        for (tProfinfo& info : profiles) {
            info.i_raw_leadout = mile - 1;
            info.x_sampleinterval = interval;
            info.tFilter.iMainFilterType = idx_filttyp_IRI;
            info.tFilter.iOutType = idx_filtouttyp_slope;
            info.tFilter.if250mmFilter = vialto_yes;
        }
    }
};

void bench_cc_coeffarray(benchmark::State& state) {
    ComparisonRecords records;
    std::int32_t points = 0;
    measure(state, mile, [&] {
        return CC_CoeffArray(&points, &records.analysis, records.profiles.data(), nullptr);
    });
}

void bench_ccfunc(benchmark::State& state) {
    ComparisonRecords records;
    records.analysis.x_normsampleinterval = interval;
    const Floats reference = road(1);
    const Floats compared = road(2);
    Floats coefficients(offsets);
    Floats places(offsets);
    Floats filtered_reference = room();
    Floats filtered_test = room();
    measure(state, mile, [&] {
        return ccfunc(mile, mile, offsets, reference.data(), compared.data(), &records.analysis,
                      records.profiles.data(), coefficients.data(), places.data(),
                      filtered_reference.data(), filtered_test.data(), nullptr);
    });
}

// The sweep alone.
void bench_ccfunc_literal(benchmark::State& state) {
    const Floats reference = road(1);
    const Floats compared = road(2);
    measure_literal(state, mile,
                    [&] { return test::literal_sweep(reference, compared, offsets).best; });
}

void bench_pcbia(benchmark::State& state) {
    constexpr std::int32_t points = 1057;
    const Floats runs = road(1, 10 * points);
    const Floats reference = road(2, points);
    float precision = 0.0F;
    float bias = 0.0F;
    std::int32_t precision_class = 0;
    std::int32_t bias_class = 0;
    measure(state, 10 * points, [&] {
        return pcbia_dlldrv(runs.data(), reference.data(), &precision, &bias, &precision_class,
                            &bias_class, nullptr);
    });
}

BENCHMARK(bench_cc_coeffarray)->Name("CC_CoeffArray");
BENCHMARK(bench_ccfunc)->Name("ccfunc");
BENCHMARK(bench_ccfunc_literal)->Name("ccfunc/literal");
BENCHMARK(bench_pcbia)->Name("pcbia_dlldrv");

} // namespace
} // namespace vialto::bench
