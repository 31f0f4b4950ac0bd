#include "library/corpus.hpp"

#include <cstddef>
#include <limits>
#include <utility>

#include "support/roads.hpp"

namespace vialto::test {

namespace {

using Floats = std::vector<float>;
using Integers = std::vector<std::int32_t>;
using Event = tEvent*;

constexpr float interval = 0.025F; // m
constexpr std::int32_t count = 3000;
constexpr auto samples = static_cast<std::size_t>(count);
constexpr float mark = -777.0F; // in every output before the call
constexpr std::int32_t whole_mark = -7;

Floats road(std::uint32_t seed) {
    return random_road(samples, static_cast<double>(interval), seed);
}

// A bumpy road with a step and a notch every 5 m, as of faulted slabs.
Floats slabs(std::uint32_t seed) {
    Floats profile = road(seed);
    for (std::size_t i = 0; i < samples; ++i) {
        const bool notch = i % 200 == 0 && i > 0;
        profile[i] += static_cast<float>(i % 200) * 2e-5F - (notch ? 0.006F : 0.0F);
    }
    return profile;
}

Floats with_a_nan(Floats profile) {
    profile[samples / 2] = std::numeric_limits<float>::quiet_NaN();
    return profile;
}

Floats in_millimetres(Floats profile) {
    for (float& sample : profile) {
        sample *= 1000.0F;
    }
    return profile;
}

Integers every_seventh_flag() {
    Integers flags(samples, 0);
    for (std::size_t i = 0; i < samples; i += 7) {
        flags[i] = 1;
    }
    return flags;
}

void ride(Host& host, std::int32_t selector, std::int32_t exclude) {
    const Floats profile = road(1);
    const Integers flags = every_seventh_flag();
    float index = mark;
    host.call([&](Event event) {
        return ride_dlldrv(exclude, 1, selector, count, profile.data(), flags.data(), interval,
                           &index, event);
    });
    host.outputs(index);
}

void ridecon(Host& host, std::int32_t selector, float base) {
    const Floats profile = road(2);
    Floats output(samples, mark);
    host.call([&](Event event) {
        return ridecon_dlldrv(1, interval, base, selector, count, profile.data(), output.data(),
                              event);
    });
    host.outputs(output);
}

void rideseg(Host& host, std::int32_t selector, std::int32_t last) {
    const Floats profile = road(3);
    const Integers points{1000, 0, last, 7};
    Floats index(4, mark);
    Floats length(4, mark);
    host.call([&](Event event) {
        return rideseg_dlldrv(1, selector, count, profile.data(), interval, 4, points.data(),
                              index.data(), length.data(), event);
    });
    host.outputs(index, length);
}

void wimindex(Host& host, std::int32_t bridge) {
    const Floats profile = road(4);
    Floats output(samples, mark);
    host.call([&](Event event) {
        return wimindex_dlldrv(bridge, interval, 5.0F, count, profile.data(), output.data(), event);
    });
    host.outputs(output);
}

void ride2chan(Host& host, std::int32_t selector) {
    const Floats left = road(5);
    const Floats right = road(6);
    const Integers flags = every_seventh_flag();
    float index = mark;
    host.call([&](Event event) {
        return ride2chan_dlldrv(1, 1, selector, count, left.data(), right.data(), flags.data(),
                                interval, &index, event);
    });
    host.outputs(index);
}

void rideseg2chan(Host& host, std::int32_t selector) {
    const Floats left = road(5);
    const Floats right = selector == idx_ridests_MRI ? with_a_nan(road(6)) : road(6);
    const Integers points{900, 0, 1200, 5};
    Floats index(4, mark);
    Floats length(4, mark);
    host.call([&](Event event) {
        return rideseg2chan_dlldrv(1, selector, count, left.data(), right.data(), interval, 4,
                                   points.data(), index.data(), length.data(), event);
    });
    host.outputs(index, length);
}

void ridecon2chan(Host& host, std::int32_t selector) {
    const Floats left = road(5);
    const Floats right = road(6);
    Floats output(samples, mark);
    host.call([&](Event event) {
        return ridecon2chan_dlldrv(1, selector, count, left.data(), right.data(), interval, 2.5F,
                                   output.data(), event);
    });
    host.outputs(output);
}

void psd(Host& host, std::int32_t type, std::int32_t grid) {
    const Floats profile = road(7);
    Floats frequency(samples, mark);
    Floats density(samples, mark);
    std::int32_t first = whole_mark;
    std::int32_t last = whole_mark;
    host.call([&](Event event) {
        return psd_dll(100, count - 101, type, grid, 12, 0.01F, count - 200, interval,
                       profile.data(), frequency.data(), density.data(), &first, &last, event);
    });
    host.outputs(frequency, density, first, last);
}

void rse(Host& host, float length) {
    const Floats profile = road(8);
    Floats deflection(samples, mark);
    float acceleration = mark;
    std::int32_t first = whole_mark;
    std::int32_t last = whole_mark;
    host.call([&](Event event) {
        return rse_dlldrv(count, interval, length, profile.data(), deflection.data(), &acceleration,
                          &first, &last, event);
    });
    host.outputs(deflection, acceleration, first, last);
}

void pgfilt(Host& host, float reach) {
    const Floats profile = road(9);
    const Floats wheels{1.2F, 2.0F, reach};
    Floats trace(samples, mark);
    std::int32_t first = whole_mark;
    std::int32_t last = whole_mark;
    host.call([&](Event event) {
        return pgfilt_dll(10, count - 10, interval, 3, count, wheels.data(), profile.data(),
                          trace.data(), &first, &last, event);
    });
    host.outputs(trace, first, last);
}

void pgindex(Host& host, std::int32_t end) {
    const Floats trace = in_millimetres(road(10));
    const Floats settings{5.08F, 0.6F, 0.9F, 1.27F, 7.6F, 7.6F};
    std::vector<tPGLot> lots(3);
    for (std::int32_t lot = 0; lot < 3; ++lot) {
        lots[static_cast<std::size_t>(lot)].iStart = lot == 0 ? 0 : 1000 * lot + 1;
        lots[static_cast<std::size_t>(lot)].iEnd = lot == 2 ? end : 1000 * (lot + 1);
    }
    std::vector<tPGDefect> defects(5000);
    std::vector<tPGDefect> bumps(2);
    std::int32_t defect_count = whole_mark;
    const std::int32_t bump_count = 2;
    host.call([&](Event event) {
        return pgindex_dll(0, count - 1, interval, settings.data(), count, trace.data(), 3,
                           lots.data(), &defect_count, defects.data(), &bump_count, bumps.data(),
                           event);
    });
    host.outputs(lots, defects, bumps, defect_count);
}

const tGrinderSetup grinder{.WheelBase = 5.5F,
                            .HeadPosition = 0.5F,
                            .TandemSpread = 0.6F,
                            .ShortWavelength = 0.3F,
                            .MaxGrindingDepth_mm = 1.5F};

tGrindSpot two_passes(std::int32_t second_direction) {
    tGrindSpot spot{};
    spot.iNumPasses = 2;
    spot.iDirection[0] = 1;
    spot.iDirection[1] = second_direction;
    spot.iStart = 300;
    spot.iEnd = 2700;
    return spot;
}

void grindsimu(Host& host, std::int32_t direction) {
    const tGrindSpot spot = two_passes(direction);
    Floats profile = road(11);
    Integers flags(samples, whole_mark);
    host.call([&](Event event) {
        return grindsimu_dlldrv(interval, 1, count, &grinder, &spot, profile.data(), flags.data(),
                                event);
    });
    host.outputs(profile, flags);
}

void grindsimu_2chan(Host& host, std::int32_t direction) {
    const tGrindSpot spot = two_passes(direction);
    Floats left = road(11);
    Floats right = road(12);
    Integers flags(samples, whole_mark);
    host.call([&](Event event) {
        return grindsimu_2chan_dlldrv(interval, 1, count, &grinder, &spot, left.data(),
                                      right.data(), flags.data(), event);
    });
    host.outputs(left, right, flags);
}

tMustGrindCfg must_grind(std::int32_t selector) {
    return {.iRideIndexType = selector,
            .if250mmFilter = 1,
            .xRideThreshold = selector == idx_ridests_TwoRN ? 3.5F : 0.0015F,
            .xSlideBaseLength = 7.62F,
            .ib_grindopt = {1, 1, 1},
            .x_grinddepth_min = 0.0F,
            .x_grindlength_min = 0.1F,
            .x_grindgap_min = 0.3F};
}

void mustgrind(Host& host, std::int32_t selector) {
    tMustGrindCfg cfg = must_grind(selector);
    const Floats profile = road(13);
    Integers flags(samples, whole_mark);
    host.call([&](Event event) {
        return mustgrind_dlldrv(count, interval, &cfg, &grinder, profile.data(), flags.data(),
                                event);
    });
    host.outputs(flags, cfg.iRideIndexType);
}

void mustgrind_2chan(Host& host, std::int32_t selector) {
    tMustGrindCfg cfg = must_grind(selector);
    const Floats left = road(13);
    const Floats right = road(14);
    Integers flags(samples, whole_mark);
    host.call([&](Event event) {
        return mustgrind_2chan_dlldrv(count, interval, &cfg, &grinder, left.data(), right.data(),
                                      flags.data(), event);
    });
    host.outputs(flags, cfg.iRideIndexType);
}

tProfinfo compared_profile(std::int32_t type, std::int32_t sub_type, float step) {
    tProfinfo info{};
    info.i_raw_leadin = 50;
    info.i_raw_leadout = count - 50;
    info.x_sampleinterval = step;
    info.tFilter.iMainFilterType = type;
    info.tFilter.iSubFilterType = sub_type;
    info.tFilter.iOutType = idx_filtouttyp_elevation;
    info.tFilter.if250mmFilter = 1;
    info.tFilter.xLongWavelength = 20.0F;
    info.tFilter.xShortWavelength = 0.5F;
    info.tFilter.xSimuVelocity = 80.0F;
    return info;
}

// Every filter takes its turn through the comparison.
void comparison(Host& host, std::int32_t type, std::int32_t sub_type) {
    const Floats reference = road(15);
    Floats test = road(15);
    for (std::size_t i = 0; i < samples; ++i) {
        test[i] = 0.9F * test[i] + 1e-5F * static_cast<float>(i % 5);
    }
    tProfAnalysis analysis{};
    analysis.if_outputfilt = 1;
    analysis.if_padding = sub_type;
    analysis.x_offset_max = 0.5F;
    std::vector<tProfinfo> profiles{compared_profile(type, sub_type, interval),
                                    compared_profile(type, sub_type, 1.2F * interval)};
    std::int32_t points = whole_mark;
    host.call(
        [&](Event event) { return CC_CoeffArray(&points, &analysis, profiles.data(), event); });
    host.outputs(points);
    if (points < 0) {
        return;
    }
    Floats coefficients(static_cast<std::size_t>(points), mark);
    Floats offsets = coefficients;
    Floats filtered_reference(samples, mark);
    Floats filtered_test(samples, mark);
    host.call([&](Event event) {
        return ccfunc(count, count, points, reference.data(), test.data(), &analysis,
                      profiles.data(), coefficients.data(), offsets.data(),
                      filtered_reference.data(), filtered_test.data(), event);
    });
    host.outputs(coefficients, offsets, filtered_reference, filtered_test, analysis, profiles);
}

void pcbia(Host& host) {
    const Floats runs = random_road(10 * 1057, 0.15, 16);
    const Floats reference = random_road(1057, 0.15, 17);
    float precision = mark;
    float bias = mark;
    std::int32_t precision_class = whole_mark;
    std::int32_t bias_class = whole_mark;
    host.call([&](Event event) {
        return pcbia_dlldrv(runs.data(), reference.data(), &precision, &bias, &precision_class,
                            &bias_class, event);
    });
    host.outputs(precision, bias, precision_class, bias_class);
}

void joint_id(Host& host, std::int32_t method) {
    const tJointIDCfg settings{method, 0, 5.0F};
    const Floats left = slabs(18);
    const Floats right = slabs(19);
    Integers left_types(samples, whole_mark);
    Integers right_types = left_types;
    std::vector<double> left_places(samples, -7.0);
    std::vector<double> right_places = left_places;
    host.call([&](Event event) {
        return joint_id_dlldrv(&settings, interval, count, left.data(), right.data(),
                               left_types.data(), right_types.data(), left_places.data(),
                               right_places.data(), event);
    });
    host.outputs(left_types, right_types, left_places, right_places);
}

void joint_fault(Host& host, float window) {
    const Floats profile = in_millimetres(slabs(20));
    const std::vector<double> joints{1.0, 5.0, 10.0, 40.01, 73.0};
    Floats faults(joints.size(), mark);
    host.call([&](Event event) {
        return joint_fault_dlldrv(count, 5, interval, window, profile.data(), joints.data(),
                                  faults.data(), event);
    });
    host.outputs(faults);
}

void antismth(Host& host, float base) {
    Floats profile = road(21);
    std::int32_t first = whole_mark;
    std::int32_t last = whole_mark;
    host.call([&](Event event) {
        return antismth_dlldrv(interval, base, count, profile.data(), &first, &last, event);
    });
    host.outputs(profile, first, last);
}

void histgrm(Host& host, std::int32_t classes) {
    const Floats values = road(22);
    const Integers mask = every_seventh_flag();
    Floats percentages(10, mark);
    float above = mark;
    host.call([&](Event event) {
        return histgrm_dlldrv(1, classes, count, -0.01F, 0.01F, 0.003F, 0.0F, values.data(),
                              mask.data(), percentages.data(), &above, event);
    });
    host.outputs(percentages, above);
}

class Corpus {
public:
    template <class Run, class... Settings>
    void add(const std::string& function, Run run, Settings... settings) {
        requests_.push_back({function, [=](Host& host) { run(host, settings...); }});
    }
    [[nodiscard]] std::vector<Request> requests() && { return std::move(requests_); }

private:
    std::vector<Request> requests_;
};

void add_ride(Corpus& all) {
    for (const std::int32_t selector : {1, 2, 3, 4, 9}) {
        all.add("ride_dlldrv", ride, selector, 1);
        all.add("ride_dlldrv", ride, selector, 2);
        for (const float base : {0.0F, 3.0F, 1000.0F}) {
            all.add("ridecon_dlldrv", ridecon, selector, base);
        }
        all.add("rideseg_dlldrv", rideseg, selector, 500);
        all.add("rideseg_dlldrv", rideseg, selector, 5000);
    }
    for (const std::int32_t selector : {1, 4, 5, 6}) {
        all.add("ride2chan_dlldrv", ride2chan, selector);
        all.add("rideseg2chan_dlldrv", rideseg2chan, selector);
        all.add("ridecon2chan_dlldrv", ridecon2chan, selector);
    }
    all.add("wimindex_dlldrv", wimindex, 1);
    all.add("wimindex_dlldrv", wimindex, 2);
}

void add_comparison(Corpus& all) {
    for (std::int32_t type = 0; type <= 8; ++type) {
        const bool has_sub_types = type == idx_filttyp_mvgavg || type == idx_filttyp_bwfilt;
        for (std::int32_t sub_type = 1; sub_type <= (has_sub_types ? 5 : 1); ++sub_type) {
            all.add("ccfunc", comparison, type, sub_type);
        }
    }
    all.add("pcbia_dlldrv", pcbia);
}

void add_grinding(Corpus& all) {
    for (const std::int32_t direction : {2, 3}) {
        all.add("grindsimu_dlldrv", grindsimu, direction);
        all.add("grindsimu_2chan_dlldrv", grindsimu_2chan, direction);
    }
    for (const std::int32_t selector : {0, 1, 2, 3, 4, 5, 9}) {
        all.add("mustgrind_dlldrv", mustgrind, selector);
        all.add("mustgrind_2chan_dlldrv", mustgrind_2chan, selector);
    }
}

void add_others(Corpus& all) {
    for (const std::int32_t type : {1, 2, 3}) {
        for (const std::int32_t grid : {1, 2, 3}) {
            all.add("psd_dll", psd, type, grid);
        }
    }
    for (const float length : {3.0F, 3.11F, 500.0F}) {
        all.add("rse_dlldrv", rse, length);
    }
    all.add("pgfilt_dll", pgfilt, 3.81F);
    all.add("pgfilt_dll", pgfilt, 100.0F);
    all.add("pgindex_dll", pgindex, count - 1);
    all.add("pgindex_dll", pgindex, count + 5);
    for (const std::int32_t method : {0, 1, 2, 3, 4}) {
        all.add("joint_id_dlldrv", joint_id, method);
    }
    all.add("joint_fault_dlldrv", joint_fault, 100.0F);
    all.add("joint_fault_dlldrv", joint_fault, 5000.0F);
    for (const float base : {0.0F, 0.25F, 100.0F}) {
        all.add("antismth_dlldrv", antismth, base);
    }
    for (const std::int32_t classes : {0, 1, 2, 9}) {
        all.add("histgrm_dlldrv", histgrm, classes);
    }
}

} // namespace

const std::vector<Request>& corpus() {
    static const std::vector<Request> requests = [] {
        Corpus all;
        add_ride(all);
        add_comparison(all);
        add_grinding(all);
        add_others(all);
        return std::move(all).requests();
    }();
    return requests;
}

} // namespace vialto::test
