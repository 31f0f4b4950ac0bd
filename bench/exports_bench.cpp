// Every exported function on a mile of road at 25 mm, diagnostic file included, and beside it the
// literal version where there is one. script/bench makes a table of it: a name is the function's,
// with "/literal" for the literal version.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

#include "grinding/mustgrind.hpp"
#include "support/host.hpp"
#include "support/literal_filters.hpp"
#include "support/literal_grinding.hpp"
#include "support/literal_joint_id.hpp"
#include "support/literal_sweep.hpp"
#include "support/quarter_car_model.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace {

using namespace vialto;

constexpr float interval = 0.025F;          // m
constexpr std::int32_t mile = 64374;        // samples
constexpr float base_length = 7.62F;        // m, of the moving statistics
constexpr std::int32_t longest_wim = 50000; // samples

using Floats = std::vector<float>;
using Integers = std::vector<std::int32_t>;

Floats road(std::uint32_t seed, std::int32_t samples = mile) {
    return test::random_road(static_cast<std::size_t>(samples), static_cast<double>(interval),
                             seed);
}

Floats room() {
    return Floats(static_cast<std::size_t>(mile));
}

// Slabs of 5 m with a notch at each joint, elevations in metres.
Floats slabs(std::uint32_t seed) {
    Floats profile = road(seed);
    for (std::size_t i = 200; i < profile.size(); i += 200) {
        profile[i] -= 0.006F;
    }
    return profile;
}

Integers segments_of_100_m() {
    return Integers(16, 4001);
}

// Runs `call` as often as the benchmark wants it; a call that does not succeed ends it.
template <class Call>
void measure(benchmark::State& state, std::int32_t samples, const Call& call) {
    const test::TemporaryDirectory directory;
    for (auto _ : state) {
        if (call() != vialto_success) {
            state.SkipWithError("the call failed");
        }
    }
    state.SetItemsProcessed(state.iterations() * samples);
}

template <class Call>
void measure_literal(benchmark::State& state, std::int32_t samples, const Call& call) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(call());
    }
    state.SetItemsProcessed(state.iterations() * samples);
}

void bench_ride(benchmark::State& state) {
    const Floats profile = road(1);
    float index = 0.0F;
    measure(state, mile, [&] {
        return ride_dlldrv(2, 1, idx_ridests_IRI, mile, profile.data(), nullptr, interval, &index,
                           nullptr);
    });
}

void bench_ride_literal(benchmark::State& state) {
    const Floats profile = road(1);
    measure_literal(state, mile, [&] {
        return test::literal_filter(test::iri_car, profile, interval, 10, 1.0F).statistic;
    });
}

void bench_rideseg(benchmark::State& state) {
    const Floats profile = road(1);
    const Integers points = segments_of_100_m();
    Floats index(points.size());
    Floats length(points.size());
    measure(state, mile, [&] {
        return rideseg_dlldrv(1, idx_ridests_IRI, mile, profile.data(), interval,
                              static_cast<std::int32_t>(points.size()), points.data(), index.data(),
                              length.data(), nullptr);
    });
}

void bench_ridecon(benchmark::State& state) {
    const Floats profile = road(1);
    Floats output = room();
    measure(state, mile, [&] {
        return ridecon_dlldrv(1, interval, base_length, idx_ridests_IRI, mile, profile.data(),
                              output.data(), nullptr);
    });
}

void bench_ridecon_literal(benchmark::State& state) {
    const Floats profile = road(1);
    constexpr float box = base_length / interval;
    measure_literal(state, mile, [&] {
        Floats slope = test::literal_filter(test::iri_car, profile, interval, 10, 1.0F).filtered;
        for (float& value : slope) {
            value = std::fabs(value);
        }
        return test::literal_moving_average(slope, static_cast<std::size_t>(box + 0.5F),
                                            static_cast<std::size_t>(box * 0.5F + 0.5F), false);
    });
}

void bench_wimindex(benchmark::State& state) {
    const Floats profile = road(1, longest_wim);
    Floats output = room();
    measure(state, longest_wim, [&] {
        return wimindex_dlldrv(2, interval, 0.0F, longest_wim, profile.data(), output.data(),
                               nullptr);
    });
}

void bench_ride2chan(benchmark::State& state) {
    const Floats left = road(1);
    const Floats right = road(2);
    float index = 0.0F;
    measure(state, mile, [&] {
        return ride2chan_dlldrv(2, 1, idx_ridests_MRI, mile, left.data(), right.data(), nullptr,
                                interval, &index, nullptr);
    });
}

void bench_rideseg2chan(benchmark::State& state) {
    const Floats left = road(1);
    const Floats right = road(2);
    const Integers points = segments_of_100_m();
    Floats index(points.size());
    Floats length(points.size());
    measure(state, mile, [&] {
        return rideseg2chan_dlldrv(1, idx_ridests_MRI, mile, left.data(), right.data(), interval,
                                   static_cast<std::int32_t>(points.size()), points.data(),
                                   index.data(), length.data(), nullptr);
    });
}

void bench_ridecon2chan(benchmark::State& state) {
    const Floats left = road(1);
    const Floats right = road(2);
    Floats output = room();
    measure(state, mile, [&] {
        return ridecon2chan_dlldrv(1, idx_ridests_MRI, mile, left.data(), right.data(), interval,
                                   base_length, output.data(), nullptr);
    });
}

void bench_psd(benchmark::State& state) {
    const Floats profile = road(1);
    Floats frequency = room();
    Floats density = room();
    std::int32_t first = 0;
    std::int32_t last = 0;
    measure(state, mile, [&] {
        return psd_dll(0, mile - 1, 2, 1, 12, 0.0F, mile, interval, profile.data(),
                       frequency.data(), density.data(), &first, &last, nullptr);
    });
}

void bench_rse(benchmark::State& state) {
    const Floats profile = road(1);
    Floats deflection = room();
    float acceleration = 0.0F;
    std::int32_t first = 0;
    std::int32_t last = 0;
    measure(state, mile, [&] {
        return rse_dlldrv(mile, interval, 3.0F, profile.data(), deflection.data(), &acceleration,
                          &first, &last, nullptr);
    });
}

const Floats& wheel_offsets() {
    static const Floats offsets{2.84F, 3.15F, 3.45F, 4.37F, 4.67F, 4.98F};
    return offsets;
}

void bench_pgfilt(benchmark::State& state) {
    const Floats profile = road(1);
    Floats trace = room();
    std::int32_t first = 0;
    std::int32_t last = 0;
    measure(state, mile, [&] {
        return pgfilt_dll(0, mile - 1, interval, 6, mile, wheel_offsets().data(), profile.data(),
                          trace.data(), &first, &last, nullptr);
    });
}

void bench_pgindex(benchmark::State& state) {
    Floats trace = road(1);
    for (float& height : trace) {
        height *= 1000.0F; // mm
    }
    const Floats settings{5.08F, 0.6F, 0.9F, 1.27F, 7.6F, 7.6F};
    std::vector<tPGLot> lots(16);
    for (std::size_t lot = 0; lot < lots.size(); ++lot) {
        lots[lot].iStart = static_cast<std::int32_t>(lot) * 4000;
        lots[lot].iEnd = lots[lot].iStart + 4000;
    }
    std::vector<tPGDefect> defects(5000);
    std::int32_t defect_count = 0;
    const std::int32_t bump_count = 0;
    measure(state, mile, [&] {
        return pgindex_dll(0, mile - 1, interval, settings.data(), mile, trace.data(), 16,
                           lots.data(), &defect_count, defects.data(), &bump_count, nullptr,
                           nullptr);
    });
}

tGrinderSetup grinder() {
    return {.WheelBase = 5.5F,
            .HeadPosition = 0.5F,
            .TandemSpread = 0.6F,
            .ShortWavelength = 0.3F,
            .MaxGrindingDepth_mm = 8.0F};
}

tGrindSpot whole_road() {
    tGrindSpot spot{};
    spot.iNumPasses = 1;
    spot.iDirection[0] = 1;
    spot.iEnd = mile - 1;
    return spot;
}

void bench_grindsimu(benchmark::State& state) {
    const tGrinderSetup setup = grinder();
    const tGrindSpot spot = whole_road();
    const Floats profile = road(1);
    Floats ground = profile;
    Integers flags(static_cast<std::size_t>(mile));
    measure(state, mile, [&] {
        ground = profile;
        return grindsimu_dlldrv(interval, 1, mile, &setup, &spot, ground.data(), flags.data(),
                                nullptr);
    });
}

void bench_grindsimu_2chan(benchmark::State& state) {
    const tGrinderSetup setup = grinder();
    const tGrindSpot spot = whole_road();
    const Floats profile = road(1);
    Floats left = profile;
    Floats right = profile;
    Integers flags(static_cast<std::size_t>(mile));
    measure(state, mile, [&] {
        left = profile;
        right = profile;
        return grindsimu_2chan_dlldrv(interval, 1, mile, &setup, &spot, left.data(), right.data(),
                                      flags.data(), nullptr);
    });
}

tMustGrindCfg must_grind(std::int32_t selector, float threshold) {
    return {.iRideIndexType = selector,
            .if250mmFilter = 1,
            .xRideThreshold = threshold,
            .xSlideBaseLength = base_length,
            .ib_grindopt = {1, 1, 1},
            .x_grinddepth_min = 0.0F,
            .x_grindlength_min = 0.3F,
            .x_grindgap_min = 0.3F};
}

void bench_mustgrind(benchmark::State& state) {
    const tGrinderSetup setup = grinder();
    const Floats profile = road(1);
    Integers flags(static_cast<std::size_t>(mile));
    measure(state, mile, [&] {
        tMustGrindCfg cfg = must_grind(idx_ridests_IRI, 0.0025F);
        return mustgrind_dlldrv(mile, interval, &cfg, &setup, profile.data(), flags.data(),
                                nullptr);
    });
}

void bench_mustgrind_literal(benchmark::State& state) {
    const tGrinderSetup setup = grinder();
    const tMustGrindCfg cfg = must_grind(idx_ridests_IRI, 0.0025F);
    const Floats profile = road(1);
    measure_literal(state, mile, [&] {
        return test::literal_mustgrind({interval, cfg, setup, profile}).helpful;
    });
}

void bench_mustgrind_2chan(benchmark::State& state) {
    const tGrinderSetup setup = grinder();
    const Floats left = road(1);
    const Floats right = road(2);
    Integers flags(static_cast<std::size_t>(mile));
    measure(state, mile, [&] {
        tMustGrindCfg cfg = must_grind(idx_ridests_HRI, 0.0025F);
        return mustgrind_2chan_dlldrv(mile, interval, &cfg, &setup, left.data(), right.data(),
                                      flags.data(), nullptr);
    });
}

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

constexpr std::int32_t offsets = 201;

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

const tJointIDCfg curled_edges{.i_jntid_method = 4, .if_skewed = 0, .xDomJointSpacing = 5.0F};

void bench_joint_id(benchmark::State& state) {
    const Floats left = slabs(1);
    const Floats right = slabs(2);
    Integers left_types(static_cast<std::size_t>(mile));
    Integers right_types = left_types;
    std::vector<double> left_places(static_cast<std::size_t>(mile));
    std::vector<double> right_places = left_places;
    measure(state, mile, [&] {
        return joint_id_dlldrv(&curled_edges, interval, mile, left.data(), right.data(),
                               left_types.data(), right_types.data(), left_places.data(),
                               right_places.data(), nullptr);
    });
}

void bench_joint_id_literal(benchmark::State& state) {
    const Floats left = slabs(1);
    const Floats right = slabs(2);
    test::JointTrackResult left_result{Integers(static_cast<std::size_t>(mile)),
                                       std::vector<double>(static_cast<std::size_t>(mile))};
    test::JointTrackResult right_result = left_result;
    measure_literal(state, mile, [&] {
        return test::literal_joint_id(curled_edges, interval, left, right, left_result,
                                      right_result);
    });
}

void bench_joint_fault(benchmark::State& state) {
    const Floats profile = slabs(1);
    std::vector<double> joints(318);
    std::iota(joints.begin(), joints.end(), 1.0);
    for (double& joint : joints) {
        joint *= 5.0;
    }
    Floats faults(joints.size());
    measure(state, mile, [&] {
        return joint_fault_dlldrv(mile, static_cast<std::int32_t>(joints.size()), interval, 100.0F,
                                  profile.data(), joints.data(), faults.data(), nullptr);
    });
}

void bench_antismth(benchmark::State& state) {
    const Floats profile = road(1);
    Floats result = profile;
    std::int32_t first = 0;
    std::int32_t last = 0;
    measure(state, mile, [&] {
        result = profile;
        return antismth_dlldrv(interval, 0.25F, mile, result.data(), &first, &last, nullptr);
    });
}

void bench_histgrm(benchmark::State& state) {
    const Floats values = road(1);
    Floats percentages(10);
    float above = 0.0F;
    measure(state, mile, [&] {
        return histgrm_dlldrv(2, 10, mile, -0.01F, 0.01F, 0.0025F, 0.0F, values.data(), nullptr,
                              percentages.data(), &above, nullptr);
    });
}

BENCHMARK(bench_ride)->Name("ride_dlldrv");
BENCHMARK(bench_ride_literal)->Name("ride_dlldrv/literal");
BENCHMARK(bench_rideseg)->Name("rideseg_dlldrv");
BENCHMARK(bench_ridecon)->Name("ridecon_dlldrv");
BENCHMARK(bench_ridecon_literal)->Name("ridecon_dlldrv/literal");
BENCHMARK(bench_ride2chan)->Name("ride2chan_dlldrv");
BENCHMARK(bench_rideseg2chan)->Name("rideseg2chan_dlldrv");
BENCHMARK(bench_ridecon2chan)->Name("ridecon2chan_dlldrv");
BENCHMARK(bench_wimindex)->Name("wimindex_dlldrv");
BENCHMARK(bench_psd)->Name("psd_dll");
BENCHMARK(bench_rse)->Name("rse_dlldrv");
BENCHMARK(bench_pgfilt)->Name("pgfilt_dll");
BENCHMARK(bench_pgindex)->Name("pgindex_dll");
BENCHMARK(bench_grindsimu)->Name("grindsimu_dlldrv");
BENCHMARK(bench_grindsimu_2chan)->Name("grindsimu_2chan_dlldrv");
BENCHMARK(bench_mustgrind)->Name("mustgrind_dlldrv");
BENCHMARK(bench_mustgrind_literal)->Name("mustgrind_dlldrv/literal");
BENCHMARK(bench_mustgrind_2chan)->Name("mustgrind_2chan_dlldrv");
BENCHMARK(bench_cc_coeffarray)->Name("CC_CoeffArray");
BENCHMARK(bench_ccfunc)->Name("ccfunc");
BENCHMARK(bench_ccfunc_literal)->Name("ccfunc/literal");
BENCHMARK(bench_pcbia)->Name("pcbia_dlldrv");
BENCHMARK(bench_joint_id)->Name("joint_id_dlldrv");
BENCHMARK(bench_joint_id_literal)->Name("joint_id_dlldrv/literal");
BENCHMARK(bench_joint_fault)->Name("joint_fault_dlldrv");
BENCHMARK(bench_antismth)->Name("antismth_dlldrv");
BENCHMARK(bench_histgrm)->Name("histgrm_dlldrv");

} // namespace
