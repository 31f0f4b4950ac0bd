// The profilograph exports.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "exports/measure.hpp"
#include "vialto/vialto.h"

namespace vialto::bench {
namespace {

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

BENCHMARK(bench_pgfilt)->Name("pgfilt_dll");
BENCHMARK(bench_pgindex)->Name("pgindex_dll");

} // namespace
} // namespace vialto::bench
